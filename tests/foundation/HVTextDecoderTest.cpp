#include "foundation/HVTextDecoder.h"
#include "foundation/HVTextFileReader.h"
#include "foundation/HVXMLDocument.h"

#include "ScratchDir.h"

#include <gtest/gtest.h>

#include <string>

namespace
{
HVString Marked(std::string_view) { return HVString(u"<fallback>"); }

// text: u"<fallback>" when the bytes are not UTF-8.
struct DecodeCase { const char* name; std::string bytes; std::u16string text; };

TEST(HVTextDecoderTest, ByteOrderMarkThenUtf8ThenFallback)
{
    const DecodeCase cases[] = {
        {"empty", "", u""}, {"ascii", "<a>x</a>", u"<a>x</a>"},
        {"long ascii run", std::string(100, 'q') + "\xC3\xA9", std::u16string(100, u'q') + u"\u00e9"},
        {"two bytes", "\xC3\xA9t\xC3\xA9", u"\u00e9t\u00e9"}, {"three bytes", "\xE2\x82\xAC", u"\u20ac"},
        {"four bytes", "\xF0\x9F\x98\x80", u"\U0001F600"}, {"largest", "\xF4\x8F\xBF\xBF", u"\U0010FFFF"},
        {"utf-8 mark", "\xEF\xBB\xBF<a/>", u"<a/>"}, {"utf-8 mark, broken", "\xEF\xBB\xBFx\xE9y", u"x\uFFFDy"},
        {"utf-16 le", std::string("\xFF\xFE<\0a\0\xAC\x20", 8), u"<a\u20ac"},
        {"utf-16 be", std::string("\xFE\xFF\0<\0a\x20\xAC", 8), u"<a\u20ac"},
        {"utf-16 le, odd byte", std::string("\xFF\xFE" "a\0b", 5), u"a"}, {"latin-1", "\xE9t\xE9", u"<fallback>"},
        {"overlong two", "\xC0\x80", u"<fallback>"}, {"overlong three", "\xE0\x80\x80", u"<fallback>"},
        {"surrogate", "\xED\xA0\x80", u"<fallback>"}, {"past the last", "\xF4\x90\x80\x80", u"<fallback>"},
        {"lead F5", "\xF5\x80\x80\x80", u"<fallback>"}, {"lone continuation", "a\x80", u"<fallback>"},
        {"truncated", "ab\xE2\x82", u"<fallback>"}, {"bad continuation", "\xE2\x28\xA1", u"<fallback>"},
    };
    for (const DecodeCase& c : cases)
        EXPECT_EQ(HVTextDecoder::Decode(c.bytes, &Marked).view(), c.text) << c.name;
    EXPECT_EQ(HVTextDecoder::Decode("\xE9", &HVTextDecoder::DecodeLatin1), u"\u00e9");
    EXPECT_EQ(HVTextDecoder::DecodeLatin1("\x41\xFF"), u"A\u00ff");
}

TEST(HVTextFileReaderTest, LoadDecodesAndParsesOrGivesFalseWithNoParse)
{
    const ScratchDir dir;
    const std::pair<std::string, std::u16string> files[] = {
        {"\xEF\xBB\xBF<a>\xC3\xA9</a>", u"<a>\u00e9</a>"},
        {std::string("\xFF\xFE<\0a\0>\0\xE9\0<\0/\0a\0>\0", 18), u"<a>\u00e9</a>"},
        {std::string("\xFE\xFF\0<\0a\0>\0\xE9\0<\0/\0a\0>", 18), u"<a>\u00e9</a>"},
        {"<a>\xF0\x9F\x98\x80</a>", u"<a>\U0001F600</a>"},
#ifndef _WIN32
        // Not UTF-8: Latin-1 here; the Windows code page is tested with the Windows code.
        {"<a>\xE9</a>", u"<a>\u00e9</a>"},
#endif
    };
    int i = 0;
    for (const auto& [bytes, text] : files) {
        const HVString path = dir.Write(("f" + std::to_string(i++) + ".xml").c_str(), bytes);
        HVXMLDocument doc;
        EXPECT_TRUE(doc.Load(path)) << i;
        EXPECT_EQ(doc.GetDoc().view(), text) << i;
        EXPECT_EQ(doc.GetData(), u"") << i;
        ASSERT_TRUE(doc.FindElem(u"/a"));
        EXPECT_EQ(doc.GetData().view(), text.substr(3, text.size() - 7)) << i;
    }

    // An unreadable file gives false with no parse.
    HVXMLDocument doc;
    ASSERT_TRUE(doc.SetDoc(u"<old/>"));
    EXPECT_FALSE(doc.Load(dir.Path("missing.xml")));
    EXPECT_TRUE(doc.GetDoc().IsEmpty());
    EXPECT_TRUE(doc.GetError().IsEmpty());
    EXPECT_FALSE(doc.FindElem());
    EXPECT_FALSE(doc.IsWellFormed());

    EXPECT_FALSE(doc.Load(ScratchDir::PathOf(dir.Dir())));   // a folder is no file
    HVString text(u"stale");
    EXPECT_FALSE(HVTextFileReader::Read(dir.Path("missing.xml"), text));
    EXPECT_TRUE(text.IsEmpty());

    // An empty file is read: its parse says so.
    EXPECT_FALSE(doc.Load(dir.Write("empty.xml", "")));
    EXPECT_EQ(doc.GetError(), u"Empty document");
}
}   // namespace

#include "foundation/HVBase64.h"
#include "foundation/HVFilenameWithProperties.h"
#include "foundation/HVPropertyMap.h"
#include "foundation/HVXMLDocument.h"
#include "foundation/HVXMLEscape.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace
{
std::string U8(const HVString& s) { return s.ToUtf8(); }

TEST(HVPropertyMapTest, KeepsFirstSetOrderAndUniqueExactNames)
{
    HVPropertyMap map;
    EXPECT_TRUE(map.IsEmpty());
    map.Set(u"b", u"1");
    map.Set(u"a", u"2");
    map.Set(u"B", u"3");
    map.Set(u"b", u"4");   // replaced in place
    ASSERT_EQ(map.GetCount(), 3);
    EXPECT_EQ(map.GetNameAt(0), u"b");
    EXPECT_EQ(map.GetValueAt(0), u"4");
    EXPECT_EQ(map.GetNameAt(1), u"a");
    EXPECT_EQ(map.GetNameAt(2), u"B");
    HVString value;
    EXPECT_TRUE(map.Lookup(u"B", value));
    EXPECT_EQ(value, u"3");
    EXPECT_FALSE(map.Lookup(u"c", value));
    EXPECT_EQ(map.Get(u"c", u"dflt"), u"dflt");
    EXPECT_TRUE(map.Remove(u"a"));
    EXPECT_FALSE(map.Remove(u"a"));
    EXPECT_FALSE(map.Contains(u"a"));
    EXPECT_EQ(map.GetNameAt(1), u"B");
}

TEST(HVXMLEscapeTest, EscapesAllFivePredefinedEntities)
{
    const std::pair<const char16_t*, const char16_t*> cases[] = {
        {u"", u""},
        {u"plain C:\\path", u"plain C:\\path"},
        {u"a&b", u"a&amp;b"},
        {u"<x y=\"1\" z='2'>", u"&lt;x y=&quot;1&quot; z=&apos;2&apos;&gt;"},
        {u"&amp;", u"&amp;amp;"},
        {u"]]>", u"]]&gt;"},
    };
    for (const auto& [text, escaped] : cases) {
        EXPECT_EQ(HVXMLEscape::Escape(text), escaped) << U8(text);
        EXPECT_EQ(HVXMLEscape::Decode(escaped), text) << U8(text);
    }
}

TEST(HVFilenameWithPropertiesTest, WritesTheXmlfnFormExactly)
{
    HVPropertyMap map;
    map.Set(u"FileType", u"mp3");
    map.Set(u"HTTPREQUEST_TYPE", u"POST");
    map.Set(u"PostExtensionData", u"a=1&b=\"2\"");
    EXPECT_EQ(U8(HVFilenameWithProperties::Write(u"C:\\Music\\R&B <live>.mp3", &map)),
              "<XMLFN version=\"1.0\"><Item Name=\"Filename\">C:\\Music\\R&amp;B &lt;live&gt;.mp3</Item>"
              "<Item Name=\"FileType\">mp3</Item>"
              "<Item Name=\"HTTPREQUEST_TYPE\">POST</Item>"
              "<Item Name=\"PostExtensionData\">a=1&amp;b=&quot;2&quot;</Item></XMLFN>");
}

// A path without properties is written as itself, and any text that is not a whole XMLFN
// document reads back as a bare path.
TEST(HVFilenameWithPropertiesTest, BarePathsRoundTripByteForByte)
{
    const char16_t* paths[] = {
        u"", u"C:\\Program Files\\Halvard\\a&b.txt", u"  spaced  ", u"\\\\server\\share\\x",
        u"http://host/get?a=1&b=2", u"<not xml", u"<XMLFNx/>", u"\U0001F600\u00e9", u"<XMLFN",
        u"<XMLFN version=\"1.0\"><Item Name=\"Filename\">x</Item>",   // not ended
        u"<XMLFN><Item Name=\"Filename\">x</Item></XMLFN>",             // no version
        u"<XMLFN version='1.0'/><extra/>", u"<XMLFN version='1.0'><Item Name='Filename'>x</Item></XMLFN",
        u"<XMLFNS version='1.0'/>", u" <XMLFN version='1.0'/>",
    };
    for (const char16_t* p : paths) {
        const HVString path(p);
        const HVString written = HVFilenameWithProperties::Write(path, nullptr);
        EXPECT_EQ(written.GetData(), path.GetData()) << U8(path);   // the very same string
        HVPropertyMap empty;
        EXPECT_EQ(HVFilenameWithProperties::Write(path, &empty), path);
        const HVFilenameWithProperties read = HVFilenameWithProperties::Read(written);
        EXPECT_EQ(read.GetPath(), path) << U8(path);
        EXPECT_TRUE(read.GetProperties().IsEmpty());
    }
}

TEST(HVFilenameWithPropertiesTest, AnyPathAndValuesSurviveARoundTrip)
{
    struct Case { const char16_t* path; std::vector<std::pair<const char16_t*, const char16_t*>> properties; };
    const Case cases[] = {
        {u"C:\\a&b.mp3", {{u"FileType", u"mp3"}}}, {u"x", {{u"k", u""}}}, {u"", {{u"k", u"v"}}},
        {u"p", {{u"quotes \"'", u"<tag attr='v'>&amp;</tag>"}, {u"second", u"]]> --> ?>"}}},
        {u"  lead and trail  ", {{u"ws", u"\r\n\t x \r\n"}}},
        {u"\u00e9\U0001F600", {{u"\u4e2d\u6587", u"&#65; &bogus; &"}}},
        {u"p", {{u"Filename", u"a property named like the path"}}},
    };
    for (const Case& c : cases) {
        HVFilenameWithProperties original(c.path);
        for (const auto& [name, value] : c.properties)
            original.GetProperties().Set(name, value);
        const HVString text = original.ToString();
        ASSERT_TRUE(HVFilenameWithProperties::IsXMLFN(text.view())) << U8(text);
        HVXMLDocument check;
        EXPECT_TRUE(check.SetDoc(text)) << U8(text) << " " << U8(check.GetError());
        const HVFilenameWithProperties read = HVFilenameWithProperties::Read(text);
        EXPECT_EQ(read.GetPath(), HVString(c.path)) << U8(text);
        EXPECT_TRUE(read.GetProperties() == original.GetProperties()) << U8(text);
    }
}

TEST(HVFilenameWithPropertiesTest, ItemsOtherThanNamedItemsArePassedOver)
{
    const HVFilenameWithProperties read = HVFilenameWithProperties::Read(
        u"<XMLFN version='2'>\r\n <Item Name='Filename'>C:\\x</Item>\r\n <Other Name='o'>1</Other>"
        u"<Item>nameless</Item><Item Name='k'>v</Item></XMLFN>");
    EXPECT_EQ(read.GetPath(), u"C:\\x");
    ASSERT_EQ(read.GetProperties().GetCount(), 1);
    EXPECT_EQ(read.GetProperties().Get(u"k"), u"v");
}

TEST(HVBase64Test, StandardAlphabetWithPadding)
{
    const std::pair<std::string, const char16_t*> cases[] = {
        {"", u""},           {"f", u"Zg=="},         {"fo", u"Zm8="},         {"foo", u"Zm9v"},
        {"foob", u"Zm9vYg=="}, {"fooba", u"Zm9vYmE="}, {"foobar", u"Zm9vYmFy"},
        {std::string("\xFB\xFF\xBF", 3), u"+/+/"},  {std::string("\0\0", 2), u"AAA="},
    };
    for (const auto& [bytes, text] : cases) {
        EXPECT_EQ(HVBase64::Encode(bytes), text) << bytes;
        std::vector<uint8_t> decoded;
        EXPECT_TRUE(HVBase64::Decode(text, decoded)) << bytes;
        EXPECT_EQ(std::string(decoded.begin(), decoded.end()), bytes);
    }
    std::vector<uint8_t> out;
    EXPECT_TRUE(HVBase64::Decode(u"Zm9v\r\nYmE", out));   // line breaks and no padding
    EXPECT_EQ(std::string(out.begin(), out.end()), "fooba");
    for (const char16_t* bad : {u"Zm9v-", u"Z", u"Zg=", u"Zg===", u"Zg==Zg==", u"=", u"Zm_v"}) {
        EXPECT_FALSE(HVBase64::Decode(bad, out)) << U8(bad);
        EXPECT_TRUE(out.empty());
    }
}
}   // namespace

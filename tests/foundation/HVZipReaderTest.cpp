#include "foundation/HVZipReader.h"

#include "ZipBuilder.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace
{
using ZipBuilder::Entry;
using ZipBuilder::MakeZip;

bool Open(HVZipReader& reader, const std::string& zip)
{
    return reader.Open(reinterpret_cast<const uint8_t*>(zip.data()), zip.size());
}
}   // namespace

TEST(HVZipReaderTest, StoredAndDeflatedMembersComeBackWhole)
{
    const std::string text(5000, 'x');
    // A megabyte of zeros: deflate's best, about 1,030 to 1, is no bomb.
    const std::string zeros(1 << 20, '\0');
    const std::string zip = MakeZip({{"Skin/main.xml", text, true}, {"a.txt", "hello"}, {"Skin/", ""}, {"zeros", zeros, true}});
    HVZipReader reader;
    ASSERT_TRUE(Open(reader, zip)) << reader.GetError().ToUtf8();
    ASSERT_EQ(reader.Members().size(), 4u);
    EXPECT_EQ(reader.Members()[0].name, u"Skin\\main.xml");
    EXPECT_TRUE(reader.Members()[2].isFolder);
    EXPECT_EQ(reader.Find(u"A.TXT"), 1);
    std::vector<uint8_t> out;
    ASSERT_TRUE(reader.Extract(0, out));
    EXPECT_EQ(std::string(out.begin(), out.end()), text);
    ASSERT_TRUE(reader.Extract(1, out));
    EXPECT_EQ(std::string(out.begin(), out.end()), "hello");
    ASSERT_TRUE(reader.Extract(3, out));
    EXPECT_EQ(out.size(), zeros.size());
}

TEST(HVZipReaderTest, NamesThatCouldLeaveTheFolderAreRefused)
{
    const struct { const char16_t* name; bool safe; } cases[] = {
        {u"a.txt", true}, {u"Skins\\Lounge View\\main.xml", true}, {u"console\\x.txt", true}, {u"COM10", true},
        {u"..\\evil.txt", false}, {u"a\\..\\..\\b", false}, {u"\\Windows\\x.dll", false}, {u"C:x.dll", false},
        {u"a.txt:stream", false}, {u"CON", false}, {u"nul.mp3", false}, {u"Lpt1", false}, {u"aux .txt", false}, {u"CON.txt.bak", false},
        {u"a\\\\b", false}, {u"trailing.", false}, {u"blank ", false}, {u"q?.txt", false}, {u"", false},
        {u".", false},
    };
    for (const auto& c : cases)
        EXPECT_EQ(HVZipReader::IsSafeName(c.name), c.safe) << HVString(c.name).ToUtf8();
}

TEST(HVZipReaderTest, HostileArchivesAreRefusedWhole)
{
    const std::string zeros(2000, '\0');
    const struct { const char* what; std::vector<Entry> entries; } cases[] = {
        {"zip slip after a good member", {{"ok.txt", "x"}, {"../../evil.txt", "evil"}}},
        {"device name", {{"dir/NUL", "x"}}},
        {"same name twice, by case", {{"a.txt", "x"}, {"A.TXT", "y"}}},
        {"same name twice, by Cyrillic case", {{"\xD0\x94.dll", "x", false, -1, 0, 0x800}, {"\xD0\xB4.dll", "y", false, -1, 0, 0x800}}},
        {"same name twice, by a final sigma", {{"\xCE\xA3", "x", false, -1, 0, 0x800}, {"\xCF\x82", "y", false, -1, 0, 0x800}}},
        {"overlapping members", {{"a", zeros, true}, {"b", zeros, true, -1, 0, 0, true}}},
        {"says it unpacks to more than deflate can make of it", {{"a", "x", true, 5000000}}},
        {"encrypted", {{"a", "x", false, -1, 0, 1}}},
    };
    for (const auto& c : cases) {
        HVZipReader reader;
        EXPECT_FALSE(Open(reader, MakeZip(c.entries))) << c.what;
        EXPECT_TRUE(reader.Members().empty()) << c.what;
        EXPECT_FALSE(reader.GetError().IsEmpty()) << c.what;
    }
}

TEST(HVZipReaderTest, DamagedMembersFailOnExtract)
{
    const std::string text(3000, 'y');
    const struct { const char* what; Entry entry; } cases[] = {
        {"wrong CRC", {"a", text, true, -1, 0x1234}},
        {"stream longer than declared", {"a", text, true, 1000}},
        {"stream shorter than declared", {"a", text, true, 4000}},
    };
    for (const auto& c : cases) {
        HVZipReader reader;
        ASSERT_TRUE(Open(reader, MakeZip({c.entry}))) << c.what;
        std::vector<uint8_t> out;
        EXPECT_FALSE(reader.Extract(0, out)) << c.what;
        EXPECT_TRUE(out.empty()) << c.what;
    }
}

TEST(HVZipReaderTest, TruncatedArchivesAndLimits)
{
    const std::string zip = MakeZip({{"a.txt", std::string(4000, 'z'), true}, {"b.txt", "b"}});
    for (size_t cut : {size_t(0), size_t(10), zip.size() / 2, zip.size() - 1}) {
        HVZipReader reader;
        EXPECT_FALSE(Open(reader, zip.substr(0, cut))) << cut;
    }
    HVZipReader::Limits small;
    small.maxMemberSize = 3999;
    HVZipReader limited(small);
    EXPECT_FALSE(Open(limited, zip));
    small.maxMemberSize = 4000;
    small.maxMembers = 1;
    HVZipReader few(small);
    EXPECT_FALSE(Open(few, zip));
}

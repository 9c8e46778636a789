#include "product/CProductRecordRules.h"

#include <gtest/gtest.h>

namespace
{
TEST(CProductRecordRulesTest, LibraryPathsInsideTheEarlierDataFoldersTakeTheAppDataForm)
{
    const HVString earlier = u"C:\\Program Files\\Halvard\\Sonora 31\\";
    const struct { const char16_t* path; const char16_t* expected; } rows[] = {
        {u"C:\\Program Files\\Halvard\\Sonora 31\\Data\\Library\\", u"[App Data Path]Data\\Library\\"},
        {u"c:\\program files\\halvard\\sonora 31\\cover art\\x.jpg", u"[App Data Path]cover art\\x.jpg"},
        {u"C:\\Program Files\\Halvard\\Sonora 31\\Custom Skin Items", u"[App Data Path]Custom Skin Items"},
        {u"C:\\Program Files\\Halvard\\Sonora 31\\Thumbnails\\", u"[App Data Path]Thumbnails\\"},
        // Not a data folder, a folder that only begins like one, another installation, elsewhere.
        {u"C:\\Program Files\\Halvard\\Sonora 31\\Plugins\\", nullptr},
        {u"C:\\Program Files\\Halvard\\Sonora 31\\DataOld\\", nullptr},
        {u"C:\\Program Files\\Halvard\\Sonora 310\\Data\\", nullptr},
        {u"D:\\Music Library\\", nullptr},
        {u"", nullptr},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(HVString(row.path).ToUtf8());
        const HVString expected = row.expected ? row.expected : row.path;
        EXPECT_EQ(CProductRecordRules::RewriteLibraryPath(row.path, earlier), expected);
        // Without its trailing backslash the earlier folder means the same.
        EXPECT_EQ(CProductRecordRules::RewriteLibraryPath(row.path, earlier.Left(earlier.GetLength() - 1)), expected);
    }
    EXPECT_EQ(CProductRecordRules::RewriteLibraryPath(u"\\Data\\x", u""), u"\\Data\\x");
    EXPECT_TRUE(CProductRecordRules::IsLibraryPathSetting(u"librarypath"));
    EXPECT_FALSE(CProductRecordRules::IsLibraryPathSetting(u"LibraryPath2"));
}

TEST(CProductRecordRulesTest, PortableCopiesAreRecordedByFolderTheInstallationByVersion)
{
    const auto name = [](bool portable, const char16_t* folder) {
        return CProductRecordRules::InstallationKeyName(u"Sonora 32", portable, folder);
    };
    EXPECT_EQ(name(false, u"D:\\Anywhere\\"), u"Sonora 32");
    const HVString stick = name(true, u"E:\\Sonora\\");
    EXPECT_TRUE(stick.StartsWith(u"Sonora 32 Portable ")) << stick.ToUtf8();
    EXPECT_EQ(stick.GetLength(), 27);
    EXPECT_EQ(name(true, u"e:\\SONORA"), stick);
    EXPECT_NE(name(true, u"E:\\Sonora 2\\"), stick);
}

TEST(CProductRecordRulesTest, PreviousDataInRegFileForm)
{
    const struct { uint32_t type; std::vector<uint8_t> data; const char16_t* expected; } rows[] = {
        {1, {'a', 0, '\\', 0, '"', 0, 0, 0}, u"\"a\\\\\\\"\""},
        {4, {0x2a, 0, 0, 0x80}, u"dword:8000002a"},
        {4, {1, 2}, u"hex(4):01,02"},
        {3, {0xde, 0xad}, u"hex(3):de,ad"},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(CProductRecordRules::DescribeData(row.type, row.data), row.expected);
        uint32_t type = 0;
        std::vector<uint8_t> data;
        EXPECT_TRUE(CProductRecordRules::ReadData(row.expected, type, data));
        EXPECT_EQ(type, row.type);
        EXPECT_EQ(data, row.data);
    }
    uint32_t type = 0;
    std::vector<uint8_t> data;
    for (const char16_t* bad : {u"dword:2a", u"hex(3):de,", u"hex(3):1ff", u"hex(x):00", u"\"a\\\"", u"text", u"\""})
        EXPECT_FALSE(CProductRecordRules::ReadData(bad, type, data)) << HVString(bad).ToUtf8();
    EXPECT_EQ(CProductRecordRules::DateText(2024, 3, 7), u"20240307");
    EXPECT_EQ(CProductRecordRules::SizeInKilobytes(0), 0u);
    EXPECT_EQ(CProductRecordRules::SizeInKilobytes(1025), 2u);
    EXPECT_EQ(CProductRecordRules::SizeInKilobytes(UINT64_MAX), 0xFFFFFFFFu);
}
}  // namespace

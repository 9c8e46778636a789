#include "foundation/HVFileSystemPath.h"

#include <gtest/gtest.h>

#include <string>

namespace
{
struct Case
{
    const char16_t* input;
    const char16_t* expected;
};

std::string U8(const HVString& s) { return s.ToUtf8(); }
std::string U8(const char16_t* s) { return HVString(s).ToUtf8(); }

TEST(HVFileSystemPathTest, AbsolutePathsAreDrivesAndNetworkShares)
{
    const struct
    {
        const char16_t* path;
        bool absolute;
        bool network;
    } cases[] = {
        {u"C:\\", true, false},
        {u"c:\\Program Files\\Sonora", true, false},
        {u"\\\\server\\share\\x", true, true},
        {u"\\\\1server\\share", true, true},
        {u"\\\\?\\C:\\long", true, false},
        {u"\\\\?\\UNC\\server\\share", true, true},
        {u"relative\\path", false, false},
        {u"C:relative", false, false},
        {u"C:/forward", false, false},
        {u"\\rooted", false, false},
        {u"\\\\ server", false, false},
        {u"\\\\", false, false},
        {u"1:\\", false, false},
        {u"", false, false},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(HVFileSystemPath::IsAbsolute(c.path), c.absolute) << U8(c.path);
        EXPECT_EQ(HVFileSystemPath::IsNetworkPath(c.path), c.network) << U8(c.path);
    }
}

TEST(HVFileSystemPathTest, LongPathFormIsForDrivesAndSharesOnly)
{
    const Case cases[] = {
        {u"C:\\a\\b.txt", u"\\\\?\\C:\\a\\b.txt"},
        {u"C:\\", u"\\\\?\\C:\\"},
        {u"C:/a/b", u"\\\\?\\C:\\a\\b"},
        {u"C:\\a\\.\\b\\..\\c", u"\\\\?\\C:\\a\\c"},
        {u"C:\\a\\..\\..\\b", u"\\\\?\\C:\\b"},
        {u"C:\\a\\\\b\\", u"\\\\?\\C:\\a\\b\\"},
        {u"\\\\server\\share\\dir", u"\\\\?\\UNC\\server\\share\\dir"},
        {u"\\\\server\\share\\..\\..\\x", u"\\\\?\\UNC\\server\\share\\x"},
        {u"\\\\?\\C:\\already", u"\\\\?\\C:\\already"},
        {u"\\\\.\\pipe\\x", u"\\\\.\\pipe\\x"},
        {u"relative\\x", u"relative\\x"},
        {u"", u""},
    };
    for (const Case& c : cases)
        EXPECT_EQ(U8(HVFileSystemPath::ToLongPath(c.input)), U8(c.expected)) << U8(c.input);
}

TEST(HVFileSystemPathTest, LongPathFormRoundTripsToThePlainForm)
{
    for (const char16_t* plain : {u"C:\\a\\b", u"\\\\server\\share\\x", u"relative"}) {
        EXPECT_EQ(U8(HVFileSystemPath::FromLongPath(HVFileSystemPath::ToLongPath(plain))), U8(plain));
    }
    EXPECT_EQ(U8(HVFileSystemPath::FromLongPath(u"\\\\?\\unc\\s\\t")), U8(u"\\\\s\\t"));
}

TEST(HVFileSystemPathTest, RootLengthStopsAtDriveOrShare)
{
    const struct
    {
        const char16_t* path;
        int32_t length;
    } cases[] = {
        {u"C:\\a\\b", 3},          {u"C:", 2},           {u"C:x", 2},
        {u"\\\\srv\\sh\\a", 9},    {u"\\\\srv\\sh", 8},  {u"\\\\srv", 5},
        {u"\\a", 1},               {u"a\\b", 0},         {u"", 0},
        {u"\\\\?\\C:\\a", 7},      {u"\\\\?\\UNC\\srv\\sh\\a", 15},
    };
    for (const auto& c : cases)
        EXPECT_EQ(HVFileSystemPath::RootLength(c.path), c.length) << U8(c.path);
}

TEST(HVFileSystemPathTest, FolderPathsAreNormalised)
{
    const Case cases[] = {
        {u"C:\\Program Files\\Halvard", u"C:\\Program Files\\Halvard\\"},
        {u"C:\\Program Files\\Halvard\\", u"C:\\Program Files\\Halvard\\"},
        {u"C:\\a\\.\\b\\..\\c\\.", u"C:\\a\\c\\"},
        {u"C:\\a\\b\\..", u"C:\\a\\"},
        {u"C:\\..", u"C:\\"},
        {u"C:", u"C:\\"},
        {u"C:/Music//Rock/", u"C:\\Music\\Rock\\"},
        {u"  C:\\x  ", u"C:\\x\\"},
        {u"\\\\server\\share", u"\\\\server\\share\\"},
        {u"\\\\server\\share\\a\\..", u"\\\\server\\share\\"},
        {u"a\\..\\..\\b", u"..\\b\\"},
        {u"", u""},
        {u"   ", u""},
    };
    for (const Case& c : cases)
        EXPECT_EQ(U8(HVFileSystemPath::NormalizeFolderPath(c.input)), U8(c.expected)) << U8(c.input);
}

TEST(HVFileSystemPathTest, BackslashesAndParts)
{
    EXPECT_EQ(U8(HVFileSystemPath::AddBackslash(u"C:\\a")), "C:\\a\\");
    EXPECT_EQ(U8(HVFileSystemPath::AddBackslash(u"")), "");
    EXPECT_EQ(U8(HVFileSystemPath::RemoveBackslash(u"C:\\a\\\\")), "C:\\a");
    EXPECT_EQ(U8(HVFileSystemPath::RemoveBackslash(u"C:\\")), "C:\\");
    EXPECT_EQ(U8(HVFileSystemPath::GetFolder(u"C:\\a\\b.txt")), "C:\\a\\");
    EXPECT_EQ(U8(HVFileSystemPath::GetFolder(u"b.txt")), "");
    EXPECT_EQ(U8(HVFileSystemPath::GetFileName(u"C:\\a\\b.txt")), "b.txt");
    EXPECT_EQ(U8(HVFileSystemPath::GetFileName(u"C:\\a\\folder\\")), "folder");
}

TEST(HVFileSystemPathTest, CleaningMakesPathsTheSystemAccepts)
{
    const Case cases[] = {
        // Components never end in a space or point, nor start with a space.
        {u"C:\\Music \\Rock", u"C:\\Music\\Rock"},
        {u"C:\\Music.\\Rock", u"C:\\Music\\Rock"},
        {u"C:\\ Music\\Rock", u"C:\\Music\\Rock"},
        {u"C:\\Music . \\ Rock", u"C:\\Music\\Rock"},
        {u"C:\\a\\..\\b", u"C:\\a\\b"},
        // Single separators, except the two of a network path.
        {u"C:\\a\\\\\\b", u"C:\\a\\b"},
        {u"\\\\server\\\\share", u"\\\\server\\share"},
        {u"\\\\\\server\\share", u"\\\\server\\share"},
        // Characters.
        {u"C:\\a:b*c?d\"e<f>g|h/i", u"C:\\a_b_c_d_e_f_g_h_i"},
        {u"C:\\tab\there\x01", u"C:\\tab here "},
        {u"1:\\x", u"1_\\x"},
        {u"ab:c", u"ab_c"},
        // The long-path prefix survives untouched.
        {u"\\\\?\\C:\\a?b", u"\\\\?\\C:\\a_b"},
        {u"", u""},
    };
    for (const Case& c : cases) {
        HVString path = c.input;
        HVFileSystemPath::CleanPath(path);
        EXPECT_EQ(U8(path), U8(c.expected)) << U8(c.input);
    }
}

TEST(HVFileSystemPathTest, UniqueNamesCountUpBeforeTheExtension)
{
    const Case cases[] = {
        {u"C:\\a\\file.txt", u"C:\\a\\file - 1.txt"},
        {u"C:\\a\\file - 1.txt", u"C:\\a\\file - 2.txt"},
        {u"C:\\a\\file - 9.txt", u"C:\\a\\file - 10.txt"},
        {u"C:\\a\\file", u"C:\\a\\file - 1"},
        {u"C:\\a\\archive.tar.gz", u"C:\\a\\archive.tar - 1.gz"},
        {u"C:\\a\\.profile", u"C:\\a\\.profile - 1"},
        {u"C:\\a.b\\file", u"C:\\a.b\\file - 1"},
        {u"C:\\a\\folder\\", u"C:\\a\\folder - 1\\"},
        {u"C:\\a\\v1.2\\", u"C:\\a\\v1.2 - 1\\"},
        {u"C:\\a\\file-1.txt", u"C:\\a\\file-1 - 1.txt"},
        {u"C:\\a\\ - 3", u"C:\\a\\ - 4"},
    };
    for (const Case& c : cases)
        EXPECT_EQ(U8(HVFileSystemPath::NextUniqueName(c.input)), U8(c.expected)) << U8(c.input);
}

TEST(HVFileSystemPathTest, SizeTextPicksTheUnitAndThreeDigits)
{
    const struct
    {
        uint64_t bytes;
        const char16_t* text;
    } cases[] = {
        {0, u"0 bytes"},
        {1, u"1 bytes"},
        {1023, u"1023 bytes"},
        {1024, u"1.00 KB"},
        {1536, u"1.50 KB"},
        {10 * 1024 - 1, u"9.99 KB"},
        {12 * 1024 + 307, u"12.2 KB"},
        {1048575, u"1023 KB"},
        {1048576, u"1.00 MB"},
        {(uint64_t(1) << 30) - 1, u"1023 MB"},
        {uint64_t(1) << 30, u"1.00 GB"},
        {uint64_t(1) << 40, u"1.00 TB"},
        {uint64_t(1) << 50, u"1.00 PB"},
        {uint64_t(5000) << 50, u"5000 PB"},
        {~uint64_t(0), u"16383 PB"},
    };
    for (const auto& c : cases)
        EXPECT_EQ(U8(HVFileSystemPath::FileSizeText(c.bytes)), U8(c.text)) << c.bytes;
}

TEST(HVFileSystemPathTest, ThumbsDbInAnyCase)
{
    EXPECT_TRUE(HVFileSystemPath::IsThumbsDb(u"Thumbs.db"));
    EXPECT_TRUE(HVFileSystemPath::IsThumbsDb(u"thumbs.DB"));
    EXPECT_FALSE(HVFileSystemPath::IsThumbsDb(u"Thumbs.db.bak"));
    EXPECT_FALSE(HVFileSystemPath::IsThumbsDb(u"Thumbs"));
}
}

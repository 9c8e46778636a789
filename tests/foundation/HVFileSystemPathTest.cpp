#include "foundation/HVFileSystemPath.h"

#include <gtest/gtest.h>

#include <string>

namespace
{
using P = HVFileSystemPath;
std::string U8(const HVString& s) { return s.ToUtf8(); }

TEST(HVFileSystemPathTest, AbsolutePathsAreDrivesAndNetworkShares)
{
    const struct { const char16_t* path; bool absolute, network; } cases[] = {
        {u"C:\\", true, false},          {u"c:\\Program Files\\Sonora", true, false},
        {u"\\\\server\\share\\x", true, true}, {u"\\\\1server\\share", true, true},
        {u"\\\\?\\C:\\long", true, false}, {u"\\\\?\\UNC\\server\\share", true, true},
        {u"relative\\path", false, false}, {u"C:relative", false, false}, {u"C:/forward", false, false},
        {u"\\rooted", false, false},     {u"\\\\ server", false, false},  {u"\\\\", false, false},
        {u"1:\\", false, false},         {u"", false, false},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(P::IsAbsolute(c.path), c.absolute) << U8(c.path);
        EXPECT_EQ(P::IsNetworkPath(c.path), c.network) << U8(c.path);
    }
    EXPECT_TRUE(P::IsThumbsDb(u"Thumbs.db") && P::IsThumbsDb(u"thumbs.DB"));
    EXPECT_FALSE(P::IsThumbsDb(u"Thumbs.db.bak") || P::IsThumbsDb(u"Thumbs"));
}

TEST(HVFileSystemPathTest, RootLengthStopsAtDriveOrShare)
{
    const struct { const char16_t* path; int32_t length; } cases[] = {
        {u"C:\\a\\b", 3},          {u"C:", 2},           {u"C:x", 2},
        {u"\\\\srv\\sh\\a", 9},    {u"\\\\srv\\sh", 8},  {u"\\\\srv", 5},
        {u"\\a", 1},               {u"a\\b", 0},         {u"", 0},
        {u"\\\\?\\C:\\a", 7},      {u"\\\\?\\UNC\\srv\\sh\\a", 15},
    };
    for (const auto& c : cases)
        EXPECT_EQ(P::RootLength(c.path), c.length) << U8(c.path);
}

HVString Cleaned(const HVString& path)
{
    HVString cleaned = path;
    P::CleanPath(cleaned);
    return cleaned;
}

// Every helper that turns one path into another, each row naming the helper it asks.
TEST(HVFileSystemPathTest, PathTransforms)
{
    const struct { HVString (*fn)(const HVString&); const char16_t* input; const char16_t* expected; } cases[] = {
        // The long-path form is for drives and shares only, and goes back to the plain form.
        {P::ToLongPath, u"C:\\a\\b.txt", u"\\\\?\\C:\\a\\b.txt"}, {P::ToLongPath, u"C:\\", u"\\\\?\\C:\\"},
        {P::ToLongPath, u"C:/a/b", u"\\\\?\\C:\\a\\b"}, {P::ToLongPath, u"C:\\a\\.\\b\\..\\c", u"\\\\?\\C:\\a\\c"},
        {P::ToLongPath, u"C:\\a\\..\\..\\b", u"\\\\?\\C:\\b"}, {P::ToLongPath, u"C:\\a\\\\b\\", u"\\\\?\\C:\\a\\b\\"},
        {P::ToLongPath, u"\\\\server\\share\\dir", u"\\\\?\\UNC\\server\\share\\dir"},
        {P::ToLongPath, u"\\\\server\\share\\..\\..\\x", u"\\\\?\\UNC\\server\\share\\x"},
        {P::ToLongPath, u"\\\\?\\C:\\already", u"\\\\?\\C:\\already"},
        {P::ToLongPath, u"\\\\.\\pipe\\x", u"\\\\.\\pipe\\x"}, {P::ToLongPath, u"relative\\x", u"relative\\x"},
        {P::ToLongPath, u"", u""}, {P::FromLongPath, u"\\\\?\\C:\\a\\b", u"C:\\a\\b"},
        {P::FromLongPath, u"\\\\?\\UNC\\server\\share\\x", u"\\\\server\\share\\x"},
        {P::FromLongPath, u"\\\\?\\unc\\s\\t", u"\\\\s\\t"}, {P::FromLongPath, u"relative", u"relative"},
        // Folder paths are normalised.
        {P::NormalizeFolderPath, u"C:\\Program Files\\Halvard", u"C:\\Program Files\\Halvard\\"},
        {P::NormalizeFolderPath, u"C:\\Program Files\\Halvard\\", u"C:\\Program Files\\Halvard\\"},
        {P::NormalizeFolderPath, u"C:\\a\\.\\b\\..\\c\\.", u"C:\\a\\c\\"},
        {P::NormalizeFolderPath, u"C:\\a\\b\\..", u"C:\\a\\"}, {P::NormalizeFolderPath, u"C:\\..", u"C:\\"},
        {P::NormalizeFolderPath, u"C:", u"C:\\"},
        {P::NormalizeFolderPath, u"C:/Music//Rock/", u"C:\\Music\\Rock\\"},
        {P::NormalizeFolderPath, u"  C:\\x  ", u"C:\\x\\"},
        {P::NormalizeFolderPath, u"\\\\server\\share", u"\\\\server\\share\\"},
        {P::NormalizeFolderPath, u"\\\\server\\share\\a\\..", u"\\\\server\\share\\"},
        {P::NormalizeFolderPath, u"a\\..\\..\\b", u"..\\b\\"}, {P::NormalizeFolderPath, u"", u""},
        {P::NormalizeFolderPath, u"   ", u""}, {P::AddBackslash, u"C:\\a", u"C:\\a\\"}, {P::AddBackslash, u"", u""},
        {P::RemoveBackslash, u"C:\\a\\\\", u"C:\\a"}, {P::RemoveBackslash, u"C:\\", u"C:\\"},
        {P::GetFolder, u"C:\\a\\b.txt", u"C:\\a\\"}, {P::GetFolder, u"b.txt", u""},
        {P::GetFileName, u"C:\\a\\b.txt", u"b.txt"}, {P::GetFileName, u"C:\\a\\folder\\", u"folder"},
        // Cleaning: components never end in a space or point, nor start with a space; single
        // separators except the two of a network path; no reserved characters; the long-path
        // prefix survives untouched.
        {Cleaned, u"C:\\Music \\Rock", u"C:\\Music\\Rock"}, {Cleaned, u"C:\\Music.\\Rock", u"C:\\Music\\Rock"},
        {Cleaned, u"C:\\ Music\\Rock", u"C:\\Music\\Rock"}, {Cleaned, u"C:\\Music . \\ Rock", u"C:\\Music\\Rock"},
        {Cleaned, u"C:\\a\\..\\b", u"C:\\a\\b"}, {Cleaned, u"C:\\a\\\\\\b", u"C:\\a\\b"},
        {Cleaned, u"\\\\server\\\\share", u"\\\\server\\share"},
        {Cleaned, u"\\\\\\server\\share", u"\\\\server\\share"},
        {Cleaned, u"C:\\a:b*c?d\"e<f>g|h/i", u"C:\\a_b_c_d_e_f_g_h_i"},
        {Cleaned, u"C:\\tab\there\x01", u"C:\\tab here "}, {Cleaned, u"1:\\x", u"1_\\x"}, {Cleaned, u"ab:c", u"ab_c"},
        {Cleaned, u"\\\\?\\C:\\a?b", u"\\\\?\\C:\\a_b"}, {Cleaned, u"", u""},
        // Unique names count up before the extension.
        {P::NextUniqueName, u"C:\\a\\file.txt", u"C:\\a\\file - 1.txt"},
        {P::NextUniqueName, u"C:\\a\\file - 1.txt", u"C:\\a\\file - 2.txt"},
        {P::NextUniqueName, u"C:\\a\\file - 9.txt", u"C:\\a\\file - 10.txt"},
        {P::NextUniqueName, u"C:\\a\\file", u"C:\\a\\file - 1"},
        {P::NextUniqueName, u"C:\\a\\archive.tar.gz", u"C:\\a\\archive.tar - 1.gz"},
        {P::NextUniqueName, u"C:\\a\\.profile", u"C:\\a\\.profile - 1"},
        {P::NextUniqueName, u"C:\\a.b\\file", u"C:\\a.b\\file - 1"},
        {P::NextUniqueName, u"C:\\a\\folder\\", u"C:\\a\\folder - 1\\"},
        {P::NextUniqueName, u"C:\\a\\v1.2\\", u"C:\\a\\v1.2 - 1\\"},
        {P::NextUniqueName, u"C:\\a\\file-1.txt", u"C:\\a\\file-1 - 1.txt"},
        {P::NextUniqueName, u"C:\\a\\ - 3", u"C:\\a\\ - 4"},
    };
    for (const auto& c : cases)
        EXPECT_EQ(U8(c.fn(c.input)), U8(c.expected)) << U8(c.input);
}

TEST(HVFileSystemPathTest, SizeTextPicksTheUnitAndThreeDigits)
{
    const struct { uint64_t bytes; const char16_t* text; } cases[] = {
        {0, u"0 bytes"},         {1, u"1 bytes"},      {1023, u"1023 bytes"},  {1024, u"1.00 KB"},
        {1536, u"1.50 KB"},      {10 * 1024 - 1, u"9.99 KB"},                  {12 * 1024 + 307, u"12.2 KB"},
        {1048575, u"1023 KB"},   {1048576, u"1.00 MB"}, {(uint64_t(1) << 30) - 1, u"1023 MB"},
        {uint64_t(1) << 30, u"1.00 GB"}, {uint64_t(1) << 40, u"1.00 TB"}, {uint64_t(1) << 50, u"1.00 PB"},
        {uint64_t(5000) << 50, u"5000 PB"}, {~uint64_t(0), u"16383 PB"},
    };
    for (const auto& c : cases)
        EXPECT_EQ(U8(P::FileSizeText(c.bytes)), U8(c.text)) << c.bytes;
}
}

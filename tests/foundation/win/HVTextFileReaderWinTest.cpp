#include "foundation/HVTextFileReader.h"
#include "foundation/HVXMLDocument.h"
#include "foundation/win/HVUniqueResource.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <string>

namespace
{
class HVTextFileReaderWinTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        wchar_t temp[MAX_PATH];
        ASSERT_GT(::GetTempPathW(MAX_PATH, temp), 0u);
        base_ = HVString(temp) + u"hvtextwin";
        RemoveTree(base_);
        ASSERT_TRUE(::CreateDirectoryW(base_.w(), nullptr));
    }
    void TearDown() override { RemoveTree(base_); }

    // Writes through the "\\?\" form, so that long paths can be made too.
    static bool WriteFile(const HVString& path, const std::string& bytes)
    {
        HVFileHandle file(::CreateFileW((u"\\\\?\\" + path).w(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS,
                                        FILE_ATTRIBUTE_NORMAL, nullptr));
        DWORD written = 0;
        return file && ::WriteFile(file.Get(), bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr) &&
               written == bytes.size();
    }
    static void RemoveTree(const HVString& folder)
    {
        const HVString pattern = u"\\\\?\\" + folder + u"\\*";
        WIN32_FIND_DATAW data;
        HVFindHandle find(::FindFirstFileW(pattern.w(), &data));
        if (find) {
            do {
                const HVString name(data.cFileName);
                if (name == u"." || name == u"..")
                    continue;
                const HVString child = folder + u"\\" + name;
                if (data.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY)
                    RemoveTree(child);
                else
                    ::DeleteFileW((u"\\\\?\\" + child).w());
            } while (::FindNextFileW(find.Get(), &data));
        }
        find.Reset();
        ::RemoveDirectoryW((u"\\\\?\\" + folder).w());
    }

    HVString base_;
};

TEST_F(HVTextFileReaderWinTest, ReadsPathsLongerThanMaxPath)
{
    HVString folder = base_;
    while (folder.GetLength() < 300) {
        folder += u"\\a-folder-name-of-forty-characters-long__";
        ASSERT_TRUE(::CreateDirectoryW((u"\\\\?\\" + folder).w(), nullptr));
    }
    const HVString path = folder + u"\\Install.xml";
    ASSERT_GT(path.GetLength(), MAX_PATH);
    ASSERT_TRUE(WriteFile(path, "<HVIC version='1.0'/>"));
    HVXMLDocument doc;
    EXPECT_TRUE(doc.Load(path));   // a plain path: the reader adds the long form itself
    EXPECT_TRUE(doc.FindElem(u"/HVIC"));
}

TEST_F(HVTextFileReaderWinTest, BytesThatAreNotUtf8UseTheSystemCodePage)
{
    const std::string bytes = "<a>\xE9t\xE9 \x80</a>";
    const HVString path = base_ + u"\\ansi.xml";
    ASSERT_TRUE(WriteFile(path, bytes));
    wchar_t expected[64] = {};
    const int n = ::MultiByteToWideChar(CP_ACP, 0, bytes.data(), static_cast<int>(bytes.size()), expected, 64);
    ASSERT_GT(n, 0);
    HVString text;
    ASSERT_TRUE(HVTextFileReader::Read(path, text));
    EXPECT_EQ(text, HVString(expected, n));
    if (::GetACP() == 1252) {
        EXPECT_EQ(text, u"<a>\u00e9t\u00e9 \u20ac</a>");
    }
}

TEST_F(HVTextFileReaderWinTest, LockedFileCannotBeRead)
{
    const HVString path = base_ + u"\\locked.xml";
    ASSERT_TRUE(WriteFile(path, "<a/>"));
    HVFileHandle lock(::CreateFileW(path.w(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr));
    ASSERT_TRUE(lock);
    HVXMLDocument doc;
    EXPECT_FALSE(doc.Load(path));
    EXPECT_TRUE(doc.GetError().IsEmpty());
    lock.Reset();
    EXPECT_TRUE(doc.Load(path));
}
}   // namespace

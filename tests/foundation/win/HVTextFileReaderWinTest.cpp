#include "foundation/HVTextFileReader.h"
#include "foundation/HVXMLDocument.h"
#include "foundation/win/HVUniqueResource.h"

#include "ScratchFolderTest.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <string>

namespace
{
using HVTextFileReaderWinTest = ScratchFolderTest;

TEST_F(HVTextFileReaderWinTest, ReadsPathsLongerThanMaxPath)
{
    HVString folder = root;
    while (folder.GetLength() < 300)
        folder += u"a-folder-name-of-forty-characters-long__\\";
    const HVString path = folder + u"Install.xml";
    Write(path, "<HVIC version='1.0'/>");
    ASSERT_GT(path.GetLength(), MAX_PATH);
    HVXMLDocument doc;
    EXPECT_TRUE(doc.Load(path));   // a plain path: the reader adds the long form itself
    EXPECT_TRUE(doc.FindElem(u"/HVIC"));
}

TEST_F(HVTextFileReaderWinTest, BytesThatAreNotUtf8UseTheSystemCodePage)
{
    const std::string bytes = "<a>\xE9t\xE9 \x80</a>";
    const HVString path = root + u"ansi.xml";
    Write(path, bytes);
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
    const HVString path = root + u"locked.xml";
    Write(path, "<a/>");
    HVFileHandle lock(::CreateFileW(path.w(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr));
    ASSERT_TRUE(lock);
    HVXMLDocument doc;
    EXPECT_FALSE(doc.Load(path));
    EXPECT_TRUE(doc.GetError().IsEmpty());
    lock.Reset();
    EXPECT_TRUE(doc.Load(path));
}
}   // namespace

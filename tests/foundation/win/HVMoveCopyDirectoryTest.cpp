#include "foundation/win/HVMoveCopyDirectory.h"

#include "foundation/HVLog.h"
#include "foundation/win/HVFileSystem.h"

#include "FolderTree.h"
#include "HeldFileLock.h"
#include "ScratchFolderTest.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

namespace
{
class HVMoveCopyDirectoryTest : public ScratchFolderTest
{
protected:
    void SetUp() override
    {
        ScratchFolderTest::SetUp();
        source = root + u"source\\";
        target = root + u"target\\";
        ASSERT_TRUE(HVFileSystem::MakeDirectoryTree(source + u"Empty\\"));
        for (const char* f : {"a.txt", "Skins\\b.txt", "Skins\\Standard View\\c.txt"})
            Write(source + HVString::FromUtf8(f), f);
    }

    static ::testing::AssertionResult Holds(const HVString& folder, const std::vector<std::wstring>& tree)
    {
        return e2e::TreeMatches(folder.w(), tree, e2e::TreeEntries::FilesAndFolders);
    }

    const std::vector<std::wstring> expected = {L"Empty\\", L"Skins\\", L"Skins\\Standard View\\",
                                                L"Skins\\Standard View\\c.txt", L"Skins\\b.txt", L"a.txt"};
    HVString source, target;
};

// The tree is listed depth first, each folder before its contents.
TEST_F(HVMoveCopyDirectoryTest, CopyLeavesTheSourceAndFillsTheTarget)
{
    HVMoveCopyDirectory job(HVMoveCopyDirectory::Mode::Copy);
    ASSERT_TRUE(job.AddTree(source, target));
    const auto& items = job.GetItems();
    ASSERT_EQ(items.size(), 7u);
    EXPECT_TRUE(items[0].isFolder);
    EXPECT_EQ(items[0].target, target);
    EXPECT_EQ(std::count_if(items.begin(), items.end(), [](const auto& i) { return i.isFolder; }), 4);
    EXPECT_TRUE(job.Run());
    EXPECT_TRUE(Holds(target, expected));
    EXPECT_TRUE(Holds(source, expected));
    EXPECT_TRUE(log.Lines().empty());
    HVMoveCopyDirectory missing(HVMoveCopyDirectory::Mode::Copy);
    EXPECT_FALSE(missing.AddTree(root + u"missing", target));
}

TEST_F(HVMoveCopyDirectoryTest, MoveEmptiesTheSourceAndReplacesReadOnlyTargets)
{
    ASSERT_TRUE(HVFileSystem::MakeDirectoryTree(target));
    ASSERT_TRUE(HVFileSystem::WriteFile(target + u"a.txt", "old", 3));
    ::SetFileAttributesW(HVString(target + u"a.txt").w(), FILE_ATTRIBUTE_READONLY);
    HVMoveCopyDirectory job(HVMoveCopyDirectory::Mode::Move);
    ASSERT_TRUE(job.AddTree(source, target));
    EXPECT_TRUE(job.Run());
    EXPECT_TRUE(Holds(target, expected));
    EXPECT_FALSE(HVFileSystem::FolderExists(source));
    uint64_t size = 0;
    EXPECT_TRUE(HVFileSystem::GetFileSize(target + u"a.txt", size));
    EXPECT_EQ(size, 5u);   // "a.txt" as written above, not "old"
}

TEST_F(HVMoveCopyDirectoryTest, ALockedFileStaysAndIsReported)
{
    const HVString locked = source + u"Skins\\b.txt";
    e2e::HeldFileLock lock(locked.w());
    ASSERT_TRUE(lock.IsHeld()) << e2e::Utf8(lock.Error());
    HVMoveCopyDirectory job(HVMoveCopyDirectory::Mode::Move);
    ASSERT_TRUE(job.AddTree(source, target));
    EXPECT_FALSE(job.Run());
    ASSERT_EQ(job.GetFailedItems().size(), 1u);
    EXPECT_EQ(job.GetFailedItems()[0].source, locked);
    lock.Release();
    EXPECT_TRUE(HVFileSystem::Exists(locked, false));
    EXPECT_TRUE(HVFileSystem::Exists(target + u"Skins\\Standard View\\c.txt", false));
    EXPECT_FALSE(HVFileSystem::Exists(target + u"Skins\\b.txt", false));
    EXPECT_TRUE(Holds(source, {L"Skins\\", L"Skins\\b.txt"}));
    ASSERT_FALSE(log.Lines().empty());
    EXPECT_EQ(log.Texts().back(), "HVMoveCopyDirectory::Run: Error 32 moving " + locked.ToUtf8() + " to " +
                                    (target + u"Skins\\b.txt").ToUtf8());
}
}

#include "foundation/win/HVFileSystem.h"

#include "foundation/HVLog.h"

#include "HeldFileLock.h"
#include "PendingRenames.h"
#include "ScratchFolderTest.h"
#include "TestRegistry.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

namespace
{
std::string U8(const HVString& s) { return s.ToUtf8(); }

using HVFileSystemTest = ScratchFolderTest;

TEST_F(HVFileSystemTest, DeleteClearsReadOnlyFirstFailsSilentlyOnWhatIsNotThereAndLogsALockedFile)
{
    const HVString readOnly = root + u"read-only.txt";
    Write(readOnly, "x", FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM);
    EXPECT_TRUE(HVFileSystem::DeleteFile(readOnly));
    EXPECT_FALSE(HVFileSystem::Exists(readOnly, true));
    for (const HVString& missing : {root + u"missing.txt", root + u"missing folder\\missing.txt", HVString(),
                                    HVString(u"relative\\missing.txt")})
        EXPECT_FALSE(HVFileSystem::DeleteFile(missing)) << U8(missing);
    EXPECT_TRUE(log.Lines().empty());

    // A locked file is neither deleted nor copied, and the failed delete is logged.
    const HVString file = root + u"locked.dll";
    Write(file, "in use");
    e2e::HeldFileLock lock(file.w());
    ASSERT_TRUE(lock.IsHeld()) << e2e::Utf8(lock.Error());
    EXPECT_FALSE(HVFileSystem::DeleteFile(file));
    EXPECT_TRUE(HVFileSystem::Exists(file, false));
    EXPECT_EQ(log.Texts(), std::vector<std::string>{"HVFileSystem::DeleteFile: Error 32 deleting existing file: " + U8(file)});
    EXPECT_TRUE(log.Has(HVLog::kError, "deleting"));
    DWORD error = 0;
    EXPECT_FALSE(HVFileSystem::CopyFile(file, root + u"copy.dll", false, &error));
    EXPECT_EQ(error, static_cast<DWORD>(ERROR_SHARING_VIOLATION));
    EXPECT_FALSE(HVFileSystem::Exists(root + u"copy.dll", false));

    lock.Release();
    EXPECT_TRUE(HVFileSystem::DeleteFile(file));
}

// Either the new file stands under the original name and no backup is left, or nothing
// changed at all. A file named like the backup belongs to somebody else and stays.
TEST_F(HVFileSystemTest, SafeReplaceSwapsInTheNewFileOrChangesNothing)
{
    enum Original { kNone, kReadOnly, kLocked, kPlain };
    const struct
    {
        const char* name;
        Original original;
        const char16_t* incoming;   // written with "new" unless its name says it is not there
        bool replaced;
        std::vector<std::string> names;
        const char* logged;
    } rows[] = {
        {"no original: a move", kNone, u"staged\\Sonora.exe", true, {"Sonora - 1.exe", "Sonora.exe", "staged"}, nullptr},
        {"read-only original", kReadOnly, u"staged\\Sonora.exe", true, {"Sonora - 1.exe", "Sonora.exe", "staged"}, nullptr},
        {"new file missing", kPlain, u"not there.exe", false, {"Sonora - 1.exe", "Sonora.exe"},
         "HVFileSystem::SafeReplaceFile: Error moving new file into place of original name"},
        {"original in use", kLocked, u"Sonora.new", false, {"Sonora - 1.exe", "Sonora.exe", "Sonora.new"},
         "HVFileSystem::SafeReplaceFile: Error renaming original file"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        ASSERT_TRUE(Empty());
        log.Clear();
        const HVString original = root + u"Sonora.exe";
        const HVString incoming = root + row.incoming;
        Write(root + u"Sonora - 1.exe", "somebody else's");
        if (row.original != kNone)
            Write(original, "old", row.original == kReadOnly ? FILE_ATTRIBUTE_READONLY : FILE_ATTRIBUTE_NORMAL);
        if (HVString(row.incoming).Find(u"not there") == HVString::npos)
            Write(incoming, "new");
        {
            std::optional<e2e::HeldFileLock> lock;
            if (row.original == kLocked) {
                lock.emplace(original.w());
                ASSERT_TRUE(lock->IsHeld()) << e2e::Utf8(lock->Error());
            }
            EXPECT_EQ(HVFileSystem::SafeReplaceFile(original, incoming), row.replaced);
        }
        EXPECT_EQ(Read(original), row.replaced ? "new" : "old");
        EXPECT_EQ(Read(root + u"Sonora - 1.exe"), "somebody else's");
        EXPECT_EQ(Names(root), row.names);
        if (!row.replaced && row.original == kLocked) {
            EXPECT_EQ(Read(incoming), "new");
        }
        EXPECT_EQ(log.Texts(), row.logged ? std::vector<std::string>{row.logged} : std::vector<std::string>{});
    }
}

// Parents are made outermost first; only an absolute path that fails is logged, in its plain form.
// The worst of the bad paths give false quietly everywhere else too, and never crash.
TEST_F(HVFileSystemTest, DirectoryTreeMakesTheMissingParentsOrLogsThePath)
{
    Write(root + u"file", "not a folder");
    HVString overlong = root;
    for (int i = 0; i < 300; ++i)
        overlong += u'n';   // one component beyond what any file system allows
    const struct { HVString path; bool made; } rows[] = {
        {u"", false}, {u"relative\\path", false}, {u"\\rooted\\path", false}, {u"C:drive-relative", false},
        {u"C:/forward", false}, {root + u"a", true}, {root + u"a\\b\\c\\", true}, {root + u"a\\b\\c", true},
        {root + u"a\\b\\..\\d\\.\\e", true}, {root + u"file\\below", false}, {root + u"bad<name>\\x", false},
        {u"Q:\\no such drive\\x", false}, {overlong, false}, {u"\\\\no-such-server\\share\\folder\\", false},
        {root + u"what?.txt", false},
    };
    for (const auto& row : rows) {
        log.Clear();
        EXPECT_EQ(HVFileSystem::MakeDirectoryTree(row.path), row.made) << U8(row.path);
        const bool logged = !row.made && HVFileSystemPath::IsAbsolute(row.path.view());
        EXPECT_EQ(log.Texts(), logged ? std::vector<std::string>{"HVFileSystem::MakeDirectoryTree: Failed! Path=" + U8(row.path)}
                                      : std::vector<std::string>{});
    }
    for (const char16_t* made : {u"a\\b", u"a\\b\\c", u"a\\d\\e"})
        EXPECT_TRUE(HVFileSystem::FolderExists(root + made)) << U8(made);
    for (const HVString& bad : {overlong, HVString(u"\\\\no-such-server\\share\\folder\\"), root + u"what?.txt"}) {
        log.Clear();
        EXPECT_FALSE(HVFileSystem::DeleteFile(bad)) << U8(bad);
        EXPECT_FALSE(HVFileSystem::Exists(bad, true));
        EXPECT_FALSE(HVFileSystem::IsDirectoryWritable(bad));
        EXPECT_FALSE(HVFileSystem::WriteFile(bad, "x", 1));
        EXPECT_TRUE(log.Lines().empty()) << log.Lines()[0].message;
        HVString unique = bad;
        EXPECT_TRUE(HVFileSystem::MakeUniqueName(unique));   // nothing there: the name stays
        EXPECT_EQ(unique, bad);
    }
    EXPECT_FALSE(HVFileSystem::SafeReplaceFile(u"", root + u"x"));
    EXPECT_FALSE(HVFileSystem::CopyFile(u"", root + u"x", false));
    uint64_t free = 0;
    for (const char16_t* bad : {u"relative", u"", u"Q:\\no such drive\\"})
        EXPECT_FALSE(HVFileSystem::GetFreeDiskSpace(bad, free)) << U8(bad);
}

TEST_F(HVFileSystemTest, WriteTestOnWritableAndMissingFolders)
{
    EXPECT_TRUE(HVFileSystem::IsDirectoryWritable(HVFileSystemPath::RemoveBackslash(root)));
    {
        // The folder itself can't be opened, so a test file is made in it; it is gone after.
        const HVFileHandle held = HoldWithoutSharing(root);
        ASSERT_TRUE(held);
        EXPECT_TRUE(HVFileSystem::IsDirectoryWritable(root));
    }
    EXPECT_TRUE(Names(root).empty()) << "the test file was left behind";
    for (const HVString& missing : {root + u"missing\\", HVString(), HVString(u"\\\\")})
        EXPECT_FALSE(HVFileSystem::IsDirectoryWritable(missing)) << U8(missing);
    EXPECT_TRUE(log.Lines().empty());
}

TEST_F(HVFileSystemTest, FolderIsEmptyApartFromThumbnailCaches)
{
    const HVString folder = root + u"pictures\\";
    ASSERT_TRUE(HVFileSystem::MakeDirectoryTree(folder));
    EXPECT_TRUE(HVFileSystem::IsFolderEmpty(folder, false));
    Write(folder + u"Thumbs.db", "");
    EXPECT_TRUE(HVFileSystem::IsFolderEmpty(folder, false));
    Write(folder + u"sub\\thumbs.DB", "");
    EXPECT_FALSE(HVFileSystem::IsFolderEmpty(folder, false));
    EXPECT_TRUE(HVFileSystem::IsFolderEmpty(folder, true));
    Write(folder + u"sub\\song.mp3", "");
    EXPECT_FALSE(HVFileSystem::IsFolderEmpty(folder, true));
    Write(folder + u"cover.jpg", "");
    EXPECT_FALSE(HVFileSystem::IsFolderEmpty(folder + u"sub", false));
    EXPECT_TRUE(HVFileSystem::IsFolderEmpty(root + u"missing", true));
    EXPECT_TRUE(log.Lines().empty());
    // An empty folder that can't be listed may not be called empty.
    const HVString unreadable = root + u"unreadable\\";
    ASSERT_TRUE(HVFileSystem::MakeDirectoryTree(unreadable));
    const HVFileHandle held = HoldWithoutSharing(unreadable);
    ASSERT_TRUE(held);
    EXPECT_FALSE(HVFileSystem::IsFolderEmpty(unreadable, true));
    ASSERT_EQ(log.Lines().size(), 1u);
    EXPECT_EQ(log.Lines()[0].Text().rfind("HVFileSystem::IsFolderEmpty: Error 32 reading folder: " + U8(unreadable), 0), 0u)
        << log.Lines()[0].Text();
}

// The same on a short path and on one beyond 260 characters; failures are logged naming the
// plain paths, never the prefixed ones.
TEST_F(HVFileSystemTest, EveryOperationWorksOnShortPathsAndBeyond260Characters)
{
    HVString longFolder = root;
    for (int i = 0; i < 6; ++i)
        longFolder += HVString::Format(u"level %d of a path far longer than the old limit\\", i);
    ASSERT_GT(longFolder.GetLength(), 300);
    for (const HVString& folder : {root + u"short\\", longFolder}) {
        SCOPED_TRACE(folder.GetLength());
        log.Clear();
        ASSERT_TRUE(HVFileSystem::MakeDirectoryTree(folder));
        EXPECT_TRUE(HVFileSystem::FolderExists(folder) && HVFileSystem::IsDirectoryWritable(folder));
        EXPECT_TRUE(HVFileSystem::IsFolderEmpty(folder, true));
        uint64_t size = 0;
        // Free space is read from the nearest existing folder.
        for (const HVString& path : {folder, folder + u"not\\made\\yet\\"})
            EXPECT_TRUE(HVFileSystem::GetFreeDiskSpace(path, size) && size > 0) << U8(path);
        Write(folder + u"a.txt", "12345");
        EXPECT_FALSE(HVFileSystem::IsFolderEmpty(folder, false));
        EXPECT_TRUE(HVFileSystem::GetFileSize(folder + u"a.txt", size));
        EXPECT_EQ(size, 5u);
        EXPECT_FALSE(HVFileSystem::GetFileSize(folder, size));
        DWORD error = 1;
        EXPECT_TRUE(HVFileSystem::CopyFile(folder + u"a.txt", folder + u"b.txt", true, &error));
        EXPECT_EQ(error, 0u);
        EXPECT_FALSE(HVFileSystem::CopyFile(folder + u"a.txt", folder + u"b.txt", true, &error));
        EXPECT_EQ(error, static_cast<DWORD>(ERROR_FILE_EXISTS));
        EXPECT_FALSE(HVFileSystem::MoveFile(folder + u"a.txt", folder + u"b.txt", false, false, &error));
        EXPECT_TRUE(HVFileSystem::MoveFile(folder + u"a.txt", folder + u"b.txt", true, false, &error));
        EXPECT_FALSE(HVFileSystem::Exists(folder + u"a.txt", false));
        EXPECT_EQ(Read(folder + u"b.txt"), "12345");
        ASSERT_EQ(log.Lines().size(), 2u);
        EXPECT_TRUE(log.Has(HVLog::kWarning, "Error 80 copying " + U8(folder) + "a.txt to " + U8(folder) + "b.txt"));
        EXPECT_EQ(log.Lines()[1].source, "HVFileSystem::MoveFile");
        Write(folder + u"b.new", "54321");
        EXPECT_TRUE(HVFileSystem::SafeReplaceFile(folder + u"b.txt", folder + u"b.new"));
        EXPECT_EQ(Read(folder + u"b.txt"), "54321");
        ASSERT_TRUE(::SetFileAttributesW(HVFileSystemPath::ToLongPath(folder + u"b.txt").w(), FILE_ATTRIBUTE_READONLY));
        EXPECT_TRUE(HVFileSystem::SetNormalAttributes(folder + u"b.txt"));
        EXPECT_EQ(HVFileSystem::GetAttributes(folder + u"b.txt") & FILE_ATTRIBUTE_READONLY, 0u);

        ASSERT_TRUE(HVFileSystem::MakeDirectoryTree(folder + u"sub"));
        Write(folder + u"c.log", "");
        std::vector<HVFileSystem::Entry> entries;
        EXPECT_TRUE(HVFileSystem::EnumerateFolder(folder, entries, u"*.txt"));
        ASSERT_EQ(entries.size(), 1u);
        EXPECT_EQ(U8(entries[0].name), "b.txt");
        EXPECT_EQ(entries[0].size, 5u);
        EXPECT_FALSE(entries[0].isFolder);
        EXPECT_TRUE(HVFileSystem::EnumerateFolder(folder, entries, u"*.none"));
        EXPECT_TRUE(entries.empty());
        EXPECT_FALSE(HVFileSystem::EnumerateFolder(folder + u"missing", entries));
        EXPECT_EQ(Names(folder), (std::vector<std::string>{"b.txt", "c.log", "sub"}));
        EXPECT_TRUE(HVFileSystem::DeleteFolderTree(folder + u"sub"));
        EXPECT_FALSE(HVFileSystem::FolderExists(folder + u"sub"));

        // Unique names skip everything that exists, a folder too.
        Write(folder + u"b - 1.txt", "");
        ASSERT_TRUE(HVFileSystem::MakeDirectoryTree(folder + u"b - 2.txt"));
        for (const auto& [name, unique] : {std::pair{u"b.txt", u"b - 3.txt"}, {u"new.mp3", u"new.mp3"}}) {
            HVString path = folder + name;
            EXPECT_TRUE(HVFileSystem::MakeUniqueName(path));
            EXPECT_EQ(U8(path), U8(folder + unique));
        }
        EXPECT_TRUE(HVFileSystem::DeleteFile(folder + u"b.txt"));
        EXPECT_FALSE(HVFileSystem::Exists(folder + u"b.txt", false));
        log.Clear();
        EXPECT_FALSE(HVFileSystem::MakeDirectoryTree(folder + u"a|b"));
        EXPECT_EQ(log.Texts(), std::vector<std::string>{"HVFileSystem::MakeDirectoryTree: Failed! Path=" + U8(folder) + "a|b"});
    }
    EXPECT_TRUE(HVFileSystem::DeleteFolderTree(root + u"level 0 of a path far longer than the old limit"));
    EXPECT_TRUE(HVFileSystem::DeleteFolderTree(root + u"short"));
    EXPECT_TRUE(Names(root).empty());
}

TEST_F(HVFileSystemTest, MoveAtRestartIsRecordedForTheSessionManager)
{
    const e2e::PendingRenames restore;
    const HVString file = root + u"replace at restart.dll";
    Write(file, "");
    ASSERT_TRUE(HVFileSystem::MoveFileAtRestart(file, HVString()));
    // The newest pair is last: a deletion's target is empty, and the source is the caller's
    // form, never the long-path prefix that the session manager would not understand.
    const auto entries = e2e::RegMultiString(HKEY_LOCAL_MACHINE, L"System\\CurrentControlSet\\Control\\Session Manager",
                                             L"PendingFileRenameOperations");
    ASSERT_TRUE(entries && entries->size() >= 2);
    const std::wstring& from = (*entries)[entries->size() - 2];
    EXPECT_TRUE(from.ends_with(L"replace at restart.dll")) << e2e::Utf8(from);
    EXPECT_EQ(from.find(L"\\\\?\\"), std::wstring::npos) << e2e::Utf8(from);
    EXPECT_TRUE(entries->back().empty());
    EXPECT_FALSE(HVFileSystem::MoveFileAtRestart(u"", u""));
}
}

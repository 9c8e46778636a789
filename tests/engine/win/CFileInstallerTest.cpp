#include "engine/win/CFileInstaller.h"

#include "engine/CInstallChangeLog.h"
#include "engine/IInstallProgress.h"
#include "engine/win/CDeferredOperations.h"
#include "foundation/win/HVFileSystem.h"
#include "foundation/win/HVRegKey.h"

#include "FolderTree.h"
#include "HeldFileLock.h"
#include "TestPaths.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <string>

namespace
{
std::string Read(const HVString& path)
{
    std::vector<uint8_t> data;
    return HVFileSystem::ReadFile(path, data) ? std::string(data.begin(), data.end()) : std::string("<missing>");
}

void Write(const HVString& path, const std::string& text)
{
    ASSERT_TRUE(HVFileSystem::MakeDirectoryTree(path.Left(path.ReverseFind(u'\\') + 1)));
    ASSERT_TRUE(HVFileSystem::WriteFile(path, text.data(), text.size())) << path.ToUtf8();
}

class ProgressRecord : public IInstallProgress
{
public:
    void SetStatusText(const HVString& text) override { statuses.push_back(text); }
    void SetProgressRange(int32_t minimum, int32_t maximum) override { range = {minimum, maximum}; }
    void SetProgressPosition(int32_t position) override { positions.push_back(position); }
    void DrainMessages() override { ++drains; }

    std::vector<HVString> statuses;
    std::pair<int32_t, int32_t> range;
    std::vector<int32_t> positions;
    int drains = 0;
};

const HVString kSessionManager = u"System\\CurrentControlSet\\Control\\Session Manager";

// Replacements at restart written by a test are taken out again, so no later restart of the
// prefix moves scratch files about.
class PendingRenames
{
public:
    PendingRenames() { Key().QueryMultiString(u"PendingFileRenameOperations", before_); }
    ~PendingRenames()
    {
        HVRegKey key = Key();
        before_.empty() ? key.DeleteValue(u"PendingFileRenameOperations")
                        : key.SetMultiString(u"PendingFileRenameOperations", before_);
    }
    static bool Names(const HVString& destination)
    {
        std::vector<HVString> entries;
        Key().QueryMultiString(u"PendingFileRenameOperations", entries);
        for (const HVString& entry : entries)
            if (entry.EndsWithNoCase(destination.view()))
                return true;
        return false;
    }

private:
    static HVRegKey Key()
    {
        HVRegKey key;
        key.Open(HKEY_LOCAL_MACHINE, kSessionManager, KEY_READ | KEY_WRITE);
        return key;
    }
    std::vector<HVString> before_;
};

class CFileInstallerTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        root = HVString(e2e::ScratchFolder(L"CFileInstaller").c_str());
        ASSERT_FALSE(root.IsEmpty());
        source = root + u"source\\";
        destination = root + u"install\\";
        deferred.SetInstallFolder(destination);
        installer.SetInstallFolder(destination);
    }
    bool NoTemporaryLeft() const
    {
        for (const std::wstring& file : e2e::ListTree(root.w()))
            if (HVString(file.c_str()).EndsWith(u".iwnew"))
                return false;
        return true;
    }

    HVString root, source, destination;
    const HVString media = HVString(e2e::MediaFolder().c_str());
    CInstallChangeLog changes;
    CDeferredOperations deferred{HVString(), &changes};
    CFileInstaller installer{deferred, changes};
    ProgressRecord progress;
};

TEST_F(CFileInstallerTest, VersionCheckCopiesModulesOnlyWhenNewer)
{
    const HVString codec = media + u"System\\Check Version\\HVCodecSupport.dll";  // 2.0
    const HVString disc = media + u"System\\Check Version\\HVDiscSupport.dll";    // 1.5
    struct Case { const char16_t* name; HVString from; HVString installed; CFileInstaller::CopyResult result; };
    const Case cases[] = {
        {u"Newer.dll", codec, disc, CFileInstaller::CopyResult::Copied},
        {u"Older.dll", disc, codec, CFileInstaller::CopyResult::Skipped},
        {u"Equal.ocx", codec, codec, CFileInstaller::CopyResult::Skipped},
        {u"Missing.exe", disc, HVString(), CFileInstaller::CopyResult::Copied},
        {u"Unversioned.ax", disc, media + u"License.txt", CFileInstaller::CopyResult::Copied},
        {u"Notes.txt", media + u"License.txt", codec, CFileInstaller::CopyResult::Copied},
    };
    for (const Case& c : cases) {
        const HVString target = destination + c.name;
        if (!c.installed.IsEmpty())
            Write(target, Read(c.installed));
        const std::string expected = Read(c.result == CFileInstaller::CopyResult::Copied ? c.from : c.installed);
        EXPECT_EQ(installer.CopyFile(c.from, target, kCopyVersionCheck), c.result) << HVString(c.name).ToUtf8();
        EXPECT_TRUE(Read(target) == expected) << HVString(c.name).ToUtf8();
    }
    // Always-overwrite mode takes the older module too.
    EXPECT_EQ(installer.CopyFile(disc, destination + u"Older.dll", kCopyAlwaysOverwrite),
              CFileInstaller::CopyResult::Copied);
    EXPECT_EQ(installer.CopyFile(codec, codec, kCopyAlwaysOverwrite), CFileInstaller::CopyResult::Skipped);
    EXPECT_TRUE(NoTemporaryLeft());
}

TEST_F(CFileInstallerTest, TreeReplacesReadOnlyAndLeftoverFilesAndReportsBytes)
{
    Write(source + u"a.txt", std::string(300, 'a'));
    Write(source + u"Data\\Deep\\b.bin", std::string(100, 'b'));
    HVFileSystem::CopyFile(media + u"Listenwell\\HVShellExt.dll", source + u"HVShellExt.dll", false);
    Write(destination + u"a.txt", "old");
    ASSERT_TRUE(::SetFileAttributesW((destination + u"a.txt").w(), FILE_ATTRIBUTE_READONLY));
    // What a run ended in the middle of a copy leaves: a read-only temporary beside its file.
    Write(CFileInstaller::TemporaryName(destination + u"Data\\Deep\\b.bin"), "partial");
    ::SetFileAttributesW(CFileInstaller::TemporaryName(destination + u"Data\\Deep\\b.bin").w(), FILE_ATTRIBUTE_READONLY);

    ASSERT_TRUE(installer.CopyTree(source, destination, kCopyAlwaysOverwrite, progress));
    EXPECT_EQ(Read(destination + u"a.txt"), std::string(300, 'a'));
    EXPECT_EQ(Read(destination + u"Data\\Deep\\b.bin"), std::string(100, 'b'));
    EXPECT_EQ(HVFileSystem::GetAttributes(destination + u"a.txt") & FILE_ATTRIBUTE_READONLY, 0u);
    EXPECT_TRUE(NoTemporaryLeft());
    EXPECT_EQ(progress.range, std::make_pair(0, 100));
    EXPECT_EQ(progress.positions.front(), 0);
    EXPECT_EQ(progress.positions.back(), 100);
    EXPECT_TRUE(std::is_sorted(progress.positions.begin(), progress.positions.end()));
    EXPECT_EQ(progress.drains, 3);
    EXPECT_EQ(installer.FilesCopied(), 3);
    EXPECT_EQ(installer.FilesToRegister(), std::vector<HVString>{destination + u"HVShellExt.dll"});
    // "install\" existed already through the files written above; "Data\" had the temporary.
    EXPECT_EQ(changes.Count(InstallChange::Kind::FileWritten), 3u);
    EXPECT_FALSE(deferred.HasPending() || deferred.RestartNeeded());
}

TEST_F(CFileInstallerTest, EmptySourceLeavesTheBarAtZeroAndNewFoldersAreNoted)
{
    ASSERT_TRUE(HVFileSystem::MakeDirectoryTree(source));
    ASSERT_TRUE(installer.CopyTree(source, destination, kCopyAlwaysOverwrite, progress));
    EXPECT_EQ(progress.positions, std::vector<int32_t>{0});
    EXPECT_FALSE(installer.CopyTree(root + u"no such folder\\", destination, kCopyAlwaysOverwrite, progress));

    Write(source + u"x\\y\\z.txt", "z");
    ASSERT_TRUE(installer.CopyTree(source, destination, kCopyAlwaysOverwrite, progress));
    EXPECT_EQ(changes.Count(InstallChange::Kind::FolderCreated), 3u);
    EXPECT_EQ(changes.Changes().front().path, destination);
}

TEST_F(CFileInstallerTest, FileInUseIsReplacedAtRestartOrJournaledAndNeverLost)
{
    PendingRenames renames;
    Write(source + u"Sonora.exe", "new");
    Write(source + u"Fonts\\Font.ttf", "new font");
    struct Case { HVString target; int32_t mode; bool atRestart; bool restart; };
    const Case cases[] = {
        {destination + u"Sonora.exe", kCopyAlwaysOverwrite, true, true},
        {root + u"Windows\\Fonts\\Font.ttf", kCopyFont, true, false},
        {destination + u"Journaled\\Sonora.exe", kCopyAlwaysOverwrite, false, true},
    };
    for (const Case& c : cases) {
        CDeferredOperations deferral(destination, &changes);
        deferral.SetReplaceAtRestartAvailable(c.atRestart);
        CFileInstaller fileInstaller(deferral, changes);
        Write(c.target, "old");
        e2e::HeldFileLock lock(c.target.w());
        ASSERT_TRUE(lock.IsHeld()) << e2e::Utf8(lock.Error());
        const HVString from = c.mode == kCopyFont ? source + u"Fonts\\Font.ttf" : source + u"Sonora.exe";

        bool inUse = false;
        EXPECT_EQ(fileInstaller.CopyCoreFile(from, c.target, &inUse), CFileInstaller::CopyResult::Failed);
        EXPECT_TRUE(inUse);
        EXPECT_EQ(fileInstaller.CopyFile(from, c.target, c.mode), CFileInstaller::CopyResult::Deferred);
        lock.Release();
        EXPECT_EQ(Read(c.target), "old");
        EXPECT_EQ(PendingRenames::Names(c.target), c.atRestart) << c.target.ToUtf8();
        EXPECT_EQ(deferral.RestartNeeded(), c.restart) << c.target.ToUtf8();
        const HVString staged = deferral.StagingFolder() + CCopyRules::FileName(c.target);
        EXPECT_EQ(Read(staged), c.mode == kCopyFont ? "new font" : "new");
        EXPECT_EQ(deferral.PendingFiles(), c.atRestart ? std::vector<HVString>{}
                                                       : std::vector<HVString>{staged + u"|" + c.target});
    }
    EXPECT_TRUE(NoTemporaryLeft());
}

TEST_F(CFileInstallerTest, ACopyThatCannotBeWrittenLeavesTheOldFile)
{
    // The temporary and the staged copy can't be written (a folder holds each name), as on a
    // full disk: the installed file must stay whole and nothing be journaled.
    Write(source + u"Sonora.exe", "new");
    Write(destination + u"Sonora.exe", "old");
    ASSERT_TRUE(HVFileSystem::MakeDirectoryTree(CFileInstaller::TemporaryName(destination + u"Sonora.exe")));
    ASSERT_TRUE(HVFileSystem::MakeDirectoryTree(destination + u"Setup\\Sonora.exe"));
    PendingRenames renames;
    EXPECT_EQ(installer.CopyFile(source + u"Sonora.exe", destination + u"Sonora.exe", kCopyAlwaysOverwrite),
              CFileInstaller::CopyResult::Failed);
    EXPECT_EQ(Read(destination + u"Sonora.exe"), "old");
    EXPECT_FALSE(PendingRenames::Names(destination + u"Sonora.exe"));
    EXPECT_FALSE(deferred.HasPending());
}

TEST_F(CFileInstallerTest, CleaningRemovesRetiredObsoleteAndStagedThings)
{
    const HVString rootKey = u"Software\\Halvard\\Install Wizard Engine Test";
    for (const char16_t* file : {u"Plugins\\ForceVideoType.ax", u"HVTVControl.dll", u"Web\\index.html",
                                 u"Plugins\\LAVFilters\\x.ax", u"Data\\Saved Views\\v.xml", u"Data\\Library.db",
                                 u"Setup\\Sonora.exe", u"Old\\Gone.txt", u"Kept.txt"})
        Write(destination + file, "x");
    Write(root + u"Outside.txt", "x");
    HVRegKey journal;
    ASSERT_TRUE(journal.Create(HKEY_CURRENT_USER, rootKey + u"\\Installer\\Finalize"));
    journal.Close();
    int retiredRecords = 0;
    installer.CleanInstallFolder(false, u"Old\\Gone.txt;..\\Outside.txt;" + root + u"Outside.txt", rootKey, progress,
                                 [&] { ++retiredRecords; });

    EXPECT_TRUE(e2e::TreeMatches(destination.w(), {L"Data\\Library.db", L"Kept.txt"}));
    EXPECT_EQ(Read(root + u"Outside.txt"), "x");
    EXPECT_FALSE(HVRegKey::KeyExists(HKEY_CURRENT_USER, rootKey + u"\\Installer\\Finalize"));
    EXPECT_EQ(retiredRecords, 1);
    EXPECT_EQ(progress.statuses, std::vector<HVString>{u"Cleaning installation directory..."});
    EXPECT_EQ(progress.range, std::make_pair(0, 1));
    EXPECT_EQ(progress.positions, (std::vector<int32_t>{0, 1}));
    EXPECT_EQ(changes.Count(InstallChange::Kind::FileDeleted), 3u);

    installer.CleanInstallFolder(true, HVString(), rootKey, progress);
    EXPECT_TRUE(e2e::TreeMatches(destination.w(), {L"Kept.txt"}));
    HVRegKey halvard;
    halvard.Open(HKEY_CURRENT_USER, u"Software\\Halvard", KEY_READ | KEY_WRITE);
    halvard.DeleteSubKeyTree(u"Install Wizard Engine Test");
}
}

namespace
{
// Run by scripts/full-disk-test.sh, which mounts a 4 MB file system as the drive it names.
TEST(CFileInstallerFullDiskTest, AFullDiskDestroysNothingInstalled)
{
    const char* drive = std::getenv("IW_FULL_DISK_DRIVE");
    if (!drive)
        GTEST_SKIP() << "needs the small drive of scripts/full-disk-test.sh";
    const HVString install = HVString::FromUtf8(drive) + u"Sonora\\";
    const HVString source = HVString(e2e::ScratchFolder(L"CFileInstallerFullDisk").c_str());
    Write(source + u"small.txt", std::string(100 * 1024, 'n'));
    Write(source + u"big.bin", std::string(3 * 1024 * 1024, 'N'));
    Write(install + u"small.txt", "old");
    Write(install + u"big.bin", std::string(1024 * 1024, 'o'));
    uint64_t free = 0;
    ASSERT_TRUE(HVFileSystem::GetFreeDiskSpace(install, free));
    ASSERT_GT(free, 1536u * 1024);
    Write(HVString::FromUtf8(drive) + u"filler", std::string(free - 1536 * 1024, 'f'));

    PendingRenames renames;
    CInstallChangeLog changes;
    CDeferredOperations deferred(install, &changes);
    CFileInstaller installer(deferred, changes);
    ProgressRecord progress;
    ASSERT_TRUE(installer.CopyTree(source, install, kCopyAlwaysOverwrite, progress));
    EXPECT_EQ(Read(install + u"small.txt"), std::string(100 * 1024, 'n'));
    EXPECT_TRUE(Read(install + u"big.bin") == std::string(1024 * 1024, 'o'));
    // Neither a temporary nor a staged copy stays behind, and nothing is promised for later.
    EXPECT_TRUE(e2e::TreeMatches(install.w(), {L"big.bin", L"small.txt"}));
    EXPECT_FALSE(deferred.HasPending());
    EXPECT_FALSE(PendingRenames::Names(install + u"big.bin"));
    EXPECT_EQ(changes.Count(InstallChange::Kind::FileWritten), 1u);
}
}

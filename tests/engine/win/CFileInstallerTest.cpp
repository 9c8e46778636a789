#include "engine/win/CFileInstaller.h"

#include "changes/CInstallChangeLog.h"
#include "changes/win/CDeferredOperations.h"
#include "foundation/win/HVFileSystem.h"
#include "foundation/win/HVRegKey.h"

#include "FolderTree.h"
#include "HeldFileLock.h"
#include "PendingRenames.h"
#include "RecordedProgress.h"
#include "ScratchFolderTest.h"
#include "TestRegistry.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <string>

namespace
{
using Result = CFileInstaller::CopyResult;

bool NoTemporaryIn(const HVString& folder)
{
    const auto files = e2e::ListTree(folder.w());
    return std::none_of(files.begin(), files.end(), [](const std::wstring& f) { return f.ends_with(L".iwnew"); });
}

class CFileInstallerTest : public ScratchFolderTest
{
protected:
    void SetUp() override
    {
        ScratchFolderTest::SetUp();
        deferred.SetInstallFolder(destination = root + u"install\\");
        installer.SetInstallFolder(destination);
        source = root + u"source\\";
    }

    HVString source, destination;
    const HVString media = HVString(e2e::MediaFolder().c_str());
    CInstallChangeLog changes;
    CDeferredOperations deferred{HVString(), &changes};
    CFileInstaller installer{deferred, changes};
    e2e::RecordedProgress progress;
};

TEST_F(CFileInstallerTest, VersionCheckCopiesModulesOnlyWhenNewer)
{
    const HVString codec = media + u"System\\Check Version\\HVCodecSupport.dll";  // 2.0
    const HVString disc = media + u"System\\Check Version\\HVDiscSupport.dll";    // 1.5
    // The versions are read from the files; which versions and modes copy, CCopyRulesTest proves.
    const struct { const char16_t* name; HVString from, installed; Result result; } cases[] = {
        {u"Newer.dll", codec, disc, Result::Copied}, {u"Equal.ocx", codec, codec, Result::Skipped},
        {u"Unversioned.ax", disc, media + u"License.txt", Result::Copied},
    };
    for (const auto& c : cases) {
        const HVString target = destination + c.name;
        Write(target, Read(c.installed));
        const std::string expected = Read(c.result == Result::Copied ? c.from : c.installed);
        EXPECT_EQ(installer.CopyFile(c.from, target, kCopyVersionCheck), c.result) << HVString(c.name).ToUtf8();
        EXPECT_TRUE(Read(target) == expected) << HVString(c.name).ToUtf8();
    }
    EXPECT_EQ(installer.CopyFile(codec, codec, kCopyAlwaysOverwrite), Result::Skipped);
    EXPECT_TRUE(NoTemporaryIn(root));
}

TEST_F(CFileInstallerTest, TreeReplacesReadOnlyAndLeftoverFilesWithProgressByBytes)
{
    ASSERT_TRUE(HVFileSystem::MakeDirectoryTree(source));
    ASSERT_TRUE(installer.CopyTree(source, destination, kCopyAlwaysOverwrite, progress));
    EXPECT_EQ(progress.positions, std::vector<int32_t>{0});

    Write(source + u"a.txt", std::string(300, 'a'));
    Write(source + u"Data\\Deep\\b.bin", std::string(100, 'b'));
    HVFileSystem::CopyFile(media + u"Listenwell\\HVShellExt.dll", source + u"HVShellExt.dll", false);
    Write(destination + u"a.txt", "old", FILE_ATTRIBUTE_READONLY);
    // What a run ended in the middle of a copy leaves: a temporary beside the file it replaces.
    Write(destination + u"Data\\b.bin", "old");
    Write(CFileInstaller::TemporaryName(destination + u"Data\\b.bin"), "partial", FILE_ATTRIBUTE_READONLY);
    Write(source + u"Data\\b.bin", "b");
    progress.positions.clear();

    ASSERT_TRUE(installer.CopyTree(source, destination, kCopyAlwaysOverwrite, progress));
    // The file it replaced is kept beside it until the install ends well.
    EXPECT_TRUE(e2e::TreeMatches(destination.w(), {L"a.txt", L"a.txt.iwold", L"Data\\b.bin", L"Data\\b.bin.iwold",
                                                   L"Data\\Deep\\b.bin", L"HVShellExt.dll"}));
    EXPECT_EQ(Read(destination + u"a.txt.iwold"), "old");
    EXPECT_EQ(Read(destination + u"a.txt"), std::string(300, 'a'));
    EXPECT_EQ(HVFileSystem::GetAttributes(destination + u"a.txt") & FILE_ATTRIBUTE_READONLY, 0u);
    EXPECT_EQ(progress.range, std::make_pair(0, 100));
    EXPECT_EQ(progress.positions.back(), 100);
    EXPECT_TRUE(std::is_sorted(progress.positions.begin(), progress.positions.end()));
    EXPECT_EQ(progress.drains, 4);
    EXPECT_EQ(installer.FilesToRegister(), std::vector<HVString>{destination + u"HVShellExt.dll"});
    EXPECT_EQ(changes.Count(InstallChange::Kind::FileWritten), 4u);
    EXPECT_EQ(changes.Count(InstallChange::Kind::FolderCreated), 1u);  // only "Deep\" was new
    EXPECT_FALSE(installer.CopyTree(root + u"missing\\", destination, kCopyAlwaysOverwrite, progress));
}

TEST_F(CFileInstallerTest, FileInUseIsReplacedAtRestartOrJournaledAndNeverLost)
{
    e2e::PendingRenames renames;
    Write(source + u"Sonora.exe", "new");
    struct Case { HVString target; int32_t mode; bool atRestart; bool restart; };
    for (const Case& c : {Case{destination + u"Sonora.exe", kCopyAlwaysOverwrite, true, true},
                          Case{root + u"Windows\\Fonts\\Sonora.exe", kCopyFont, true, false},
                          Case{destination + u"Journaled\\Sonora.exe", kCopyAlwaysOverwrite, false, true}}) {
        CDeferredOperations deferral(destination, &changes);
        deferral.SetReplaceAtRestartAvailable(c.atRestart);
        CFileInstaller fileInstaller(deferral, changes);
        Write(c.target, "old");
        e2e::HeldFileLock lock(c.target.w());
        ASSERT_TRUE(lock.IsHeld()) << e2e::Utf8(lock.Error());

        bool inUse = false;
        EXPECT_EQ(fileInstaller.CopyCoreFile(source + u"Sonora.exe", c.target, &inUse), Result::Failed);
        EXPECT_TRUE(inUse);
        EXPECT_EQ(fileInstaller.CopyFile(source + u"Sonora.exe", c.target, c.mode), Result::Deferred);
        // A rerun's copy takes back its own earlier move: one move per file.
        if (c.atRestart) {
            EXPECT_EQ(fileInstaller.CopyFile(source + u"Sonora.exe", c.target, c.mode), Result::Deferred);
            EXPECT_EQ(e2e::PendingRenames::Count(c.target), 1u);
        }
        lock.Release();
        EXPECT_EQ(Read(c.target), "old");
        EXPECT_EQ(e2e::PendingRenames::Names(c.target), c.atRestart) << c.target.ToUtf8();
        EXPECT_EQ(deferral.RestartNeeded(), c.restart) << c.target.ToUtf8();
        const HVString staged = deferral.StagingFolder() + u"1\\Sonora.exe";
        EXPECT_EQ(Read(staged), "new");
        EXPECT_EQ(deferral.PendingFiles(), c.atRestart ? std::vector<HVString>{}
                                                       : std::vector<HVString>{staged + u"|" + c.target});
    }
    EXPECT_TRUE(NoTemporaryIn(root));
}

TEST_F(CFileInstallerTest, ACopyThatCannotBeWrittenLeavesTheOldFileYetCountsAsDeferred)
{
    // Folders hold the names of the temporary and of the staged copy, so neither can be
    // written, as on a full disk: the installed file stays whole and no file is journaled,
    // but the module's registration still waits for the next logon.
    const HVString module = destination + u"HVShellExt.dll";
    Write(source + u"HVShellExt.dll", Read(media + u"Listenwell\\HVShellExt.dll"));
    Write(module, "old");
    ASSERT_TRUE(HVFileSystem::MakeDirectoryTree(CFileInstaller::TemporaryName(module)));
    ASSERT_TRUE(HVFileSystem::MakeDirectoryTree(destination + u"Setup\\1\\HVShellExt.dll"));
    e2e::PendingRenames renames;
    EXPECT_EQ(installer.CopyFile(source + u"HVShellExt.dll", module, 1), Result::Deferred);
    EXPECT_EQ(Read(module), "old");
    EXPECT_FALSE(e2e::PendingRenames::Names(module) || !deferred.PendingFiles().empty());
    EXPECT_EQ(deferred.PendingRegistrations(), std::vector<HVString>{module + u"|_REGISTERFILE"});
    EXPECT_TRUE(installer.FilesToRegister().empty());
    EXPECT_TRUE(NoTemporaryIn(root));
}

TEST_F(CFileInstallerTest, CleaningRemovesRetiredObsoleteAndStagedThings)
{
    const HVString rootKey = u"Software\\Halvard\\Install Wizard Engine Test";
    for (const char16_t* file : {u"Plugins\\ForceVideoType.ax", u"HVTVControl.dll", u"Web\\index.html",
                                 u"Plugins\\LAVFilters\\x.ax", u"Data\\Saved Views\\v.xml", u"Data\\Library.db",
                                 u"Setup\\Sonora.exe", u"Old\\Gone.txt", u"Kept.txt"})
        Write(destination + file, "x");
    Write(root + u"Outside.txt", "x");
    ASSERT_TRUE(HVRegKey().Create(HKEY_CURRENT_USER, rootKey + u"\\Installer\\Finalize"));
    int retiredRecords = 0;
    installer.CleanInstallFolder(false, u"Old\\Gone.txt;..\\Outside.txt;" + root + u"Outside.txt", rootKey, progress,
                                 [&] { ++retiredRecords; });

    // What goes is kept aside until the install ends well.
    const auto treeBesidesKept = [&] {
        std::vector<std::wstring> tree = e2e::ListTree(destination.w());
        std::erase_if(tree, [](const std::wstring& path) { return path.find(L".iwold") != std::wstring::npos; });
        return tree;
    };
    EXPECT_EQ(treeBesidesKept(), (std::vector<std::wstring>{L"Data\\Library.db", L"Kept.txt"}));
    EXPECT_EQ(Read(destination + u"Old\\Gone.txt.iwold"), "x");
    EXPECT_EQ(Read(root + u"Outside.txt"), "x");
    EXPECT_FALSE(HVRegKey::KeyExists(HKEY_CURRENT_USER, rootKey + u"\\Installer\\Finalize"));
    EXPECT_EQ(retiredRecords, 1);
    EXPECT_EQ(progress.statuses, std::vector<HVString>{u"Cleaning installation directory..."});
    EXPECT_EQ(progress.range, std::make_pair(0, 1));
    EXPECT_EQ(progress.positions, (std::vector<int32_t>{0, 1}));
    EXPECT_EQ(changes.Count(InstallChange::Kind::FileDeleted), 3u);

    installer.CleanInstallFolder(true, HVString(), rootKey, progress);
    EXPECT_EQ(treeBesidesKept(), std::vector<std::wstring>{L"Kept.txt"});
    e2e::RegDeleteKeyTreeAndEmptyParents(HKEY_CURRENT_USER, rootKey.w());
}

// Run by scripts/full-disk-test.sh, which mounts a 4 MB file system as the drive it names.
using CFileInstallerFullDiskTest = ScratchFolderTest;

TEST_F(CFileInstallerFullDiskTest, AFullDiskDestroysNothingInstalled)
{
    const char* drive = std::getenv("IW_FULL_DISK_DRIVE");
    if (!drive)
        GTEST_SKIP() << "needs the small drive of scripts/full-disk-test.sh";
    const HVString install = HVString::FromUtf8(drive) + u"Sonora\\";
    const HVString source = root;
    Write(source + u"small.txt", std::string(100 * 1024, 'n'));
    Write(source + u"big.bin", std::string(3 * 1024 * 1024, 'N'));
    Write(install + u"small.txt", "old");
    Write(install + u"big.bin", std::string(1024 * 1024, 'o'));
    uint64_t free = 0;
    ASSERT_TRUE(HVFileSystem::GetFreeDiskSpace(install, free) && free > 1536u * 1024);
    Write(HVString::FromUtf8(drive) + u"filler", std::string(free - 1536 * 1024, 'f'));

    e2e::PendingRenames renames;
    CInstallChangeLog changes;
    CDeferredOperations deferred(install, &changes);
    CFileInstaller installer(deferred, changes);
    e2e::RecordedProgress progress;
    // A full disk ends the copy, for the install to be rolled back: never a wait for a restart.
    EXPECT_FALSE(installer.CopyTree(source, install, kCopyAlwaysOverwrite, progress));
    EXPECT_TRUE(installer.DiskFull());
    EXPECT_TRUE(Read(install + u"big.bin") == std::string(1024 * 1024, 'o'));
    // The small file, when its turn came before the big one's, is new, its old self kept aside.
    const bool smallFirst = Read(install + u"small.txt") != "old";
    if (smallFirst) {
        EXPECT_EQ(Read(install + u"small.txt"), std::string(100 * 1024, 'n'));
        EXPECT_EQ(Read(install + u"small.txt.iwold"), "old");
    }
    // Neither a temporary nor a staged copy stays behind, and nothing is promised for later.
    EXPECT_TRUE(e2e::TreeMatches(install.w(), smallFirst ? std::vector<std::wstring>{L"big.bin", L"small.txt", L"small.txt.iwold"}
                                                         : std::vector<std::wstring>{L"big.bin", L"small.txt"}));
    EXPECT_FALSE(deferred.HasPending() || e2e::PendingRenames::Names(install + u"big.bin"));
}
}

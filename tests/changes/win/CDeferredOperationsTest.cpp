#include "changes/win/CDeferredOperations.h"

#include "changes/CInstallChangeLog.h"
#include "changes/CJournalFormat.h"
#include "foundation/win/HVFileSystem.h"
#include "foundation/win/HVRegKey.h"

#include "FreshMachine.h"
#include "HeldFileLock.h"
#include "ScratchFolderTest.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace
{
const HVString kProductRoot = u"Software\\Halvard\\Install Wizard Journal Test";

// The journal's key and the RunOnce command start and end as a fresh machine has them.
class CDeferredOperationsTest : public ScratchFolderTest
{
protected:
    void SetUp() override
    {
        ScratchFolderTest::SetUp();
        ASSERT_TRUE(e2e::ResetToFreshMachine());
        runOnce.Create(HKEY_CURRENT_USER, CJournalFormat::kRunOnceKey);
    }
    void TearDown() override { e2e::ResetToFreshMachine(); }

    const HVString& folder = root;
    HVRegKey runOnce;
    CInstallChangeLog changes;
};

TEST_F(CDeferredOperationsTest, JournalValuesAndTheCompletionCommand)
{
    CDeferredOperations deferred(folder, &changes);
    // Deleted at once where possible; nothing pending, nothing written.
    Write(folder + u"read-only.dll", "r", FILE_ATTRIBUTE_READONLY);
    deferred.DeferDelete(folder + u"read-only.dll");
    deferred.DeferDelete(folder + u"missing.dll");
    EXPECT_FALSE(HVFileSystem::Exists(folder + u"read-only.dll", true));
    EXPECT_TRUE(deferred.WriteJournal(kProductRoot));
    EXPECT_FALSE(HVRegKey::KeyExists(HKEY_CURRENT_USER, kProductRoot) ||
                 runOnce.HasValue(CJournalFormat::kRunOnceValue));

    // Two deletes that can't happen now (held files) around one install.
    Write(folder + u"a.dll", "a");
    Write(folder + u"b.dll", "b");
    Write(folder + u"new.exe", "n");
    e2e::HeldFileLock lockA((folder + u"a.dll").w()), lockB((folder + u"b.dll").w());
    ASSERT_TRUE(lockA.IsHeld() && lockB.IsHeld());
    deferred.DeferDelete(folder + u"a.dll");
    ASSERT_TRUE(deferred.DeferInstall(folder + u"new.exe", folder + u"Sonora.exe"));
    deferred.DeferDelete(folder + u"b.dll");
    // One name bound for another folder: a staged copy of its own, none left half made.
    Write(folder + u"Old\\new.exe", "o");
    ASSERT_TRUE(deferred.DeferInstall(folder + u"Old\\new.exe", folder + u"Plugins\\new.exe"));
    EXPECT_FALSE(HVFileSystem::Exists(folder + u"Setup\\1\\new.exe.iwnew", true));
    deferred.DeferRegistration(folder + u"HVShellExt.dll");
    ASSERT_TRUE(deferred.WriteJournal(kProductRoot));

    HVRegKey journal;
    ASSERT_TRUE(journal.Open(HKEY_CURRENT_USER, kProductRoot + u"\\Installer\\Finalize"));
    struct Expected { const char16_t* name; HVString data; };
    for (const Expected& e : {Expected{u"Delete File (0)", folder + u"a.dll|_DELETEFILE"},
                              Expected{u"Delete File (1)", folder + u"b.dll|_DELETEFILE"},
                              Expected{u"Install File (0)", folder + u"Setup\\1\\new.exe|" + folder + u"Sonora.exe"},
                              Expected{u"Install File (1)", folder + u"Setup\\2\\new.exe|" + folder + u"Plugins\\new.exe"},
                              Expected{u"Register File (0)", folder + u"HVShellExt.dll|_REGISTERFILE"}}) {
        HVString data;
        EXPECT_TRUE(journal.QueryString(e.name, data)) << HVString(e.name).ToUtf8();
        EXPECT_EQ(data, e.data);
    }
    EXPECT_EQ(journal.EnumValueNames().size(), 5u);
    std::vector<uint8_t> staged;
    ASSERT_TRUE(HVFileSystem::ReadFile(folder + u"Setup\\1\\new.exe", staged));
    EXPECT_EQ(staged, std::vector<uint8_t>{'n'});
    HVString command;
    EXPECT_TRUE(runOnce.QueryString(u"Install Wizard Completion", command));
    EXPECT_EQ(command, u"\"" + folder + u"PackageInstaller.exe\" \"/FinishInstall\"");
    EXPECT_EQ(changes.Count(InstallChange::Kind::FileDeleted), 3u);
    EXPECT_FALSE(changes.Changes().front().deferred);
    // The journal's values are noted too, after the deferred registration, for the uninstall.
    const auto registration = std::find_if(changes.Changes().begin(), changes.Changes().end(), [](const InstallChange& c) {
        return c.kind == InstallChange::Kind::ModuleRegistered;
    });
    ASSERT_NE(registration, changes.Changes().end());
    EXPECT_TRUE(registration->deferred);
    EXPECT_EQ(changes.Changes().back().kind, InstallChange::Kind::ValueWritten);
}

TEST_F(CDeferredOperationsTest, FinishFileNamesTheInstalledLauncher)
{
    const HVString setup = folder + u"Medium\\";
    ASSERT_TRUE(HVFileSystem::MakeDirectoryTree(setup));
    EXPECT_FALSE(CDeferredOperations::WriteFinishFile(setup, folder, u"Sonora.exe"));
    EXPECT_FALSE(HVFileSystem::Exists(setup + u"Finish.txt", true));

    Write(folder + u"Sonora.exe", "MZ");
    Write(setup + u"Finish.txt", "an older, longer hand-over file");
    ASSERT_TRUE(CDeferredOperations::WriteFinishFile(setup, folder, u"Sonora.exe"));
    std::vector<uint8_t> bytes, expected = {0xFF, 0xFE};
    ASSERT_TRUE(HVFileSystem::ReadFile(setup + u"Finish.txt", bytes));
    for (char16_t ch : u"HVFI0001\r\n" + std::u16string((folder + u"Sonora.exe").view()))
        expected.insert(expected.end(), {uint8_t(ch & 0xFF), uint8_t(ch >> 8)});
    EXPECT_EQ(bytes, expected);
}
}

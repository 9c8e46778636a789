#include "engine/win/CDeferredOperations.h"

#include "engine/CInstallChangeLog.h"
#include "engine/CJournalFormat.h"
#include "foundation/win/HVFileSystem.h"
#include "foundation/win/HVRegKey.h"

#include "HeldFileLock.h"
#include "TestPaths.h"

#include <gtest/gtest.h>

namespace
{
const HVString kProductRoot = u"Software\\Halvard\\Install Wizard Journal Test";
const HVString kRunOnce = CJournalFormat::kRunOnceKey;

class CDeferredOperationsTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        folder = HVString(e2e::ScratchFolder(L"CDeferredOperations").c_str());
        ASSERT_FALSE(folder.IsEmpty());
        HVRegKey(runOnceKey()).QueryString(CJournalFormat::kRunOnceValue, runOnceBefore);
        RemoveTestKeys();
    }
    void TearDown() override
    {
        RemoveTestKeys();
        if (!runOnceBefore.IsEmpty())
            runOnceKey().SetString(CJournalFormat::kRunOnceValue, runOnceBefore);
    }
    static HVRegKey runOnceKey()
    {
        HVRegKey key;
        key.Create(HKEY_CURRENT_USER, kRunOnce);
        return key;
    }
    static void RemoveTestKeys()
    {
        HVRegKey halvard;
        if (halvard.Open(HKEY_CURRENT_USER, u"Software\\Halvard", KEY_READ | KEY_WRITE))
            halvard.DeleteSubKeyTree(u"Install Wizard Journal Test");
        runOnceKey().DeleteValue(CJournalFormat::kRunOnceValue);
    }
    void Write(const HVString& path, const char* text)
    {
        ASSERT_TRUE(HVFileSystem::WriteFile(path, text, strlen(text)));
    }

    HVString folder;
    HVString runOnceBefore;
    CInstallChangeLog changes;
};

TEST_F(CDeferredOperationsTest, JournalValuesAndTheCompletionCommand)
{
    CDeferredOperations deferred(folder, &changes);
    EXPECT_TRUE(deferred.WriteJournal(kProductRoot));
    EXPECT_FALSE(HVRegKey::KeyExists(HKEY_CURRENT_USER, kProductRoot));
    EXPECT_FALSE(runOnceKey().HasValue(CJournalFormat::kRunOnceValue));

    // Two deletes that can't happen now (held files) around one install.
    Write(folder + u"a.dll", "a");
    Write(folder + u"b.dll", "b");
    Write(folder + u"new.exe", "n");
    e2e::HeldFileLock lockA((folder + u"a.dll").w()), lockB((folder + u"b.dll").w());
    ASSERT_TRUE(lockA.IsHeld() && lockB.IsHeld());
    deferred.DeferDelete(folder + u"a.dll");
    ASSERT_TRUE(deferred.DeferInstall(folder + u"new.exe", folder + u"Sonora.exe"));
    deferred.DeferDelete(folder + u"b.dll");
    deferred.DeferRegistration(folder + u"HVShellExt.dll");
    ASSERT_TRUE(deferred.WriteJournal(kProductRoot));

    HVRegKey journal;
    ASSERT_TRUE(journal.Open(HKEY_CURRENT_USER, kProductRoot + u"\\Installer\\Finalize"));
    struct Expected { const char16_t* name; HVString data; };
    for (const Expected& e : {Expected{u"Delete File (0)", folder + u"a.dll|_DELETEFILE"},
                              Expected{u"Delete File (1)", folder + u"b.dll|_DELETEFILE"},
                              Expected{u"Install File (0)", folder + u"Setup\\new.exe|" + folder + u"Sonora.exe"},
                              Expected{u"Register File (0)", folder + u"HVShellExt.dll|_REGISTERFILE"}}) {
        HVString data;
        EXPECT_TRUE(journal.QueryString(e.name, data)) << HVString(e.name).ToUtf8();
        EXPECT_EQ(data, e.data);
    }
    EXPECT_EQ(journal.EnumValueNames().size(), 4u);
    HVString command;
    EXPECT_TRUE(runOnceKey().QueryString(u"Install Wizard Completion", command));
    EXPECT_EQ(command, u"\"" + folder + u"PackageInstaller.exe\" \"/FinishInstall\"");
    EXPECT_EQ(changes.Count(InstallChange::Kind::FileDeleted), 2u);
    EXPECT_TRUE(changes.Changes().front().deferred);
}

TEST_F(CDeferredOperationsTest, DeleteNowWhereItCan)
{
    CDeferredOperations deferred(folder, &changes);
    Write(folder + u"read-only.dll", "r");
    ::SetFileAttributesW((folder + u"read-only.dll").w(), FILE_ATTRIBUTE_READONLY);
    ASSERT_TRUE(HVFileSystem::MakeDirectoryTree(folder + u"folder.dll"));
    for (const char16_t* name : {u"read-only.dll", u"missing.dll", u"folder.dll"})
        deferred.DeferDelete(folder + name);
    EXPECT_FALSE(HVFileSystem::Exists(folder + u"read-only.dll", true));
    EXPECT_TRUE(HVFileSystem::FolderExists(folder + u"folder.dll"));
    EXPECT_FALSE(deferred.HasPending());
    ASSERT_EQ(changes.Changes().size(), 1u);
    EXPECT_FALSE(changes.Changes()[0].deferred);
}

TEST_F(CDeferredOperationsTest, FinishFileNamesTheInstalledLauncher)
{
    const HVString setup = folder + u"Setup Medium\\";
    ASSERT_TRUE(HVFileSystem::MakeDirectoryTree(setup));
    EXPECT_FALSE(CDeferredOperations::WriteFinishFile(setup, folder, u"Sonora.exe"));
    EXPECT_FALSE(HVFileSystem::Exists(setup + u"Finish.txt", true));

    Write(folder + u"Sonora.exe", "MZ");
    Write(setup + u"Finish.txt", "an older, longer hand-over file");
    ASSERT_TRUE(CDeferredOperations::WriteFinishFile(setup, folder, u"Sonora.exe"));
    std::vector<uint8_t> bytes;
    ASSERT_TRUE(HVFileSystem::ReadFile(setup + u"Finish.txt", bytes));
    const std::u16string text = u"HVFI0001\r\n" + std::u16string((folder + u"Sonora.exe").view());
    std::vector<uint8_t> expected = {0xFF, 0xFE};
    for (char16_t ch : text) {
        expected.push_back(uint8_t(ch & 0xFF));
        expected.push_back(uint8_t(ch >> 8));
    }
    EXPECT_EQ(bytes, expected);
}
}

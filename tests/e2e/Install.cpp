// The install itself, end to end: InstallWizard.exe /Silent on the sample setup folder, with
// earlier versions' leftovers, files in use and broken setup folders arranged beforehand, and
// the machine read back afterwards.
#include "E2ESupport.h"

#include "engine/CInstallRecord.h"
#include "engine/CRetiredFiles.h"
#include "engine/CSharedFileRules.h"

#include <gtest/gtest.h>

#include <windows.h>

#include <algorithm>
#include <cstring>

namespace
{
const std::wstring kRegistered = L"Software\\Halvard\\Sonora 32\\Registered";
const std::wstring kJournal = L"Software\\Halvard\\Sonora 32\\Installer\\Finalize";
const std::wstring kRunOnce = L"Software\\Microsoft\\Windows\\CurrentVersion\\RunOnce";
const std::wstring kSessionManager = L"System\\CurrentControlSet\\Control\\Session Manager";
const std::wstring kCopyFailed = L"Install Wizard could not copy necessary files to the destination folder.";

std::wstring Windows() { return e2e::Expand(L"%SystemRoot%\\"); }

// The install record of the folder, as the uninstaller reads it.
CInstallRecord::Contents ReadRecord(const std::wstring& installFolder)
{
    return CInstallRecord::Parse(e2e::ReadFileText(installFolder + L"Install Record.txt"));
}

// The first change of the kind whose path starts with `path` (case ignored); null when none.
const InstallChange* Find(const CInstallRecord::Contents& record, InstallChange::Kind kind, const std::wstring& path)
{
    const auto found = std::find_if(record.changes.begin(), record.changes.end(), [&](const InstallChange& change) {
        return change.kind == kind && change.path.StartsWithNoCase(HVString(path.c_str()));
    });
    return found == record.changes.end() ? nullptr : &*found;
}

// The version resource's fixed part patched to another major version: a copy of a program that
// looks newer (or older) to the installer.
std::string WithMajorVersion(std::string bytes, uint16_t major)
{
    const char signature[] = {'\xBD', '\x04', '\xEF', '\xFE'};
    const size_t at = bytes.find(std::string(signature, 4));
    if (at != std::string::npos)
        std::memcpy(&bytes[at + 10], &major, sizeof major);  // high word of the file version
    return bytes;
}

using InstallTest = e2e::FreshMachineTest;

TEST_F(InstallTest, CopiesTheProductByItsRulesAndClearsWhatEarlierVersionsLeft)
{
    const std::wstring media = e2e::MediaFolder();
    const std::wstring dest = e2e::DefaultDestination();
    const std::string codec = e2e::ReadFileText(media + L"System\\Check Version\\HVCodecSupport.dll");  // 2.0
    const std::string disc = e2e::ReadFileText(media + L"System\\Check Version\\HVDiscSupport.dll");    // 1.5
    // In both system folders: an older codec library (replaced), a newer disc library (kept)
    // and old notes (always replaced).
    for (const wchar_t* system : {L"System32\\", L"SysWOW64\\"}) {
        ASSERT_TRUE(e2e::WriteFileBytes(Windows() + system + L"HVCodecSupport.dll", disc));
        ASSERT_TRUE(e2e::WriteFileBytes(Windows() + system + L"HVDiscSupport.dll", codec));
        ASSERT_TRUE(e2e::WriteFileBytes(Windows() + system + L"HVSystemNotes.txt", "old notes"));
    }
    // What earlier versions left in the program folder.
    const std::vector<std::wstring> leftovers = {
        L"Plugins\\in_oldtracker.dll", L"Data\\Startup Tips.txt", L"Skins\\Classic View\\main.xml",
        L"Data\\Saved Views\\Artists.xml", L"Data\\Languages\\Chinese\\Strings.txt", L"Drivers\\64\\HalvardWDM.sys",
        L"Drivers\\HalvardWDMDriver.inf", L"Setup\\HVService.exe",
        std::wstring(CRetiredFiles::Entries().front().w()),
        std::wstring(CRetiredFiles::Entries().back().w()) + L"old.bin",
    };
    for (const std::wstring& file : leftovers)
        ASSERT_TRUE(e2e::WriteFileBytes(dest + file, "left behind")) << e2e::Utf8(file);
    ASSERT_TRUE(e2e::WriteFileBytes(dest + L"Data\\Languages\\Chinese (simplified)\\Strings.txt", "kept"));
    ASSERT_TRUE(e2e::WriteFileBytes(dest + L"License.txt", "old agreement"));
    SetFileAttributesW((dest + L"License.txt").c_str(), FILE_ATTRIBUTE_READONLY);
    ASSERT_TRUE(e2e::RegSetString(HKEY_CURRENT_USER, kJournal, L"Delete File (0)", L"C:\\old|_DELETEFILE"));
    // Another product shares the notes already.
    const std::wstring sharedDlls = HVString(CSharedFileRules::kSharedDllsKey).w();
    const std::wstring notes = Windows() + L"System32\\HVSystemNotes.txt";
    ASSERT_TRUE(e2e::RegSetDword(HKEY_LOCAL_MACHINE, sharedDlls, notes, 1));

    const e2e::SetupRun install = e2e::RunSetup({}, L"/Silent");
    ASSERT_TRUE(install.result.ExitedWith(0)) << install.Describe();

    // The program files, byte for byte.
    for (const std::wstring& file : e2e::ListTree(media + L"Listenwell\\"))
        EXPECT_EQ(e2e::ReadFileText(dest + file), e2e::ReadFileText(media + L"Listenwell\\" + file)) << e2e::Utf8(file);
    for (const wchar_t* license : {L"License.txt", L"License.LGPL2.1.txt", L"License.LGPL3.txt"})
        EXPECT_EQ(e2e::ReadFileText(dest + license), e2e::ReadFileText(media + license)) << e2e::Utf8(license);
    // System files in both system folders, by version.
    for (const wchar_t* system : {L"System32\\", L"SysWOW64\\"}) {
        EXPECT_EQ(e2e::ReadFileText(Windows() + system + L"HVCodecSupport.dll"), codec) << e2e::Utf8(system);
        EXPECT_EQ(e2e::ReadFileText(Windows() + system + L"HVDiscSupport.dll"), codec) << e2e::Utf8(system);
        EXPECT_EQ(e2e::ReadFileText(Windows() + system + L"HVSystemNotes.txt"), e2e::ReadFileText(media + L"System\\Check Version\\HVSystemNotes.txt"));
    }
    EXPECT_EQ(e2e::ReadFileText(Windows() + L"Fonts\\DejaVuSans.ttf"), e2e::ReadFileText(media + L"Fonts\\DejaVuSans.ttf"));
    // Fonts go with each of the two passes, so they are added twice.
    EXPECT_EQ(e2e::CountOf(e2e::Utf8(install.log), "DejaVuSans.ttf added to the font table"), 2) << install.Describe();
    // Leftovers gone; the simplified Chinese folder stays.
    for (const std::wstring& file : leftovers)
        EXPECT_EQ(GetFileAttributesW((dest + file).c_str()), INVALID_FILE_ATTRIBUTES) << e2e::Utf8(file);
    EXPECT_EQ(GetFileAttributesW((dest + L"Data\\Languages\\Chinese").c_str()), INVALID_FILE_ATTRIBUTES);
    EXPECT_EQ(e2e::ReadFileText(dest + L"Data\\Languages\\Chinese (simplified)\\Strings.txt"), "kept");
    // The self-registering modules were registered where they were installed.
    EXPECT_EQ(e2e::RegString(HKEY_CURRENT_USER, kRegistered, L"HVShellExt.dll"), dest + L"HVShellExt.dll");
    EXPECT_EQ(e2e::RegString(HKEY_CURRENT_USER, kRegistered, L"SampleShell.dll"), dest + L"Plugins\\System\\SampleShell.dll");
    // Nothing deferred: no journal, no completion command; a silent run starts nothing.
    EXPECT_TRUE(e2e::RegValueNames(HKEY_CURRENT_USER, kJournal).empty());
    EXPECT_FALSE(e2e::RegValueExists(HKEY_CURRENT_USER, kRunOnce, L"Install Wizard Completion"));
    EXPECT_EQ(GetFileAttributesW((media + L"Finish.txt").c_str()), INVALID_FILE_ATTRIBUTES);
    // Nothing else in the program folder: no temporary file, no staging folder.
    std::vector<std::wstring> expected = e2e::ListTree(media + L"Listenwell\\");
    expected.insert(expected.end(), {L"License.txt", L"License.LGPL2.1.txt", L"License.LGPL3.txt",
                                     L"Data\\Languages\\Chinese (simplified)\\Strings.txt",
                                     L"Media\\Welcome Tone.wav", L"Media\\Playlist.mpl", L"PackageInstaller.log"});
    expected.push_back(L"Install Record.txt");
    const e2e::TreeDifference difference = e2e::CompareTree(dest, expected);
    EXPECT_TRUE(difference.Same()) << difference.Describe();

    EXPECT_EQ(e2e::RegDword(HKEY_LOCAL_MACHINE, sharedDlls, notes), 2u);
    // The record names every kind of change an uninstall has to take back, and the run's end.
    const CInstallRecord::Contents record = ReadRecord(dest);
    EXPECT_TRUE(record.problem.IsEmpty()) << record.problem.ToUtf8();
    EXPECT_EQ(record.damagedLines, 0u);
    ASSERT_FALSE(record.changes.empty());
    using Kind = InstallChange::Kind;
    EXPECT_TRUE(Find(record, Kind::FileWritten, dest + L"Sonora.exe"));
    const std::wstring uninstallRoot = L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Uninstall\\";
    const InstallChange* entry = Find(record, Kind::KeyCreated, L"HKLM\\" + uninstallRoot);
    ASSERT_TRUE(entry);
    EXPECT_EQ(e2e::RegString(HKEY_LOCAL_MACHINE, entry->path.Mid(5).w(), L"UninstallString"), dest + L"HVMediaUninstall.exe");
    const InstallChange* font = Find(record, Kind::FontAdded, Windows() + L"Fonts\\DejaVuSans.ttf");
    ASSERT_TRUE(font);
    EXPECT_EQ(e2e::RegString(HKEY_LOCAL_MACHINE, L"Software\\Microsoft\\Windows NT\\CurrentVersion\\Fonts", font->name.w()),
              L"DejaVuSans.ttf");
    EXPECT_TRUE(Find(record, Kind::ShortcutCreated, e2e::StartMenuFolder()));
    EXPECT_TRUE(Find(record, Kind::ModuleRegistered, dest + L"HVShellExt.dll"));
    const InstallChange* counted = Find(record, Kind::SharedFileCounted, notes);
    ASSERT_TRUE(counted);
    EXPECT_EQ(counted->before, u"1");
    EXPECT_EQ(record.changes.back().kind, Kind::InstallEnded);
    EXPECT_EQ(record.changes.back().path, u"0");
}

// Files in use: replaced at the next restart when Windows can do it, otherwise staged and left
// to the journal that the product completes at the next logon.
TEST_F(InstallTest, FilesInUseAreDeferredAndJournaled)
{
    const std::wstring dest = e2e::DefaultDestination();
    for (const bool restartReplace : {true, false}) {
        SCOPED_TRACE(restartReplace ? "replace at restart" : "journal");
        SetUp();
        SetEnvironmentVariableW(L"IW_TEST_ONLY_NO_RESTART_REPLACE", restartReplace ? nullptr : L"1");
        ASSERT_TRUE(e2e::WriteFileBytes(dest + L"Data\\Startup Tips.txt", "obsolete"));
        ASSERT_TRUE(e2e::WriteFileBytes(dest + L"Plugins\\in_oldtracker.dll", "obsolete"));
        {
            const e2e::HeldFileLock tips(dest + L"Data\\Startup Tips.txt");
            const e2e::HeldFileLock tracker(dest + L"Plugins\\in_oldtracker.dll");
            const e2e::HeldFileLock shell(dest + L"HVShellExt.dll");
            ASSERT_TRUE(tips.IsHeld() && tracker.IsHeld() && shell.IsHeld());

            const e2e::SetupRun install = e2e::RunSetup({}, L"/Silent");
            // A deferred program file needs a restart.
            ASSERT_TRUE(install.result.ExitedWith(3010)) << install.Describe();
            const auto journal = [&](const wchar_t* name) { return e2e::RegString(HKEY_CURRENT_USER, kJournal, name); };
            EXPECT_EQ(journal(L"Delete File (0)"), dest + L"Plugins\\in_oldtracker.dll|_DELETEFILE");
            EXPECT_EQ(journal(L"Delete File (1)"), dest + L"Data\\Startup Tips.txt|_DELETEFILE");
            EXPECT_EQ(journal(L"Register File (0)"), dest + L"HVShellExt.dll|_REGISTERFILE");
            EXPECT_EQ(e2e::RegString(HKEY_CURRENT_USER, kRunOnce, L"Install Wizard Completion"),
                      L"\"" + dest + L"PackageInstaller.exe\" \"/FinishInstall\"");
            const auto pending = e2e::RegMultiString(HKEY_LOCAL_MACHINE, kSessionManager, L"PendingFileRenameOperations");
            const std::wstring staged = dest + L"Setup\\HVShellExt.dll";
            const bool scheduled = pending && std::find_if(pending->begin(), pending->end(), [&](const std::wstring& s) {
                                                  return s.find(staged) != std::wstring::npos;
                                              }) != pending->end();
            EXPECT_EQ(scheduled, restartReplace);
            EXPECT_EQ(journal(L"Install File (0)"),
                      restartReplace ? std::optional<std::wstring>() : std::optional<std::wstring>(staged + L"|" + dest + L"HVShellExt.dll"));
            EXPECT_EQ(e2e::ReadFileText(staged), e2e::ReadFileText(e2e::MediaFolder() + L"Listenwell\\HVShellExt.dll"));
            // A restart is pending: the product is not started from the hand-over file.
            EXPECT_EQ(GetFileAttributesW((e2e::MediaFolder() + L"Finish.txt").c_str()), INVALID_FILE_ATTRIBUTES);
        }
        TearDown();
    }
}

TEST_F(InstallTest, ANewerInstalledVersionIsKept)
{
    const std::wstring dest = e2e::DefaultDestination();
    const std::string newer = WithMajorVersion(e2e::ReadFileText(e2e::MediaFolder() + L"Listenwell\\Sonora 32.exe"), 40);
    ASSERT_TRUE(e2e::WriteFileBytes(dest + L"Sonora 32.exe", newer));
    ASSERT_TRUE(e2e::RegSetString(HKEY_LOCAL_MACHINE, L"Software\\Halvard\\Corvale\\Installations\\Sonora 32", L"Path",
                                  dest + L"Sonora.exe"));
    const e2e::SetupRun install = e2e::RunSetup({}, L"/Silent");
    ASSERT_TRUE(install.result.ExitedWith(0)) << install.Describe();
    EXPECT_TRUE(install.Logged(L"copy and plug-ins left out")) << install.Describe();
    EXPECT_EQ(e2e::ReadFileText(dest + L"Sonora 32.exe"), newer);
    // Only the dependencies ran: the bundled media came.
    EXPECT_EQ(e2e::ListTree(dest), (std::vector<std::wstring>{L"Install Record.txt", L"Media\\Playlist.mpl",
                                                               L"Media\\Welcome Tone.wav", L"Sonora 32.exe"}));
}

TEST_F(InstallTest, ABrokenSetupFolderInstallsNothing)
{
    for (const wchar_t* missing : {L"Listenwell", L"System"}) {
        SCOPED_TRACE(e2e::Utf8(missing));
        const std::wstring setup = e2e::ScratchFolder(L"BrokenSetup");
        ASSERT_TRUE(e2e::CopyTree(e2e::MediaFolder(), setup));
        ASSERT_TRUE(e2e::DeleteTree(setup + missing + L"\\"));
        const e2e::SetupRun install = e2e::RunSetup(
            setup, L"/Silent", {{.title = L"Install Error", .text = kCopyFailed, .match = e2e::TextMatch::StartsWith, .button = IDOK, .times = 1}});
        EXPECT_TRUE(install.result.ExitedWith(1603)) << install.Describe();
        EXPECT_EQ(install.result.dialogs.size(), 1u);
        // The destination check may have made the folder; nothing went into it.
        EXPECT_TRUE(e2e::ListTree(e2e::DefaultDestination()).empty());
    }
}

TEST_F(InstallTest, ALauncherInUseAsksToRetryOrCancel)
{
    const std::wstring launcher = e2e::DefaultDestination() + L"Sonora.exe";
    ASSERT_TRUE(e2e::WriteFileBytes(launcher, "running"));
    const e2e::HeldFileLock lock(launcher);
    ASSERT_TRUE(lock.IsHeld());
    const e2e::SetupRun install = e2e::RunSetup({}, L"/Silent", {{.title = L"Failure Copying System File",
                                            .text = L"Please ensure that the file '" + launcher + L"' is not in use.",
                                            .button = IDCANCEL, .times = 1}});
    EXPECT_TRUE(install.result.ExitedWith(1603)) << install.Describe();
    EXPECT_EQ(GetFileAttributesW((e2e::DefaultDestination() + L"Sonora 32.exe").c_str()), INVALID_FILE_ATTRIBUTES);
}
} // namespace

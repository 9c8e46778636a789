// Removing Sonora, end to end: the sample product installed silently by InstallWizard.exe, then
// removed by the HVMediaUninstall.exe that the install put in its folder, and the machine
// compared with what it was before the install.
#include "E2ESupport.h"

#include "PendingRenames.h"

#include "changes/CInstallRecord.h"

#include <gtest/gtest.h>

#include <windows.h>

#include <functional>

namespace
{
using e2e::kProductKey, e2e::kUninstallEntryKey;
const std::wstring kSharedDlls = L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\SharedDLLs";
const std::wstring kOtherPlayer = L"OtherPlayer.mp3";
// The sample's stand-in package installer notes its calls beside itself, as a helper with a log
// of its own does, and in the temporary folder, where the notes outlive the uninstall.
std::wstring StandInCalls() { return e2e::Expand(L"%TEMP%\\Sample Package Installer.log"); }

const std::wstring kOtherRecord = L"Software\\Halvard\\Corvale\\Installations\\Other 9";
const std::wstring kOtherPlugin = L"Software\\Halvard\\Listenwell\\Plugins\\Input\\OtherPlug";

std::wstring SystemNotes() { return e2e::Expand(L"%SystemRoot%\\System32\\HVSystemNotes.txt"); }

class Uninstall : public ::testing::Test
{
protected:
    void SetUp() override { ASSERT_NO_FATAL_FAILURE(FreshMachine()); }
    void TearDown() override
    {
        e2e::ResetToFreshMachine();
        ClearCounts();
    }

    // Also without the use counts an earlier test left for the sample's shared files; and
    // another player owns ".mp3" before the install takes it.
    void FreshMachine()
    {
        std::vector<std::wstring> problems;
        ASSERT_TRUE(e2e::ResetToFreshMachine(&problems)) << e2e::Utf8(problems.empty() ? L"" : problems.front());
        ClearCounts();
        ::DeleteFileW(StandInCalls().c_str());
        ASSERT_TRUE(e2e::RegSetString(HKEY_CLASSES_ROOT, L".mp3", L"", kOtherPlayer));
    }

    static void ClearCounts()
    {
        for (const wchar_t* folder : {L"%SystemRoot%\\System32\\", L"%SystemRoot%\\SysWOW64\\"})
            for (const wchar_t* file : {L"HVCodecSupport.dll", L"HVDiscSupport.dll", L"HVSystemNotes.txt", L"Sonora.exe"})
                e2e::RegDeleteValueIfPresent(HKEY_LOCAL_MACHINE, kSharedDlls, e2e::Expand(folder + std::wstring(file)));
    }

    e2e::RunResult Install(const std::wstring& setupFolder = {}, std::function<bool(DWORD)> endWhen = {})
    {
        e2e::RunOptions options;
        options.setupFolder = setupFolder;
        options.commandLine = L"/Silent";
        options.roundMs = endWhen ? 5 : 50;
        options.endWhen = std::move(endWhen);
        return e2e::RunSetup(std::move(options)).result;
    }

    const std::wstring dest_ = e2e::DefaultDestination();
};

// Each row arranges the machine, installs, may change the install, removes it and checks.
TEST_F(Uninstall, RemovesWhatTheRecordNamesAndNothingElse)
{
    struct Row
    {
        const char* what;
        std::function<void()> beforeInstall;
        std::function<void()> beforeUninstall;
        const wchar_t* arguments;
        DWORD exitCode;
        std::function<void(const e2e::SetupRun&)> check;
    };
    std::vector<std::wstring> before;
    const std::wstring planted = dest_ + L"Data\\My Notes.txt";
    std::unique_ptr<e2e::HeldFileLock> lock;
    std::unique_ptr<e2e::PendingRenames> renames;
    const Row rows[] = {
        {"everything removed but a file of the user's, a shared file used by another program stays",
         [&] {
             ASSERT_TRUE(::CopyFileW((e2e::MediaFolder() + L"System\\Check Version\\HVSystemNotes.txt").c_str(), SystemNotes().c_str(), FALSE));
             ASSERT_TRUE(e2e::RegSetDword(HKEY_LOCAL_MACHINE, kSharedDlls, SystemNotes(), 1));
         },
         [&] {
             EXPECT_EQ(e2e::RegDword(HKEY_LOCAL_MACHINE, kSharedDlls, SystemNotes()), 2u);
             ASSERT_TRUE(e2e::WriteFileBytes(planted, "mine"));
         },
         L"/Silent /RemoveSettings", 0,
         [&](const e2e::SetupRun& run) {
             // Nothing of the install's is left, not even the helper's log.
             EXPECT_TRUE(e2e::TreeMatches(dest_, {L"Data\\My Notes.txt"})) << e2e::Utf8(run.log);
             // The driver goes out by the description it came in by.
             const std::string calls = e2e::ReadFileText(StandInCalls());
             const size_t quote = calls.find("/InstallWDMDriver \"") + 18;
             ASSERT_GT(quote, 18u) << calls;
             const std::string inf = calls.substr(quote, calls.find('"', quote + 1) + 1 - quote);
             EXPECT_TRUE(inf.ends_with("\\HalvardWDMDriver.inf\"")) << inf;
             EXPECT_EQ(e2e::CountOf(calls, "/RemoveWDMDriver " + inf), 1) << calls;
             ::DeleteFileW(planted.c_str());
             EXPECT_EQ(e2e::MachineSnapshot(), before);
             EXPECT_EQ(e2e::RegString(HKEY_CLASSES_ROOT, L".mp3", L""), kOtherPlayer);
         }},
        {"settings kept, a file in use goes at the next restart", {},
         [&] {
             renames = std::make_unique<e2e::PendingRenames>();
             lock = std::make_unique<e2e::HeldFileLock>(dest_ + L"Sonora.exe");
             ASSERT_TRUE(lock->IsHeld()) << e2e::Utf8(lock->Error());
         },
         L"/Silent", 3010,
         [&](const e2e::SetupRun& run) {
             EXPECT_TRUE(e2e::PendingRenames::Names(HVString((dest_ + L"Sonora.exe").c_str())));
             EXPECT_TRUE(e2e::TreeMatches(dest_, {L"Sonora.exe"})) << e2e::Utf8(run.log);
             EXPECT_TRUE(e2e::RegKeyExists(HKEY_CURRENT_USER, kProductKey));
             EXPECT_FALSE(e2e::RegKeyExists(HKEY_LOCAL_MACHINE, kUninstallEntryKey));
             EXPECT_EQ(e2e::RegString(HKEY_CLASSES_ROOT, L".mp3", L""), kOtherPlayer);
             lock.reset();
             renames.reset();
         }},
        {"another product of the maker, the user's later choice for .mp3 and another player's .flac entry stay",
         {},
         [&] {
             ASSERT_TRUE(e2e::RegSetString(HKEY_LOCAL_MACHINE, kOtherRecord, L"Path", L"C:\\Other 9\\Other.exe"));
             ASSERT_TRUE(e2e::RegSetString(HKEY_LOCAL_MACHINE, kOtherPlugin, L"Name", L"Other"));
             ASSERT_TRUE(e2e::RegSetDword(HKEY_CURRENT_USER, L"Software\\Halvard\\Other 9", L"Volume", 7));
             ASSERT_TRUE(e2e::RegSetString(HKEY_CLASSES_ROOT, L".mp3", L"", L"Third.mp3"));
             ASSERT_TRUE(e2e::RegSetString(HKEY_CLASSES_ROOT, L".flac\\OpenWithProgids", L"Third.flac", L""));
         },
         L"/Silent /RemoveSettings", 0,
         [&](const e2e::SetupRun& run) {
             EXPECT_EQ(e2e::RegString(HKEY_LOCAL_MACHINE, kOtherRecord, L"Path"), L"C:\\Other 9\\Other.exe") << e2e::Utf8(run.log);
             EXPECT_EQ(e2e::RegString(HKEY_LOCAL_MACHINE, kOtherPlugin, L"Name"), L"Other");
             EXPECT_EQ(e2e::RegDword(HKEY_CURRENT_USER, L"Software\\Halvard\\Other 9", L"Volume"), 7u);
             EXPECT_EQ(e2e::RegString(HKEY_CLASSES_ROOT, L".mp3", L""), L"Third.mp3");
             EXPECT_TRUE(e2e::RegValueExists(HKEY_CLASSES_ROOT, L".flac\\OpenWithProgids", L"Third.flac"));
             EXPECT_FALSE(e2e::RegKeyExists(HKEY_LOCAL_MACHINE, e2e::kRecordKey));
             EXPECT_FALSE(e2e::FolderExists(dest_));
         }},
        {"a reinstall counts a shared file once; the shortcut the user had comes back",
         [&] {
             ::DeleteFileW(SystemNotes().c_str());
             ASSERT_TRUE(e2e::WriteFileBytes(e2e::DesktopLink(), "the user's own link"));
         },
         [&] {
             const e2e::RunResult again = Install();
             ASSERT_TRUE(again.ExitedWith(0)) << again.Describe();
             EXPECT_EQ(e2e::RegDword(HKEY_LOCAL_MACHINE, kSharedDlls, SystemNotes()), 1u);
         },
         L"/Silent /RemoveSettings", 0,
         [&](const e2e::SetupRun& run) {
             EXPECT_FALSE(e2e::RegValueExists(HKEY_LOCAL_MACHINE, kSharedDlls, SystemNotes())) << e2e::Utf8(run.log);
             EXPECT_FALSE(e2e::PathExists(SystemNotes()));
             std::string link;
             EXPECT_TRUE(e2e::ReadFileBytes(e2e::DesktopLink(), link) && link == "the user's own link") << link << e2e::Utf8(run.log);
         }},
        {"settings kept: the notes of the shortcuts made go, so a reinstall makes them again", {}, {},
         L"/Silent", 0,
         [&](const e2e::SetupRun& run) {
             EXPECT_TRUE(e2e::RegKeyExists(HKEY_CURRENT_USER, kProductKey)) << e2e::Utf8(run.log);
             EXPECT_FALSE(e2e::RegValueExists(HKEY_CURRENT_USER, e2e::kInstallerKey, L"Start Menu Version"));
             const e2e::RunResult again = Install();
             ASSERT_TRUE(again.ExitedWith(0)) << again.Describe();
             EXPECT_TRUE(e2e::PathExists(e2e::StartMenuFolder() + L"Sonora.lnk"));
         }},
        {"a record a reinstall can't read is kept beside the new one; the uninstall names both and removes nothing", {},
         [&] {
             ASSERT_TRUE(e2e::WriteFileBytes(dest_ + L"Install Record.txt", "not a record\r\n"));
             const e2e::RunResult again = Install();
             ASSERT_TRUE(again.ExitedWith(0)) << again.Describe();
             std::string kept;
             EXPECT_TRUE(e2e::ReadFileBytes(dest_ + L"Install Record (damaged).txt", kept) && kept == "not a record\r\n");
             before = e2e::MachineSnapshot();
         },
         L"/Silent /SuppressMessages", 1603,
         [&](const e2e::SetupRun& run) {
             EXPECT_EQ(e2e::MachineSnapshot(), before);
             EXPECT_TRUE(run.Logged(L"Install Record (damaged).txt")) << e2e::Utf8(run.log);
         }},
        {"a record naming a path outside the install is refused", {},
         [&] {
             InstallChange forged;
             forged.path = HVString((dest_ + L"..\\..\\Windows\\win.ini").c_str());
             std::string record;
             ASSERT_TRUE(e2e::ReadFileBytes(dest_ + L"Install Record.txt", record));
             ASSERT_TRUE(e2e::WriteFileBytes(dest_ + L"Install Record.txt", record + CInstallRecord::EncodeLine(forged)));
             before = e2e::MachineSnapshot();
         },
         L"/Silent /SuppressMessages", 1603,
         [&](const e2e::SetupRun& run) {
             EXPECT_EQ(e2e::MachineSnapshot(), before);
             EXPECT_TRUE(run.Logged(L"names a place the install does not write to")) << e2e::Utf8(run.log);
         }},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.what);
        ASSERT_NO_FATAL_FAILURE(FreshMachine());
        if (row.beforeInstall)
            row.beforeInstall();
        before = e2e::MachineSnapshot();
        const e2e::RunResult install = Install();
        ASSERT_TRUE(install.ExitedWith(0)) << install.Describe();
        if (row.beforeUninstall)
            row.beforeUninstall();
        const e2e::SetupRun run = e2e::RunUninstaller(dest_, row.arguments);
        EXPECT_TRUE(run.result.ExitedWith(row.exitCode)) << run.result.Describe() << e2e::Utf8(run.log);
        row.check(run);
    }
}

// Ended early in a long copy, the install leaves a record cut short; the uninstaller
// (taken from the setup folder when the copy had not reached it) removes all it began.
TEST_F(Uninstall, AnInstallKilledDuringItsCopyLeavesNothingBehind)
{
    const std::wstring setup = e2e::CopySampleSetup(L"UninstallKilled");
    ASSERT_FALSE(setup.empty());
    ASSERT_TRUE(e2e::WriteGeneratedTree(setup + L"Listenwell\\", {{L"Bulk\\Intro.bin", 96u << 20}}, 1));
    const std::vector<std::wstring> before = e2e::MachineSnapshot();
    const e2e::RunResult install = Install(setup, [&](DWORD) {
        return e2e::CountFiles(dest_, [](const WIN32_FIND_DATAW&) { return true; }) >= 5;
    });
    ASSERT_EQ(install.outcome, e2e::RunOutcome::EndedByTest) << install.Describe();
    if (!::CopyFileW((setup + L"Listenwell\\HVMediaUninstall.exe").c_str(), (dest_ + L"HVMediaUninstall.exe").c_str(), TRUE)) {
        ASSERT_EQ(::GetLastError(), static_cast<DWORD>(ERROR_FILE_EXISTS));
    }
    const e2e::SetupRun run = e2e::RunUninstaller(dest_, L"/Silent /RemoveSettings");
    EXPECT_TRUE(run.result.ExitedWith(0)) << run.result.Describe() << e2e::Utf8(run.log);
    EXPECT_EQ(e2e::MachineSnapshot(), before);
}
}

// The setup program's start-up under Wine, driven as a user would: the single-instance rule,
// a running copy of the product, the Windows version, processor and browser-engine checks, the
// rights test, the VirtualStore clean-up, the switch list, the log and the exit code of each
// outcome (the service stop and bad input are rows of tests/scenarios).
#include "E2ESupport.h"
#include "RunningSetup.h"

#include "product/InstallExitCode.h"

#include <gtest/gtest.h>

#include <windows.h>

#include <optional>
#include <string>

namespace
{
const std::wstring kPassed = L"Environment checks: passed";

std::string DescriptionWithMinimum(const std::string& minimum) { return e2e::DescriptionXml({{"SpecialFeatures/MinIEVersion", minimum}}); }

// A run that ends once the first checks have passed (the wizard that follows is ended there).
e2e::SetupRun RunUntilChecked(const std::wstring& setupFolder, const std::wstring& arguments, std::vector<e2e::DialogRule> rules)
{
    return e2e::RunUntilLogged(setupFolder, arguments, std::move(rules), kPassed);
}

bool PassedChecks(const e2e::SetupRun& run)
{
    return run.Logged(kPassed) &&
           (run.result.ExitedWith(kExitInstalled) || run.result.outcome == e2e::RunOutcome::PollFailed);
}

e2e::DialogRule AnotherInstaller()
{
    return {.title = L"Halvard Installer",
            .text = L"Another instance of the Halvard installer is already running on this system.\r\n\r\nPlease "
                    L"finish any other Halvard installations and try again.",
            .button = IDOK, .times = 1};
}

const std::wstring kQuestion =
    L"Install Wizard has detected a running copy of Sonora.\r\n\r\n"
    L"Do you want Install Wizard to close Sonora and continue setup?";

class Startup : public e2e::FreshMachineTest
{
protected:
    const std::wstring setupFolder_ = e2e::MakeSetupFolder(L"StartupSetup", DescriptionWithMinimum("5.0.0.0"));
};
}

TEST_F(Startup, ASecondInstanceIsTurnedAwayWhileTheFirstRunsOn)
{
    e2e::RunningProduct product(false);
    ASSERT_TRUE(product.Started());
    // The first instance waits at the running-copy question: it holds the mutex meanwhile.
    const e2e::RunningSetup first(setupFolder_, L"");
    const HWND question = e2e::WaitForDialog(first.ProcessId(), kQuestion);
    ASSERT_NE(question, nullptr) << "the first instance never asked";

    const e2e::SetupRun second = RunUntilChecked(setupFolder_, L"", {AnotherInstaller()});
    EXPECT_TRUE(second.result.ExitedWith(kExitAnotherInstaller)) << second.Describe();
    EXPECT_EQ(second.result.dialogs.size(), 1u) << second.Describe();
    // Unattended, it shows no window at all: the box's words go to the log.
    const e2e::SetupRun third = e2e::RunUnseen(setupFolder_);
    EXPECT_TRUE(third.result.ExitedWith(kExitAnotherInstaller)) << third.Describe();
    EXPECT_TRUE(third.Logged(L"L1 HVMessageBox::Show: Box text: Another instance of the Halvard installer is already "
                             L"running on this system. Please finish any other Halvard installations and try again."))
        << third.Describe();

    // The first is still where it was, and goes on when answered.
    ASSERT_FALSE(first.WaitForExit(0));
    ASSERT_TRUE(e2e::PressButton(question, IDNO));
    EXPECT_EQ(first.WaitForExit(20000), std::optional<DWORD>(kExitCancelled));
    EXPECT_TRUE(product.Running());
}

TEST_F(Startup, AMutexThatCanNotBeOpenedCountsAsAnotherInstallerAfterTheVirtualStoreCleanUp)
{
    const std::wstring plain = L"Software\\Classes\\VirtualStore\\Machine\\Software\\Halvard";
    const std::wstring wow = L"Software\\Classes\\VirtualStore\\Machine\\Software\\Wow6432Node\\Halvard";
    ASSERT_TRUE(e2e::RegSetString(HKEY_CURRENT_USER, plain, L"Stale", L"1"));
    ASSERT_TRUE(e2e::RegSetString(HKEY_CURRENT_USER, wow + L"\\Sonora 32", L"Stale", L"1"));
    // The mutex exists, but nobody may open it (error 5).
    const HVHandle mutex = e2e::UnopenableMutex(L"Global\\Halvard Installer");
    ASSERT_TRUE(mutex);
    const e2e::SetupRun run = RunUntilChecked(setupFolder_, L"", {AnotherInstaller()});
    EXPECT_TRUE(run.result.ExitedWith(kExitAnotherInstaller)) << run.Describe();
    EXPECT_TRUE(run.Logged(L"Another installer is running (error 5)")) << run.Describe();
    // Stale keys go unless they have subkeys.
    EXPECT_FALSE(e2e::RegKeyExists(HKEY_CURRENT_USER, plain));
    EXPECT_TRUE(e2e::RegKeyExists(HKEY_CURRENT_USER, wow + L"\\Sonora 32"));
    e2e::RegDeleteKeyTree(HKEY_CURRENT_USER, wow);
}

TEST_F(Startup, ARunningCopyIsClosedOnlyWhenAllowed)
{
    const e2e::DialogRule yes = {.text = kQuestion, .button = IDYES, .times = 1};
    const e2e::DialogRule manual = {
        .title = L"Please Close Sonora",
        .text = L"Install Wizard could not close the running copy of Sonora.\r\nPlease manually close Sonora and then "
                L"press 'OK'.\r\n\r\nIf you can not close Sonora restart your computer and run Install Wizard again.",
        .button = IDOK, .times = 1, .buttons = {L"OK"}};
    const e2e::DialogRule still = {.title = L"Install Wizard Error",
                                   .text = L"Sonora is still running.  Install Wizard can not continue.\r\n\r\n"
                                           L"Please restart your computer and run Install Wizard again.",
                                   .button = IDOK, .times = 1};
    struct Row
    {
        const char* name;
        bool ignoreClose;
        const wchar_t* arguments;
        std::vector<e2e::DialogRule> rules;
        std::optional<DWORD> exitCode;  // none: the checks pass
        bool productEnds;
    } rows[] = {
        {"No", false, L"", {{.text = kQuestion, .button = IDNO, .times = 1}}, kExitCancelled, false},
        {"Yes", false, L"", {yes}, std::nullopt, true},
        {"silent: closed without asking", false, L"/Silent", {}, std::nullopt, true},
        {"won't close", true, L"", {yes, manual, still}, kExitProductRunning, false},
        {"silent, won't close: manual box all the same", true, L"/Silent", {manual, still}, kExitProductRunning, false},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        e2e::RunningProduct product(row.ignoreClose);
        ASSERT_TRUE(product.Started());
        const e2e::SetupRun run = RunUntilChecked(setupFolder_, row.arguments, row.rules);
        EXPECT_TRUE(row.exitCode ? run.result.ExitedWith(*row.exitCode) : PassedChecks(run)) << run.Describe();
        EXPECT_EQ(run.result.dialogs.size(), row.rules.size()) << run.Describe();
        EXPECT_TRUE(row.productEnds ? product.EndsSoon() : product.Running());
        // The rights test ran before the question, and left the machine as it found it.
        EXPECT_TRUE(run.Logged(L"Registry write test: passed")) << run.Describe();
        EXPECT_FALSE(row.exitCode && e2e::RegKeyExists(HKEY_LOCAL_MACHINE, L"Software\\Halvard"));
    }
}

TEST_F(Startup, UnsupportedMachinesAreRefusedWithTheirBox)
{
    const e2e::ScopedRegString browser(HKEY_LOCAL_MACHINE, L"Software\\Microsoft\\Internet Explorer", L"Version",
                                       L"6.0.2900.5512");
    struct Row
    {
        const char* name;
        const wchar_t* windows;  // as "winecfg /v" names it; none: as the prefix is
        bool noSse2;
        const wchar_t* minimumBrowser;
        DWORD exitCode;
        const wchar_t* logged;
        const wchar_t* title = nullptr;  // of the box, answered by its last button; none: the checks pass
        const wchar_t* text = nullptr;
        std::vector<std::wstring> buttons = {};
    } rows[] = {
        {"Windows XP", L"winxp", false, L"5.0.0.0", kExitInstalled, L"Microsoft Windows XP (5.1."},
        {"Windows NT 4", L"nt40", false, L"5.0.0.0", kExitNotSupported,
         L"Environment checks: Windows version not supported", L"Operating System Not Supported",
         L"The Sonora Install Wizard can not run on this version of Microsoft Windows.\r\n\r\n"
         L"Sonora requires Windows 2000 or later.  Setup will now abort.", {L"OK"}},
        {"no SSE2", nullptr, true, L"5.0.0.0", kExitNotSupported, L"Environment checks: no SSE2", L"SSE2 Not Available",
         L"The Sonora Install Wizard failed to detect an SSE2-capable CPU.\r\n\r\n"
         L"Sonora requires SSE2 capabilities to run.  Setup will now abort.", {L"OK"}},
        {"browser equal to the minimum", nullptr, false, L"6.0.2900.5512", kExitInstalled, kPassed.c_str()},
        {"browser below the minimum", nullptr, false, L"6.0.2900.5513", kExitBrowserTooOld,
         L"Environment checks: browser engine too old", L"Install Wizard",
         L"Install Wizard did not detect a new enough version of Microsoft Internet Explorer.  Setup cannot continue."
         L"\r\n\r\nClick on 'Download' to download and install the latest version of Internet Explorer.  Please "
         L"re-run setup after installing Internet Explorer.", {L"Download", L"Quit Setup"}},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        std::optional<e2e::ScopedRegString> windows;
        if (row.windows)
            windows.emplace(HKEY_CURRENT_USER, L"Software\\Wine", L"Version", row.windows);
        ::SetEnvironmentVariableW(L"IW_TEST_ONLY_NO_SSE2", row.noSse2 ? L"1" : nullptr);
        const std::wstring folder = e2e::MakeSetupFolder(L"StartupMachine", DescriptionWithMinimum(e2e::Utf8(row.minimumBrowser)));
        std::vector<e2e::DialogRule> rules;
        if (row.title)
            rules.push_back({.title = row.title, .text = row.text, .buttonCaption = row.buttons.back(), .buttons = row.buttons});
        const e2e::SetupRun run = RunUntilChecked(folder, L"", rules);
        EXPECT_TRUE(row.title ? run.result.ExitedWith(row.exitCode) : PassedChecks(run)) << run.Describe();
        EXPECT_EQ(run.result.dialogs.size(), rules.size()) << run.Describe();
        EXPECT_TRUE(run.Logged(row.logged)) << run.Describe();
    }
}

TEST_F(Startup, InstallXmlInTheParentFolderIsUsed)
{
    // Only the parent's description asks for a browser engine newer than any: the dialog shows
    // that it was read.
    const std::wstring parent = e2e::ScratchFolder(L"StartupParent");
    ASSERT_TRUE(e2e::WriteFileBytes(parent + L"Install.xml", DescriptionWithMinimum("999.0")));
    const std::wstring child = parent + L"Disk1\\";
    ASSERT_TRUE(e2e::MakeFolder(child));
    ASSERT_TRUE(::CopyFileW(e2e::InstallWizardPath().c_str(), (child + L"InstallWizard.exe").c_str(), FALSE));
    const e2e::SetupRun run = RunUntilChecked(child, L"",
                                       {{.title = L"Install Wizard", .text = L"Install Wizard did not detect",
                                         .match = e2e::TextMatch::StartsWith, .buttonCaption = L"Quit Setup"}});
    EXPECT_TRUE(run.result.ExitedWith(kExitBrowserTooOld)) << run.Describe();
    EXPECT_TRUE(run.Logged(L"Disk1\\..\\Install.xml")) << run.Describe();
}

TEST_F(Startup, WithoutRightsToWriteMachineSettingsItStops)
{
    // A volatile "Software\Halvard" can't take the lasting key of the write test, as a key
    // without write rights can't. (An empty key, as earlier runs' write tests leave it, makes
    // way for the volatile one.)
    ASSERT_TRUE(e2e::RegCreateVolatileKey(HKEY_LOCAL_MACHINE, L"Software\\Halvard")) << "Software\\Halvard holds data";
    const e2e::SetupRun run = RunUntilChecked(setupFolder_, L"",
                                       {{.title = L"Information",
                                         .text = L"Sorry, but you do not have sufficient rights to install the "
                                                 L"program.\r\nPlease make sure you have administrative rights before "
                                                 L"you begin the installation.",
                                         .button = IDOK}});
    ::RegDeleteKeyW(HKEY_LOCAL_MACHINE, L"Software\\Halvard");
    EXPECT_TRUE(run.result.ExitedWith(kExitNoRights)) << run.Describe();
    EXPECT_EQ(run.result.dialogs.size(), 1u) << run.Describe();
}

// Which spellings ask for it, and that it names every switch, CCommandLineParserTest proves.
TEST_F(Startup, TheSwitchListIsShownOnRequest)
{
    const e2e::SetupRun run = RunUntilChecked(setupFolder_, L"/Help",
                                       {{.title = L"Install Wizard", .text = L"Install Wizard accepts these switches:",
                                         .match = e2e::TextMatch::StartsWith, .button = IDOK, .times = 1}});
    EXPECT_TRUE(run.result.ExitedWith(kExitInstalled)) << run.Describe();
    ASSERT_EQ(run.result.dialogs.size(), 1u) << run.Describe();
    EXPECT_NE(run.result.dialogs[0].text.find(L"/Dir=<folder>"), std::wstring::npos);
    EXPECT_FALSE(run.Logged(L"Environment checks")) << run.Describe();
}

TEST_F(Startup, LogWithoutAPathGoesToADatedFileInTemp)
{
    const std::wstring folder = e2e::TempFolder();
    const auto logs = [&folder] { return e2e::FindFiles(folder, L"Install Wizard *.log"); };
    for (const std::wstring& old : logs())
        ::DeleteFileW((folder + old).c_str());

    // A silent run passes every page by itself, so the whole run to its exit is in the log.
    const e2e::RunResult result =
        e2e::ProgramDriver({.setupFolder = setupFolder_, .commandLine = L"/Log /Silent /DistributorID  ACME "}).Run();
    ASSERT_TRUE(result.ExitedWith(kExitInstalled)) << result.Describe();
    const auto names = logs();
    ASSERT_EQ(names.size(), 1u);
    const std::wstring log = e2e::ReadText(folder + names[0]);
    for (const wchar_t* line : {L"CInstallApp::InitInstance: Command line: ", L"/Log /Silent /DistributorID  ACME",
                                L"Options: silent yes, upgrade no", L"distributor \"ACME\"", L"Single-instance mutex",
                                L"Registry write test: passed", L"CInstallApp::ExitInstance: Exit code"})
        EXPECT_NE(log.find(line), std::wstring::npos) << e2e::Utf8(line) << "\n" << e2e::Utf8(log);
    ::DeleteFileW((folder + names[0]).c_str());
}

// The setup program's start-up under Wine, driven as a user would: the single-instance rule,
// a running copy of the product, the Windows version and browser-engine checks, the rights
// test, the service stop, the VirtualStore clean-up, the switch list, the log and the exit
// code of each outcome.
#include "E2ESupport.h"

#include "install/InstallExitCode.h"

#include <gtest/gtest.h>

#include <windows.h>

#include <optional>
#include <string>

namespace
{
const std::wstring kPassed = L"Environment checks: passed";

const std::wstring kInstallXml =
    L"<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<HVIC version=\"1.0\">\n"
    L"  <Product><LauncherName>Sonora.exe</LauncherName></Product>\n"
    L"  <SpecialFeatures><MinIEVersion>%MIN%</MinIEVersion></SpecialFeatures>\n</HVIC>\n";

bool WriteText(const std::wstring& path, const std::string& text)
{
    FILE* file = _wfopen(path.c_str(), L"wb");
    if (!file)
        return false;
    const bool ok = std::fwrite(text.data(), 1, text.size(), file) == text.size();
    std::fclose(file);
    return ok;
}

std::wstring ReadLog(const std::wstring& path)
{
    std::string bytes;
    e2e::ReadFileBytes(path, bytes);
    const int length = ::MultiByteToWideChar(CP_UTF8, 0, bytes.data(), static_cast<int>(bytes.size()), nullptr, 0);
    std::wstring text(length, L'\0');
    ::MultiByteToWideChar(CP_UTF8, 0, bytes.data(), static_cast<int>(bytes.size()), text.data(), length);
    return text;
}

// A setup folder of the test's own: the setup program and an Install.xml (none when
// `installXml` is empty), so that tests can give it any description without touching the
// sample media.
std::wstring MakeSetupFolder(const std::wstring& name, const std::optional<std::string>& installXml)
{
    const std::wstring folder = e2e::ScratchFolder(name);
    // The product's two source folders, empty: the install runs through without files to copy.
    if (folder.empty() || !::CopyFileW(e2e::InstallWizardPath().c_str(), (folder + L"InstallWizard.exe").c_str(), FALSE) ||
        !e2e::MakeFolder(folder + L"Listenwell\\") || !e2e::MakeFolder(folder + L"System\\") ||
            // The product's file types: without them an install can't go on.
            !::CopyFileW((e2e::MediaFolder() + L"Listenwell\\FileAssociations.xml").c_str(),
                         (folder + L"Listenwell\\FileAssociations.xml").c_str(), FALSE))
        return {};
    if (installXml && !WriteText(folder + L"Install.xml", *installXml))
        return {};
    return folder;
}

std::string DescriptionWithMinimum(const std::wstring& minimum)
{
    std::wstring xml = kInstallXml;
    xml.replace(xml.find(L"%MIN%"), 5, minimum);
    return e2e::Utf8(xml);
}

// One run of the setup program with its log; it ends when its first checks have passed
// (once the wizard follows them, the run is ended there).
struct SetupRun
{
    e2e::RunResult result;
    std::wstring log;

    bool PassedChecks() const
    {
        return log.find(kPassed) != std::wstring::npos &&
               (result.ExitedWith(kExitInstalled) || result.outcome == e2e::RunOutcome::PollFailed);
    }
    std::string Describe() const { return result.Describe() + "\nLog:\n" + e2e::Utf8(log); }
};

SetupRun RunSetup(const std::wstring& setupFolder, const std::wstring& arguments, std::vector<e2e::DialogRule> rules)
{
    const std::wstring logPath = e2e::ScratchFolder(L"StartupLog") + L"setup.log";
    e2e::RunOptions options;
    options.setupFolder = setupFolder;
    options.commandLine = L"/Log=\"" + logPath + L"\" " + arguments;
    options.rules = std::move(rules);
    options.timeoutMs = 30000;
    options.onPoll = [&logPath](DWORD) { return ReadLog(logPath).find(kPassed) == std::wstring::npos; };
    SetupRun run;
    run.result = e2e::ProgramDriver(options).Run();
    run.log = ReadLog(logPath);
    return run;
}

// A running copy of the product: the sample launcher, optionally refusing to close.
class RunningProduct
{
public:
    explicit RunningProduct(bool ignoreClose)
    {
        std::wstring commandLine = L"\"" + e2e::MediaFolder() + L"Listenwell\\Sonora.exe\"";
        if (ignoreClose)
            commandLine += L" /IgnoreClose";
        STARTUPINFOW startup = {};
        startup.cb = sizeof(startup);
        if (!::CreateProcessW(nullptr, commandLine.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup,
                              &process_))
            return;
        for (int i = 0; i < 500 && !::FindWindowW(L"LWFrame", nullptr); ++i)
            ::Sleep(10);
    }
    ~RunningProduct()
    {
        if (process_.hProcess)
        {
            ::TerminateProcess(process_.hProcess, 1);
            ::WaitForSingleObject(process_.hProcess, 5000);
            ::CloseHandle(process_.hProcess);
            ::CloseHandle(process_.hThread);
        }
    }
    bool Started() const { return process_.hProcess && ::FindWindowW(L"LWFrame", nullptr); }
    bool Running() const { return process_.hProcess && ::WaitForSingleObject(process_.hProcess, 0) == WAIT_TIMEOUT; }
    // A copy whose window was closed still takes a moment to end its process.
    bool EndsSoon() const
    {
        return process_.hProcess && ::WaitForSingleObject(process_.hProcess, 10000) == WAIT_OBJECT_0;
    }

private:
    PROCESS_INFORMATION process_ = {};
};

// Sets the Windows version Wine reports to new processes, as "winecfg /v" does, and puts the
// old one back.
class WindowsVersion
{
public:
    explicit WindowsVersion(const std::wstring& version)
        : old_(e2e::RegString(HKEY_CURRENT_USER, L"Software\\Wine", L"Version"))
    {
        e2e::RegSetString(HKEY_CURRENT_USER, L"Software\\Wine", L"Version", version);
    }
    ~WindowsVersion()
    {
        if (old_)
            e2e::RegSetString(HKEY_CURRENT_USER, L"Software\\Wine", L"Version", *old_);
        else
            e2e::RegDeleteValueIfPresent(HKEY_CURRENT_USER, L"Software\\Wine", L"Version");
    }

private:
    std::optional<std::wstring> old_;
};

// The browser engine's version as the setup program reads it, put back afterwards.
class BrowserVersion
{
public:
    explicit BrowserVersion(const std::wstring& version)
        : old_(e2e::RegString(HKEY_LOCAL_MACHINE, kKey, L"Version"))
    {
        e2e::RegSetString(HKEY_LOCAL_MACHINE, kKey, L"Version", version);
    }
    ~BrowserVersion()
    {
        if (old_)
            e2e::RegSetString(HKEY_LOCAL_MACHINE, kKey, L"Version", *old_);
        else
            e2e::RegDeleteValueIfPresent(HKEY_LOCAL_MACHINE, kKey, L"Version");
    }

private:
    static constexpr const wchar_t* kKey = L"Software\\Microsoft\\Internet Explorer";
    std::optional<std::wstring> old_;
};

const std::wstring kQuestion =
    L"Install Wizard has detected a running copy of Sonora.\r\n\r\n"
    L"Do you want Install Wizard to close Sonora and continue setup?";
const std::wstring kManual =
    L"Install Wizard could not close the running copy of Sonora.\r\n"
    L"Please manually close Sonora and then press 'OK'.\r\n\r\n"
    L"If you can not close Sonora restart your computer and run Install Wizard again.";
const std::wstring kStill =
    L"Sonora is still running.  Install Wizard can not continue.\r\n\r\n"
    L"Please restart your computer and run Install Wizard again.";

class Startup : public ::testing::Test
{
protected:
    void SetUp() override
    {
        std::vector<std::wstring> problems;
        ASSERT_TRUE(e2e::ResetToFreshMachine(&problems));
        setupFolder_ = MakeSetupFolder(L"StartupSetup", DescriptionWithMinimum(L"5.0.0.0"));
        ASSERT_FALSE(setupFolder_.empty());
    }
    void TearDown() override { e2e::ResetToFreshMachine(); }

    std::wstring setupFolder_;
};
}

TEST_F(Startup, ASecondInstanceIsTurnedAwayWhileTheFirstRunsOn)
{
    RunningProduct product(false);
    ASSERT_TRUE(product.Started());
    // The first instance waits at the running-copy question: it holds the mutex meanwhile.
    std::wstring commandLine = L"\"" + setupFolder_ + L"InstallWizard.exe\"";
    STARTUPINFOW startup = {};
        startup.cb = sizeof(startup);
    PROCESS_INFORMATION first = {};
    ASSERT_TRUE(::CreateProcessW(nullptr, commandLine.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup,
                                 &first));
    HWND question = nullptr;
    for (int i = 0; i < 1000 && !question; ++i)
    {
        for (const e2e::WindowInfo& window : e2e::ListTopLevelWindows(first.dwProcessId, true))
            if (window.IsDialog() && window.text == kQuestion)
                question = window.hwnd;
        if (!question)
            ::Sleep(20);
    }
    ASSERT_NE(question, nullptr) << "the first instance never asked";

    const SetupRun second = RunSetup(setupFolder_, L"", {{.title = L"Halvard Installer",
                                                      .text = L"Another instance of the Halvard installer is already "
                                                              L"running on this system.\r\n\r\nPlease finish any other "
                                                              L"Halvard installations and try again.",
                                                      .button = IDOK}});
    EXPECT_TRUE(second.result.ExitedWith(kExitAnotherInstaller)) << second.Describe();
    ASSERT_EQ(second.result.dialogs.size(), 1u) << second.Describe();

    // The first is still where it was, and goes on when answered.
    EXPECT_EQ(::WaitForSingleObject(first.hProcess, 0), static_cast<DWORD>(WAIT_TIMEOUT));
    const e2e::WindowInfo box = e2e::InspectWindow(question);
    EXPECT_EQ(box.text, kQuestion);
    for (const e2e::ButtonInfo& button : box.buttons)
        if (button.id == IDNO)
            e2e::PressButton(question, button);
    ASSERT_EQ(::WaitForSingleObject(first.hProcess, 20000), static_cast<DWORD>(WAIT_OBJECT_0));
    DWORD exitCode = 0;
    ::GetExitCodeProcess(first.hProcess, &exitCode);
    EXPECT_EQ(exitCode, static_cast<DWORD>(kExitCancelled));
    ::CloseHandle(first.hProcess);
    ::CloseHandle(first.hThread);
    EXPECT_TRUE(product.Running());
}

TEST_F(Startup, AMutexThatCanNotBeOpenedCountsAsAnotherInstaller)
{
    // An empty access list: the mutex exists, but nobody may open it (error 5).
    SECURITY_DESCRIPTOR descriptor;
    ACL acl;
    ASSERT_TRUE(::InitializeSecurityDescriptor(&descriptor, SECURITY_DESCRIPTOR_REVISION));
    ASSERT_TRUE(::InitializeAcl(&acl, sizeof(acl), ACL_REVISION));
    ASSERT_TRUE(::SetSecurityDescriptorDacl(&descriptor, TRUE, &acl, FALSE));
    SECURITY_ATTRIBUTES attributes = {sizeof(attributes), &descriptor, FALSE};
    HANDLE mutex = ::CreateMutexW(&attributes, FALSE, L"Global\\Halvard Installer");
    ASSERT_NE(mutex, nullptr);
    const SetupRun run = RunSetup(setupFolder_, L"", {{.title = L"Halvard Installer", .match = e2e::TextMatch::Any,
                                                       .button = IDOK, .times = 1}});
    ::CloseHandle(mutex);
    EXPECT_TRUE(run.result.ExitedWith(kExitAnotherInstaller)) << run.Describe();
    EXPECT_NE(run.log.find(L"Another installer is running (error 5)"), std::wstring::npos) << run.Describe();
}

TEST_F(Startup, RunningCopyNoEndsStartUp)
{
    RunningProduct product(false);
    ASSERT_TRUE(product.Started());
    const SetupRun run = RunSetup(setupFolder_, L"", {{.title = L"", .text = kQuestion, .button = IDNO, .times = 1}});
    EXPECT_TRUE(run.result.ExitedWith(kExitCancelled)) << run.Describe();
    EXPECT_EQ(run.result.dialogs.size(), 1u) << run.Describe();
    EXPECT_TRUE(product.Running());
    // The rights test ran before the question, and left the machine as it found it.
    EXPECT_NE(run.log.find(L"Registry write test: passed"), std::wstring::npos) << run.Describe();
    EXPECT_FALSE(e2e::RegKeyExists(HKEY_LOCAL_MACHINE, L"Software\\Halvard"));
}

TEST_F(Startup, RunningCopyYesClosesIt)
{
    RunningProduct product(false);
    ASSERT_TRUE(product.Started());
    const SetupRun run = RunSetup(setupFolder_, L"", {{.title = L"", .text = kQuestion, .button = IDYES, .times = 1}});
    EXPECT_TRUE(run.PassedChecks()) << run.Describe();
    EXPECT_EQ(run.result.dialogs.size(), 1u) << run.Describe();
    EXPECT_TRUE(product.EndsSoon());
}

TEST_F(Startup, SilentClosesTheRunningCopyWithoutAsking)
{
    RunningProduct product(false);
    ASSERT_TRUE(product.Started());
    const SetupRun run = RunSetup(setupFolder_, L"/Silent", {});
    EXPECT_TRUE(run.PassedChecks()) << run.Describe();
    EXPECT_TRUE(run.result.dialogs.empty()) << run.Describe();
    EXPECT_TRUE(product.EndsSoon());
}

TEST_F(Startup, ACopyThatWontCloseLeadsToTheManualBoxThenTheError)
{
    RunningProduct product(true);
    ASSERT_TRUE(product.Started());
    const SetupRun run = RunSetup(setupFolder_, L"",
                             {{.title = L"", .text = kQuestion, .button = IDYES, .times = 1},
                              {.title = L"Please Close Sonora", .text = kManual, .button = IDOK, .times = 1},
                              {.title = L"Install Wizard Error", .text = kStill, .button = IDOK, .times = 1}});
    EXPECT_TRUE(run.result.ExitedWith(kExitProductRunning)) << run.Describe();
    ASSERT_EQ(run.result.dialogs.size(), 3u) << run.Describe();
    EXPECT_EQ(run.result.dialogs[1].buttons, std::vector<std::wstring>{L"OK"});
    EXPECT_TRUE(product.Running());
}

TEST_F(Startup, SilentWithACopyThatWontCloseStillShowsTheManualBox)
{
    RunningProduct product(true);
    ASSERT_TRUE(product.Started());
    const SetupRun run = RunSetup(setupFolder_, L"/Silent",
                             {{.title = L"Please Close Sonora", .text = kManual, .button = IDOK, .times = 1},
                              {.title = L"Install Wizard Error", .text = kStill, .button = IDOK, .times = 1}});
    EXPECT_TRUE(run.result.ExitedWith(kExitProductRunning)) << run.Describe();
    EXPECT_EQ(run.result.dialogs.size(), 2u) << run.Describe();
}

TEST_F(Startup, WindowsXPPassesAndNT4IsRefused)
{
    {
        WindowsVersion xp(L"winxp");
        const SetupRun run = RunSetup(setupFolder_, L"", {});
        EXPECT_TRUE(run.PassedChecks()) << run.Describe();
        EXPECT_NE(run.log.find(L"Microsoft Windows XP (5.1."), std::wstring::npos) << run.Describe();
    }
    {
        WindowsVersion nt4(L"nt40");
        const SetupRun run = RunSetup(setupFolder_, L"",
                                 {{.title = L"Operating System Not Supported",
                                   .text = L"The Sonora Install Wizard can not run on this version of Microsoft "
                                           L"Windows.\r\n\r\nSonora requires Windows 2000 or later.  Setup will now "
                                           L"abort.",
                                   .button = IDOK}});
        EXPECT_TRUE(run.result.ExitedWith(kExitNotSupported)) << run.Describe();
        EXPECT_EQ(run.result.dialogs.size(), 1u) << run.Describe();
    }
}

TEST_F(Startup, ABrowserEqualToTheMinimumPassesALowerOneIsShownTheDialog)
{
    BrowserVersion browser(L"6.0.2900.5512");
    const std::wstring equal = MakeSetupFolder(L"StartupBrowserEqual", DescriptionWithMinimum(L"6.0.2900.5512"));
    const SetupRun passes = RunSetup(equal, L"", {});
    EXPECT_TRUE(passes.PassedChecks()) << passes.Describe();

    const std::wstring higher = MakeSetupFolder(L"StartupBrowserHigher", DescriptionWithMinimum(L"6.0.2900.5513"));
    const SetupRun refused = RunSetup(
        higher, L"",
        {{.title = L"Install Wizard",
          .text = L"Install Wizard did not detect a new enough version of Microsoft Internet Explorer.  Setup cannot "
                  L"continue.\r\n\r\nClick on 'Download' to download and install the latest version of Internet "
                  L"Explorer.  Please re-run setup after installing Internet Explorer.",
          .buttonCaption = L"Quit Setup"}});
    EXPECT_TRUE(refused.result.ExitedWith(kExitBrowserTooOld)) << refused.Describe();
    ASSERT_EQ(refused.result.dialogs.size(), 1u) << refused.Describe();
    EXPECT_EQ(refused.result.dialogs[0].buttons, (std::vector<std::wstring>{L"Download", L"Quit Setup"}));
}

TEST_F(Startup, InstallXmlInTheParentFolderIsUsed)
{
    // Only the parent's description asks for a browser engine newer than any: the dialog shows
    // that it was read.
    const std::wstring parent = e2e::ScratchFolder(L"StartupParent");
    ASSERT_TRUE(WriteText(parent + L"Install.xml", DescriptionWithMinimum(L"999.0")));
    const std::wstring child = parent + L"Disk1\\";
    ASSERT_TRUE(::CreateDirectoryW(child.c_str(), nullptr));
    ASSERT_TRUE(::CopyFileW(e2e::InstallWizardPath().c_str(), (child + L"InstallWizard.exe").c_str(), FALSE));
    const SetupRun run = RunSetup(child, L"",
                             {{.title = L"Install Wizard", .text = L"Install Wizard did not detect",
                               .match = e2e::TextMatch::StartsWith, .buttonCaption = L"Quit Setup"}});
    EXPECT_TRUE(run.result.ExitedWith(kExitBrowserTooOld)) << run.Describe();
    EXPECT_NE(run.log.find(L"Disk1\\..\\Install.xml"), std::wstring::npos) << run.Describe();
}

TEST_F(Startup, WithoutRightsToWriteMachineSettingsItStops)
{
    // A volatile "Software\Halvard" can't take the lasting key of the write test, as a key
    // without write rights can't.
    // An empty key, as earlier runs' write tests leave it, makes way for the volatile one.
    ::RegDeleteKeyW(HKEY_LOCAL_MACHINE, L"Software\\Halvard");
    HKEY raw = nullptr;
    DWORD disposition = 0;
    ASSERT_EQ(::RegCreateKeyExW(HKEY_LOCAL_MACHINE, L"Software\\Halvard", 0, nullptr, REG_OPTION_VOLATILE,
                                KEY_ALL_ACCESS, nullptr, &raw, &disposition),
              ERROR_SUCCESS);
    ::RegCloseKey(raw);
    ASSERT_EQ(disposition, static_cast<DWORD>(REG_CREATED_NEW_KEY)) << "Software\\Halvard holds data";
    const SetupRun run = RunSetup(setupFolder_, L"",
                             {{.title = L"Information",
                               .text = L"Sorry, but you do not have sufficient rights to install the program.\r\n"
                                       L"Please make sure you have administrative rights before you begin the "
                                       L"installation.",
                               .button = IDOK}});
    ::RegDeleteKeyW(HKEY_LOCAL_MACHINE, L"Software\\Halvard");
    EXPECT_TRUE(run.result.ExitedWith(kExitNoRights)) << run.Describe();
    EXPECT_EQ(run.result.dialogs.size(), 1u) << run.Describe();
}

TEST_F(Startup, TheServiceOfAnEarlierInstallationIsStopped)
{
    const std::wstring installed = e2e::ScratchFolder(L"StartupEarlierInstall");
    ASSERT_TRUE(::CopyFileW((e2e::MediaFolder() + L"Listenwell\\HVService.exe").c_str(),
                            (installed + L"HVService.exe").c_str(), FALSE));
    ASSERT_TRUE(e2e::RegSetString(HKEY_LOCAL_MACHINE, L"Software\\Halvard\\Corvale\\Installations\\Sonora 32", L"Path",
                                  installed + L"Sonora.exe"));
    const SetupRun run = RunSetup(setupFolder_, L"", {});
    EXPECT_TRUE(run.PassedChecks()) << run.Describe();
    EXPECT_NE(::GetFileAttributesW((installed + L"HVService.stop.txt").c_str()), INVALID_FILE_ATTRIBUTES)
        << run.Describe();
    EXPECT_NE(run.log.find(L"Parameters: /Stop"), std::wstring::npos) << run.Describe();
}

TEST_F(Startup, StaleVirtualStoreKeysGoUnlessTheyHaveSubkeys)
{
    const std::wstring plain = L"Software\\Classes\\VirtualStore\\Machine\\Software\\Halvard";
    const std::wstring wow = L"Software\\Classes\\VirtualStore\\Machine\\Software\\Wow6432Node\\Halvard";
    ASSERT_TRUE(e2e::RegSetString(HKEY_CURRENT_USER, plain, L"Stale", L"1"));
    ASSERT_TRUE(e2e::RegSetString(HKEY_CURRENT_USER, wow + L"\\Sonora 32", L"Stale", L"1"));
    // Turned away at the single-instance rule: the clean-up comes before it.
    HANDLE mutex = ::CreateMutexW(nullptr, FALSE, L"Global\\Halvard Installer");
    ASSERT_NE(mutex, nullptr);
    const SetupRun run = RunSetup(setupFolder_, L"", {{.title = L"Halvard Installer", .match = e2e::TextMatch::Any,
                                                  .button = IDOK, .times = 1}});
    ::CloseHandle(mutex);
    EXPECT_TRUE(run.result.ExitedWith(kExitAnotherInstaller)) << run.Describe();
    EXPECT_FALSE(e2e::RegKeyExists(HKEY_CURRENT_USER, plain));
    EXPECT_TRUE(e2e::RegKeyExists(HKEY_CURRENT_USER, wow + L"\\Sonora 32"));
    e2e::RegDeleteKeyTree(HKEY_CURRENT_USER, wow);
}

TEST_F(Startup, BadInputGivesDefaultsAndALogLine)
{
    struct Case
    {
        const char* name;
        std::optional<std::string> installXml;
        const wchar_t* arguments;
        const wchar_t* logged;
    };
    const Case cases[] = {
        {"no Install.xml anywhere", std::nullopt, L"", L"Install description not readable"},
        {"broken XML", std::string("<HVIC version=\"1.0\"><Product><<</"), L"",
         L"Environment checks: passed"},
        {"version not a number", std::string("<HVIC version=\"abc\"><Settings AllowDowngrade=\"1\"/></HVIC>"), L"",
         L"Install settings not applicable"},
        {"junk command line", std::string("<HVIC version=\"1.0\"/>"), L"/Foo /DistributorID /// \x00e9/\x4e2d",
         L"Unknown option ignored: /Foo"},
    };
    for (const Case& c : cases)
    {
        const std::wstring folder = MakeSetupFolder(L"StartupBadInput", c.installXml);
        ASSERT_FALSE(folder.empty());
        const SetupRun run = RunSetup(folder, c.arguments, {});
        EXPECT_TRUE(run.PassedChecks()) << c.name << "\n" << run.Describe();
        EXPECT_NE(run.log.find(c.logged), std::wstring::npos) << c.name << "\n" << run.Describe();
        EXPECT_NE(run.log.find(L"allow downgrade no"), std::wstring::npos) << c.name << "\n" << run.Describe();
    }
}

TEST_F(Startup, TheSwitchListIsShownOnRequest)
{
    for (const wchar_t* arguments : {L"/?", L"/Help"})
    {
        const SetupRun run = RunSetup(setupFolder_, arguments,
                                 {{.title = L"Install Wizard", .text = L"Install Wizard accepts these switches:",
                                   .match = e2e::TextMatch::StartsWith, .button = IDOK}});
        EXPECT_TRUE(run.result.ExitedWith(kExitInstalled)) << run.Describe();
        ASSERT_EQ(run.result.dialogs.size(), 1u) << run.Describe();
        for (const wchar_t* name : {L"/Silent", L"/DistributorID", L"/NoRun", L"/Log", L"/?"})
            EXPECT_NE(run.result.dialogs[0].text.find(name), std::wstring::npos) << e2e::Utf8(name);
        EXPECT_EQ(run.log.find(L"Environment checks"), std::wstring::npos) << run.Describe();
    }
}

TEST_F(Startup, LogWithoutAPathGoesToADatedFileInTemp)
{
    wchar_t temp[MAX_PATH + 1];
    const std::wstring folder(temp, ::GetTempPathW(MAX_PATH + 1, temp));
    auto logs = [&folder] {
        std::vector<std::wstring> names;
        WIN32_FIND_DATAW data;
        const HANDLE find = ::FindFirstFileW((folder + L"Install Wizard *.log").c_str(), &data);
        if (find != INVALID_HANDLE_VALUE)
        {
            do
                names.push_back(data.cFileName);
            while (::FindNextFileW(find, &data));
            ::FindClose(find);
        }
        return names;
    };
    for (const std::wstring& old : logs())
        ::DeleteFileW((folder + old).c_str());

    e2e::RunOptions options;
    options.setupFolder = setupFolder_;
    // A silent run passes every page by itself, so the whole run to its exit is in the log.
    options.commandLine = L"/Log /Silent /DistributorID  ACME ";
    const e2e::RunResult result = e2e::ProgramDriver(options).Run();
    ASSERT_TRUE(result.ExitedWith(kExitInstalled)) << result.Describe();
    const auto names = logs();
    ASSERT_EQ(names.size(), 1u);
    const std::wstring log = ReadLog(folder + names[0]);
    for (const wchar_t* line : {L"CInstallApp::InitInstance: Command line: ", L"/Log /Silent /DistributorID  ACME",
                                L"Options: silent yes, upgrade no", L"distributor \"ACME\"",
                                L"Single-instance mutex", L"Registry write test: passed", L"CInstallApp::ExitInstance: Exit code"})
        EXPECT_NE(log.find(line), std::wstring::npos) << e2e::Utf8(line) << "\n" << e2e::Utf8(log);
    ::DeleteFileW((folder + names[0]).c_str());
}

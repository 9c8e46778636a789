// Unattended deployment, end to end: InstallWizard.exe /Silent /SuppressMessages as a
// deployment tool starts it on a machine where nobody is logged on. No window of the program
// may ever appear; what a box would have said is in the log, and the exit code tells it too.
#include "E2ESupport.h"
#include "Scenario.h"

#include "product/InstallExitCode.h"

#include <gtest/gtest.h>

#include <windows.h>

#include <string>
#include <vector>

namespace
{
const std::wstring kUnattended = L"/Silent /SuppressMessages";

// Ends the run at the first window of the program that becomes visible (the driver lists it).
e2e::SetupRun RunUnseen()
{
    return e2e::RunSetup({.commandLine = kUnattended, .timeoutMs = 30000,
                          .onPoll = [](DWORD id) { return e2e::ListTopLevelWindows(id, true).empty(); }, .roundMs = 20});
}

// An error-level line of the message-box routine: what the user would have read.
std::wstring BoxLine(const std::wstring& what) { return L"L1 HVMessageBox::Show: Box " + what; }

using Unattended = e2e::FreshMachineTest;
}

TEST_F(Unattended, AnUnsupportedWindowsVersionEndsWith1633)
{
    const e2e::ScopedRegString windows(HKEY_CURRENT_USER, L"Software\\Wine", L"Version", L"nt40");
    const e2e::SetupRun run = RunUnseen();
    EXPECT_TRUE(run.result.ExitedWith(kExitNotSupported)) << run.Describe();
    EXPECT_TRUE(run.Logged(BoxLine(L"title: Operating System Not Supported"))) << run.Describe();
    EXPECT_TRUE(run.Logged(BoxLine(L"text: The Sonora Install Wizard can not run on this version of Microsoft Windows. "
                                   L"Sonora requires Windows 2000 or later.  Setup will now abort.")))
        << run.Describe();
}

TEST_F(Unattended, AnInstallWritesWhatASilentOneWrites)
{
    // The installation record's GUID is made new by every first install.
    const std::vector<std::wstring> madeNew = {L"GUID"};
    const std::wstring finish = e2e::MediaFolder() + L"Finish.txt";
    const e2e::SetupRun silent = e2e::RunSetup({}, L"/Silent");
    ASSERT_TRUE(silent.result.ExitedWith(kExitInstalled)) << silent.Describe();
    // The install record is each run's own account of itself, checked by the install tests;
    // here only what the two runs put on the machine is compared.
    const auto traces = [&] {
        std::vector<std::wstring> found = e2e::ReadTraces(madeNew);
        std::erase_if(found, [](const std::wstring& trace) { return trace.find(L"\\Install Record.txt ") != std::wstring::npos; });
        return found;
    };
    const std::vector<std::wstring> expected = traces();
    const std::string expectedFinish = e2e::ReadFileText(finish);
    ASSERT_TRUE(e2e::ResetToFreshMachine());
    ::DeleteFileW(finish.c_str());

    const e2e::SetupRun unattended = RunUnseen();
    ASSERT_TRUE(unattended.result.ExitedWith(kExitInstalled)) << unattended.Describe();
    EXPECT_TRUE(unattended.Logged(L"Messages suppressed")) << unattended.Describe();
    EXPECT_FALSE(unattended.Logged(L"Box title:")) << unattended.Describe();
    EXPECT_EQ(traces(), expected);
    // Neither starts the program afterwards.
    EXPECT_TRUE(expectedFinish.empty());
    EXPECT_EQ(e2e::ReadFileText(finish), expectedFinish);
}

// An administrator records the choices of one interactive run and replays them unattended on
// a fresh machine: the replay leaves what the interactive run left.
TEST_F(Unattended, AnAnswerFileReplaysAnInteractiveRun)
{
    const std::wstring answers = e2e::ScratchFolder(L"Answers") + L"Sonora.inf";
    const std::wstring folder = L"C:\\Sonora Elsewhere\\";
    e2e::WizardUser user({
        e2e::NextOn(L"Welcome"),
        e2e::ChooseOn(L"Setup Type", L"Custom"),
        e2e::ChooseOn(L"Setup Type", L"Normal install to a computer"),
        e2e::TypeOn(L"Destination Folder", folder),
        {L"File Associations",
         [](const e2e::WizardView& v) {
             // Nothing, then the first two rows.
             e2e::Click(v.Control(L"Unselect All"));
             HWND list = v.ControlOfClass(L"SysListView32");
             for (const WPARAM key : {VK_SPACE, VK_DOWN, VK_SPACE}) {
                 ::PostMessageW(list, WM_KEYDOWN, key, 0);
                 ::PostMessageW(list, WM_KEYUP, key, 0);
             }
             e2e::ClickNext(v);
         }},
        {L"Create Shortcuts",
         [](const e2e::WizardView& v) {
             e2e::Click(v.Control(L"Create a desktop shortcut"));
             e2e::ClickNext(v);
         }},
        e2e::NextOn(L"Install Complete"),
    });
    const e2e::SetupRun interactive =
        e2e::RunSetup({}, L"/NoDriver /SaveInf=\"" + answers + L"\"", {}, user.Poller());
    ASSERT_TRUE(interactive.result.ExitedWith(kExitInstalled)) << interactive.Describe(user.Describe());
    const std::string saved = e2e::ReadFileText(answers);
    for (const char* line : {"\r\nSetupType=Custom\r\n", "\r\nPortable=no\r\n", "\r\nDir=C:\\Sonora Elsewhere\\\r\n",
                             "\r\nShortcuts=StartMenu\r\n", "\r\nNoDriver=yes\r\n", "\r\nRunAtEnd=yes\r\n"})
        EXPECT_NE(saved.find(line), std::string::npos) << line << saved;
    EXPECT_EQ(e2e::CountOf(saved.substr(saved.find("\r\nFileTypes=")), ","), 1) << saved;
    const auto traces = [] {
        std::vector<std::wstring> found = e2e::ReadTraces({L"GUID"});
        std::erase_if(found, [](const std::wstring& trace) { return trace.find(L"\\Install Record.txt ") != std::wstring::npos; });
        return found;
    };
    const std::vector<std::wstring> expected = traces();
    EXPECT_TRUE(e2e::PathExists(folder + L"Sonora.exe"));
    EXPECT_FALSE(e2e::PathExists(e2e::Expand(L"%USERPROFILE%\\Desktop\\Sonora.lnk")));
    ASSERT_TRUE(e2e::ResetToFreshMachine());

    const e2e::SetupRun replay = e2e::RunSetup({}, L"/Silent /SuppressMessages /LoadInf=\"" + answers + L"\"");
    ASSERT_TRUE(replay.result.ExitedWith(kExitInstalled)) << replay.Describe();
    EXPECT_TRUE(replay.Logged(L"(0 ignored)")) << replay.Describe();
    EXPECT_EQ(traces(), expected);
}

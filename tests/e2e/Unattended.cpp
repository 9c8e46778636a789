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
// What an install put on the machine, its installation record's GUID (new every time) masked.
// The install record is each run's own account of itself, checked by the install tests; here
// only what two runs put on the machine is compared.
std::vector<std::wstring> Traces()
{
    std::vector<std::wstring> found = e2e::ReadTraces({L"GUID"});
    std::erase_if(found, [](const std::wstring& trace) { return trace.find(L"\\Install Record.txt ") != std::wstring::npos; });
    return found;
}

using Unattended = e2e::FreshMachineTest;
}

TEST_F(Unattended, AnInstallWritesWhatASilentOneWrites)
{
    const std::wstring finish = e2e::MediaFolder() + L"Finish.txt";
    const e2e::SetupRun silent = e2e::RunSetup({}, L"/Silent");
    ASSERT_TRUE(silent.result.ExitedWith(kExitInstalled)) << silent.Describe();
    const std::vector<std::wstring> expected = Traces();
    const std::string expectedFinish = e2e::ReadFileText(finish);
    ASSERT_TRUE(e2e::ResetToFreshMachine());
    ::DeleteFileW(finish.c_str());

    const e2e::SetupRun unattended = e2e::RunUnseen();
    ASSERT_TRUE(unattended.result.ExitedWith(kExitInstalled)) << unattended.Describe();
    EXPECT_TRUE(unattended.Logged(L"Messages suppressed")) << unattended.Describe();
    EXPECT_FALSE(unattended.Logged(L"Box title:")) << unattended.Describe();
    EXPECT_EQ(Traces(), expected);
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
        e2e::FileTypesOn({VK_SPACE, VK_DOWN, VK_SPACE}),   // the first two rows
        e2e::ChooseOn(L"Create Shortcuts", L"Create a desktop shortcut"),
        e2e::NextOn(L"Install Complete"),
    });
    const e2e::SetupRun interactive = e2e::RunSetup({}, L"/NoDriver /SaveInf=\"" + answers + L"\"", {}, user.Poller());
    ASSERT_TRUE(interactive.result.ExitedWith(kExitInstalled)) << interactive.Describe(user.Describe());
    const std::string saved = e2e::ReadFileText(answers);
    for (const char* line : {"\r\nSetupType=Custom\r\n", "\r\nPortable=no\r\n", "\r\nDir=C:\\Sonora Elsewhere\\\r\n",
                             "\r\nShortcuts=StartMenu\r\n", "\r\nNoDriver=yes\r\n", "\r\nRunAtEnd=yes\r\n"})
        EXPECT_NE(saved.find(line), std::string::npos) << line << saved;
    EXPECT_EQ(e2e::CountOf(saved.substr(saved.find("\r\nFileTypes=")), ","), 1) << saved;
    const std::vector<std::wstring> expected = Traces();
    EXPECT_TRUE(e2e::PathExists(folder + L"Sonora.exe"));
    EXPECT_FALSE(e2e::PathExists(e2e::Expand(L"%USERPROFILE%\\Desktop\\Sonora.lnk")));
    ASSERT_TRUE(e2e::ResetToFreshMachine());

    const e2e::SetupRun replay = e2e::RunSetup({}, L"/Silent /SuppressMessages /LoadInf=\"" + answers + L"\"");
    ASSERT_TRUE(replay.result.ExitedWith(kExitInstalled)) << replay.Describe();
    EXPECT_TRUE(replay.Logged(L"(0 ignored)")) << replay.Describe();
    EXPECT_EQ(Traces(), expected);
}

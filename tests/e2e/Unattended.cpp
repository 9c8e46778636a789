// Unattended deployment, end to end: InstallWizard.exe /Silent /SuppressMessages as a
// deployment tool starts it on a machine where nobody is logged on. No window of the program
// may ever appear; what a box would have said is in the log, and the exit code tells it too.
#include "E2ESupport.h"

#include "install/InstallExitCode.h"

#include <gtest/gtest.h>

#include <windows.h>

#include <string>
#include <vector>

namespace
{
const std::wstring kUnattended = L"/Silent /SuppressMessages";

// Ends the run at the first window of the program that becomes visible (the driver lists it).
e2e::SetupRun RunUnseen(const std::wstring& arguments = kUnattended, const std::wstring& setupFolder = {})
{
    return e2e::RunSetup({.setupFolder = setupFolder, .commandLine = arguments, .timeoutMs = 30000,
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

TEST_F(Unattended, ALockedCoreFileEndsWith1603WithoutRetrying)
{
    const std::wstring launcher = e2e::DefaultDestination() + L"Sonora.exe";
    ASSERT_TRUE(e2e::WriteFileBytes(launcher, "running"));
    const e2e::HeldFileLock lock(launcher);
    ASSERT_TRUE(lock.IsHeld()) << e2e::Utf8(lock.Error());
    const e2e::SetupRun run = RunUnseen();
    EXPECT_TRUE(run.result.ExitedWith(kExitFatalError)) << run.Describe();
    EXPECT_EQ(e2e::CountOf(e2e::Utf8(run.log), e2e::Utf8(BoxLine(L"title: Failure Copying System File"))), 1)
        << run.Describe();
    EXPECT_TRUE(run.Logged(BoxLine(L"text: Please ensure that the file '" + launcher + L"' is not in use.")))
        << run.Describe();
    EXPECT_TRUE(run.Logged(L"answered \"Cancel\"")) << run.Describe();
}

TEST_F(Unattended, ADestinationThatNeedsAPersonEndsWith1603InsteadOfWaiting)
{
    const std::wstring setup = e2e::CopySampleSetup(L"UnattendedRootDestination");
    ASSERT_FALSE(setup.empty());
    ASSERT_TRUE(e2e::SetDescriptionText(setup, "Product/InstallToPath", "C:\\"));
    const e2e::SetupRun run = RunUnseen(kUnattended, setup);
    EXPECT_TRUE(run.result.ExitedWith(kExitFatalError)) << run.Describe();
    // Nobody could correct it: the refusal goes to the log instead of a box.
    EXPECT_TRUE(run.Logged(L"Invalid Destination Folder: Sonora can not be installed to the root of a drive.")) << run.Describe();
    EXPECT_TRUE(run.Logged(L"needs a person")) << run.Describe();
    EXPECT_TRUE(e2e::ListTree(e2e::DefaultDestination()).empty());
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

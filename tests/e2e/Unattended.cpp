// Unattended deployment, end to end: InstallWizard.exe /Silent /SuppressMessages as a
// deployment tool starts it on a machine where nobody is logged on. No window of the program
// may ever appear; what a box would have said is in the log, and the exit code tells it too.
#include "E2ESupport.h"
#include "FreshMachineTest.h"

#include "install/InstallExitCode.h"

#include <gtest/gtest.h>

#include <windows.h>

#include <optional>
#include <string>
#include <vector>

namespace
{
const std::wstring kUnattended = L"/Silent /SuppressMessages";

// Ends the run at the first window of the program that becomes visible (the driver lists it).
e2e::SetupRun RunUnseen(const std::wstring& arguments = kUnattended, const std::wstring& setupFolder = {})
{
    e2e::RunOptions options;
    options.setupFolder = setupFolder;
    options.commandLine = arguments;
    options.timeoutMs = 30000;
    options.roundMs = 20;
    options.onPoll = [](DWORD processId) { return e2e::ListTopLevelWindows(processId, true).empty(); };
    return e2e::RunSetup(options);
}

// An error-level line of the message-box routine: what the user would have read.
std::wstring BoxLine(const std::wstring& what) { return L"L1 HVMessageBox::Show: Box " + what; }

using Unattended = e2e::FreshMachineTest;
}

// What would have needed a person ends the run with its exit code, its box's words in the log.
TEST_F(Unattended, WhatNeedsAPersonEndsTheRunWithItsCode)
{
    const std::wstring launcher = e2e::DefaultDestination() + L"Sonora.exe";
    const std::wstring rootDestination = e2e::CopySampleSetup(L"UnattendedRootDestination");
    ASSERT_TRUE(e2e::SetDescriptionText(rootDestination, "Product/InstallToPath", "C:\\"));
    const struct
    {
        const char* name;
        const wchar_t* windows;  // as "winecfg /v" names it; none: as the prefix is
        bool lockedLauncher;
        std::wstring setup;
        DWORD exitCode;
        std::vector<std::wstring> logged;  // each once
    } rows[] = {
        {"unsupported Windows", L"nt40", false, {}, kExitNotSupported,
         {BoxLine(L"title: Operating System Not Supported"),
          BoxLine(L"text: The Sonora Install Wizard can not run on this version of Microsoft Windows. "
                  L"Sonora requires Windows 2000 or later.  Setup will now abort.")}},
        {"a locked core file, not retried", nullptr, true, {}, kExitFatalError,
         {BoxLine(L"title: Failure Copying System File"),
          BoxLine(L"text: Please ensure that the file '" + launcher + L"' is not in use."), L"answered \"Cancel\""}},
        // Nobody could correct it: the refusal goes to the log instead of a box.
        {"a destination to correct", nullptr, false, rootDestination, kExitFatalError,
         {L"Invalid Destination Folder: Sonora can not be installed to the root of a drive.", L"needs a person"}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        Reset();
        std::optional<e2e::ScopedRegString> windows;
        if (row.windows)
            windows.emplace(HKEY_CURRENT_USER, L"Software\\Wine", L"Version", row.windows);
        std::optional<e2e::HeldFileLock> lock;
        if (row.lockedLauncher) {
            ASSERT_TRUE(e2e::WriteFileBytes(launcher, "running"));
            lock.emplace(launcher);
            ASSERT_TRUE(lock->IsHeld()) << e2e::Utf8(lock->Error());
        }
        const e2e::SetupRun run = RunUnseen(kUnattended, row.setup);
        EXPECT_TRUE(run.result.ExitedWith(row.exitCode)) << run.Describe();
        for (const std::wstring& line : row.logged)
            EXPECT_EQ(e2e::CountOf(e2e::Utf8(run.log), e2e::Utf8(line)), 1) << e2e::Utf8(line) << run.Describe();
        if (!row.setup.empty()) {
            EXPECT_TRUE(e2e::ListTree(e2e::DefaultDestination()).empty());
        }
    }
}

TEST_F(Unattended, AnInstallWritesWhatASilentOneWrites)
{
    // The installation record's GUID is made new by every first install.
    const std::vector<std::wstring> madeNew = {L"GUID"};
    const std::wstring finish = e2e::MediaFolder() + L"Finish.txt";
    e2e::RunOptions options;
    options.commandLine = L"/Silent";
    const e2e::SetupRun silent = e2e::RunSetup(options);
    ASSERT_TRUE(silent.result.ExitedWith(kExitInstalled)) << silent.Describe();
    const std::vector<std::wstring> expected = e2e::ReadTraces(madeNew);
    const std::string expectedFinish = e2e::ReadFileText(finish);
    ASSERT_TRUE(e2e::ResetToFreshMachine());
    ::DeleteFileW(finish.c_str());

    const e2e::SetupRun unattended = RunUnseen();
    ASSERT_TRUE(unattended.result.ExitedWith(kExitInstalled)) << unattended.Describe();
    EXPECT_TRUE(unattended.Logged(L"Messages suppressed")) << unattended.Describe();
    EXPECT_FALSE(unattended.Logged(L"Box title:")) << unattended.Describe();
    EXPECT_EQ(e2e::ReadTraces(madeNew), expected);
    // Neither starts the program afterwards.
    EXPECT_TRUE(expectedFinish.empty());
    EXPECT_EQ(e2e::ReadFileText(finish), expectedFinish);
}

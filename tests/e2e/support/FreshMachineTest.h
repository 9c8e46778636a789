#pragma once

// The fixture of the end-to-end tests that run the installer: each test starts and ends on a
// machine where the product was never installed, with no hand-over file in the sample setup
// folder and none of the installer's test switches set. A test that loops over cases calls
// Reset() between them.

#include "FreshMachine.h"
#include "TestPaths.h"

#include <gtest/gtest.h>

#include <windows.h>

#include <string>
#include <vector>

namespace e2e
{
class FreshMachineTest : public ::testing::Test
{
protected:
    void SetUp() override { Reset(); }
    void TearDown() override
    {
        ClearSwitches();
        ResetToFreshMachine();
        ::DeleteFileW((MediaFolder() + L"Finish.txt").c_str());
    }

    // Back to a fresh machine in the middle of a test; fails the test when something stays.
    static void Reset()
    {
        std::vector<std::wstring> problems;
        ASSERT_TRUE(ResetToFreshMachine(&problems)) << Utf8(problems.empty() ? L"" : problems.front());
        ::DeleteFileW((MediaFolder() + L"Finish.txt").c_str());
    }
    // The environment switches the installer reads only under test; a test sets what it needs.
    static void ClearSwitches()
    {
        for (const wchar_t* name : {L"IW_TEST_ONLY_TIMER_DIVISOR", L"IW_TEST_ONLY_NO_EXIT_WINDOWS",
                                    L"IW_TEST_ONLY_NO_RESTART_REPLACE", L"IW_TEST_ONLY_NO_NETWORK",
                                    L"IW_TEST_ONLY_DOWNLOAD_TIMEOUT_MS", L"IW_TEST_ONLY_NO_SSE2"})
            ::SetEnvironmentVariableW(name, nullptr);
    }
};
}

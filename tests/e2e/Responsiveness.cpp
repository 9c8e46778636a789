// The install runs on the wizard's own thread; it must keep answering its window all through a
// large copy, or Windows would mark it "Not responding" and users would end it.
#include "E2ESupport.h"

#include <gtest/gtest.h>

#include <windows.h>

namespace
{
// What the hung-window check of Windows waits before it gives up on a window.
constexpr UINT kHungMs = 200;

enum class CopyPhase { Before, During, After };

CopyPhase PhaseOf(const std::string& log)
{
    const char* const kCopy = "CInstallSteps::CopyProgramFiles: ";
    if (log.find(std::string(kCopy) + "Finish") != std::string::npos)
        return CopyPhase::After;
    return log.find(std::string(kCopy) + "Start") != std::string::npos ? CopyPhase::During : CopyPhase::Before;
}

TEST(Responsiveness, TheWizardAnswersWithin200MsAllThroughALargeCopy)
{
    std::vector<std::wstring> problems;
    ASSERT_TRUE(e2e::ResetToFreshMachine(&problems)) << e2e::Utf8(problems.front());
    const std::wstring work = e2e::ScratchFolder(L"ResponsivenessInstalled");
    const std::wstring setup = e2e::CopySampleSetupInstallingInto(L"Responsiveness", work + L"Sonora\\", 1500);
    ASSERT_FALSE(setup.empty() || work.empty());
    ASSERT_TRUE(e2e::WriteGeneratedTree(setup + L"Listenwell\\", e2e::PlanTree({.files = 1500, .totalBytes = 60 << 20}), 1));
    const std::wstring log = work + L"Install.log";

    int probes = 0;
    std::vector<std::string> timeouts;
    HWND wizard = nullptr;
    e2e::RunOptions options;
    options.setupFolder = setup;
    options.commandLine = L"/Silent /Log=" + log;
    options.onPoll = [&](DWORD pid) {
        if (!wizard) {
            e2e::WizardView view;
            e2e::FindWizard(pid, view);
            wizard = view.wizard;
        }
        if (!wizard || PhaseOf(e2e::ReadFileText(log)) != CopyPhase::During)
            return true;
        DWORD_PTR answer = 0;
        const ULONGLONG sent = GetTickCount64();
        if (!SendMessageTimeoutW(wizard, WM_NULL, 0, 0, SMTO_ABORTIFHUNG, kHungMs, &answer))
            timeouts.push_back("probe " + std::to_string(probes) + ": no answer after " +
                               std::to_string(GetTickCount64() - sent) + " ms (error " +
                               std::to_string(GetLastError()) + ")");
        ++probes;
        return true;
    };
    const e2e::RunResult run = e2e::ProgramDriver(options).Run();

    ASSERT_TRUE(run.ExitedWith(0)) << run.Describe();
    EXPECT_EQ(PhaseOf(e2e::ReadFileText(log)), CopyPhase::After);
    EXPECT_TRUE(timeouts.empty()) << ::testing::PrintToString(timeouts);
    // About one probe per 50 ms round: enough of them must have fallen inside the copy for the
    // test to mean something.
    EXPECT_GE(probes, 10);
}
}

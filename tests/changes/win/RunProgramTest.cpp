#include "changes/win/RunProgram.h"

#include "foundation/HVLog.h"
#include "foundation/IHVLogger.h"

#include "FolderTree.h"
#include "RecordingLogger.h"
#include "TestPaths.h"

#include <gtest/gtest.h>

#include <string>

namespace
{
// The lines of RunProgram, each ending in a newline, with the numbers that vary from run to
// run (times) blanked.
std::string RunProgramText(const RecordingLogger& log)
{
    std::string text;
    for (std::string line : log.Texts()) {
        if (line.rfind("RunProgram: ", 0) != 0)
            continue;
        const size_t ms = line.find(" ms)");
        if (ms != std::string::npos) {
            size_t open = line.rfind('(', ms);
            line.replace(open + 1, ms - open - 1, "N");
        }
        text += line + "\n";
    }
    return text;
}

HVString BinFolder() { return HVString(e2e::TestProgramFolder().c_str()); }
HVString ExitLater() { return BinFolder() + u"ExitLater.exe"; }
}

TEST(RunProgram, WaitsAndReturnsTheExitCodeWithThePartsLogLines)
{
    // Directly and through the shell: the same lines, the shell's own one after the first.
    for (bool useShell : {false, true}) {
        RecordingLogger log;
        int exitCode = 12345;
        const HVString path = ExitLater();
        ASSERT_TRUE(RunProgram(path, u"7 50", SW_HIDE, true, false, &exitCode, 0, useShell));
        EXPECT_EQ(exitCode, 7);
        EXPECT_EQ(RunProgramText(log), "RunProgram: Filename: " + path.ToUtf8() + " / Parameters: 7 50\n" +
                                           (useShell ? "RunProgram: Performing ShellExecute...\n" : "") +
                                           "RunProgram: Running process...\nRunProgram: Waiting for completion\n"
                                           "RunProgram: Start\nRunProgram: Done waiting\nRunProgram: Finished\n"
                                           "RunProgram: Finish (result: 7) (N ms)\n");
    }
}

TEST(RunProgram, ExitCodesAcrossTheRangeAndTimeOutsThatMeanNoLimit)
{
    // The last two run longer than one 500 ms slice, so a zero or negative time-out taken as
    // "already over" would show.
    const struct { const char16_t* parameters; bool pump; int timeoutMs; int exitCode; } rows[] = {
        {u"0 0", true, 0, 0},     {u"1 0", true, 0, 1},     {u"3010 0", true, 0, 3010}, {u"-1 0", true, 0, -1},
        {u"255 0", true, 0, 255}, {u"4 1200", false, 0, 4}, {u"5 700", false, -5, 5}};
    for (const auto& row : rows) {
        int exitCode = 999;
        ASSERT_TRUE(RunProgram(ExitLater(), row.parameters, SW_HIDE, true, row.pump, &exitCode, row.timeoutMs))
            << row.exitCode;
        EXPECT_EQ(exitCode, row.exitCode);
    }
    // Without a place for the exit code the finish line names no result.
    RecordingLogger log;
    ASSERT_TRUE(RunProgram(ExitLater(), u"3 0", SW_HIDE, true, false));
    const std::string text = RunProgramText(log);
    EXPECT_TRUE(text.ends_with("\nRunProgram: Finish (N ms)\n")) << text;
}

// The program's path has blanks: it is quoted, and the parameters arrive as given.
TEST(RunProgram, WithoutWaitingItReturnsAtOnceAndTheProgramRunsFromAQuotedPath)
{
    RecordingLogger log;
    const HVString folder = HVString(e2e::ScratchFolder(L"Run Program Blanks").c_str());
    const HVString copy = folder + u"Exit Later.exe";
    ASSERT_TRUE(::CopyFileW(ExitLater().w(), copy.w(), FALSE));
    const HVString marker = folder + u"marker.txt";
    int exitCode = 0;
    ASSERT_TRUE(RunProgram(copy, HVString::Format(u"9 0 \"%s\"", marker), SW_HIDE, false, false, &exitCode));
    EXPECT_EQ(exitCode, -1);
    const std::string text = RunProgramText(log);
    EXPECT_EQ(text.find("Waiting for completion"), std::string::npos) << text;
    for (int i = 0; i < 500 && ::GetFileAttributesW(marker.w()) == INVALID_FILE_ATTRIBUTES; ++i)
        ::Sleep(10);
    ::Sleep(100);
    const std::string line = e2e::ReadFileText(marker.w());
    EXPECT_NE(line.find("\"" + copy.ToUtf8() + "\" 9 0"), std::string::npos) << line;
}

// A program that can't start, or that runs forever until the time-out or a cancel ends it:
// no exit code, and the log line that says why.
TEST(RunProgram, AMissingProgramTimeOutOrCancelGivesNoExitCode)
{
    const HANDLE cancel = ::CreateEventW(nullptr, TRUE, TRUE, nullptr);
    const struct { HVString program; bool pump; int timeoutMs; bool shell; HANDLE cancel; const char *logged, *notLogged; } rows[] = {
        {BinFolder() + u"NoSuchProgram.exe", false, 0, false, nullptr, "RunProgram: Failed to start (error 2)\n", "Running process"},
        {BinFolder() + u"NoSuchProgram.exe", false, 0, true, nullptr, "RunProgram: Failed to start (error 2)\n", "Running process"},
        {ExitLater(), true, 300, false, nullptr, "RunProgram: Timeout\n", "Done waiting"},
        {ExitLater(), false, 0, false, cancel, "RunProgram: Cancel\n", "Done waiting"},
    };
    for (const auto& row : rows) {
        RecordingLogger log;
        int exitCode = 0;
        EXPECT_FALSE(RunProgram(row.program, u"0 forever", SW_HIDE, true, row.pump, &exitCode, row.timeoutMs, row.shell, row.cancel));
        EXPECT_EQ(exitCode, -1);
        const std::string text = RunProgramText(log);
        EXPECT_NE(text.find(row.logged), std::string::npos) << text;
        EXPECT_EQ(text.find(row.notLogged), std::string::npos) << text;
        EXPECT_EQ(text.find("Performing ShellExecute") != std::string::npos, row.shell) << text;
    }
    ::CloseHandle(cancel);
}

TEST(RunProgram, PumpsTheCallersMessagesWhileWaitingOnlyWhenAsked)
{
    // A timer of this thread fires only if its messages are dispatched during the wait.
    static int ticks = 0;
    for (const bool pump : {true, false}) {
        ticks = 0;
        int exitCode = 0;
        const UINT_PTR timer = ::SetTimer(nullptr, 0, 20, [](HWND, UINT, UINT_PTR, DWORD) { ++ticks; });
        ASSERT_TRUE(RunProgram(ExitLater(), u"0 600", SW_HIDE, true, pump, &exitCode));
        ::KillTimer(nullptr, timer);
        EXPECT_EQ(ticks > 0, pump);
    }
    MSG msg;
    while (::PeekMessageW(&msg, nullptr, 0, 0, PM_REMOVE)) {
    }
}

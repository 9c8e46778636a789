// A program that dies on purpose (CrashOnPurpose.exe) with the crash handler installed: the
// log lines, the crash-info block as HVCrashHandler.exe reads it from outside, and one
// handler program for two threads crashing at once. And the wizard itself, dying inside its
// own message loop: the report names the message it was dispatching.
#include "CrashRun.h"
#include "E2ESupport.h"

#include "foundation/win/HVCrashHandler.h"

#include <gtest/gtest.h>

#include <string>

// Each way of dying reaches the handler program once, with a block it can read from outside.
TEST(CrashHandler, ACrashIsHandedToOneHandlerProgram)
{
    const struct
    {
        const wchar_t* mode;
        bool exception;     // a pure virtual call raises none: a record of zeros and a captured context
        int filterReturns;  // the filter the system calls lets the system's own handling follow
    } rows[] = {{L"access", true, 1}, {L"purevirtual", false, 0}, {L"twothreads", true, 2}};
    for (const auto& row : rows) {
        SCOPED_TRACE(e2e::Utf8(row.mode));
        const e2e::CrashRun crash = e2e::RunCrashOnPurpose(row.mode);
        ASSERT_NE(crash.processId, 0u);
        EXPECT_EQ(e2e::CountOf(crash.log, "L1 TopLevelExceptionFilter: Unhandled exception -- program crashing"), 1)
            << crash.log;
        EXPECT_EQ(e2e::CountOf(crash.log, "TopLevelExceptionFilter: Message: 0, wParam: 0, lParam: 0"), 1) << crash.log;
        EXPECT_EQ(e2e::CountOf(crash.log, "MCC:"), 0) << crash.log;
        // Of two threads, both went through the filter and one of them returned at once.
        EXPECT_EQ(e2e::CountOf(crash.log, "Filter returned 0"), row.filterReturns) << crash.log;

        auto fields = e2e::CrashReportFields(crash.report);
        ASSERT_EQ(e2e::CountOf(crash.report, "Block: "), 1) << crash.report;
        EXPECT_EQ(fields["Block"], "HVCrashInfo" + std::to_string(crash.processId));
        EXPECT_EQ(fields["ProcessId"], std::to_string(crash.processId));
        EXPECT_NE(fields["ThreadId"], "0");
        EXPECT_NE(fields["ExceptionPointers"], "0x0");
        EXPECT_EQ(fields["ExceptionCode"], row.exception ? "0xc0000005" : "0x00000000") << crash.report;
        EXPECT_NE(fields["ExceptionAddress"], "0x0") << crash.report;
        EXPECT_EQ(fields["ExceptionAddress"] == fields["InstructionPointer"], row.exception) << crash.report;
        EXPECT_NE(fields["InstructionPointer"], "0x0");
        EXPECT_NE(fields["InstructionPointer"], "") << crash.report;
        EXPECT_EQ(fields.count("Error"), 0u) << crash.report;
    }
}

TEST(CrashHandler, ACrashInTheWizardsLoopNamesTheCommandMessage)
{
    ASSERT_TRUE(e2e::ResetToFreshMachine());
    // The wizard dies on the command message. Wine's debugger then ends it without its crash
    // window, which nobody would close.
    ::SetEnvironmentVariableW(L"IW_TEST_ONLY_CRASH_ON_COMMAND", L"1");
    const UINT oldMode = ::SetErrorMode(SEM_NOGPFAULTERRORBOX | SEM_FAILCRITICALERRORS);
    ASSERT_TRUE(e2e::RegSetDword(HKEY_CURRENT_USER, L"Software\\Wine\\WineDbg", L"ShowCrashDialog", 0));
    const std::wstring logPath = e2e::ScratchFolder(L"CrashHandler-wizard") + L"setup.log";
    ULONG_PTR pairAddress = 0;
    const auto postCommand = [&pairAddress](DWORD processId) {
        e2e::WizardView view;
        if (pairAddress || !e2e::FindWizard(processId, view))
            return true;
        // The (command, parameter) pair the message points to lives in the wizard's memory.
        const int pair[2] = {7, 42};
        HVHandle process(::OpenProcess(PROCESS_VM_OPERATION | PROCESS_VM_WRITE, FALSE, processId));
        void* remote = process ? ::VirtualAllocEx(process.Get(), nullptr, sizeof pair, MEM_COMMIT, PAGE_READWRITE) : nullptr;
        if (!remote || !::WriteProcessMemory(process.Get(), remote, pair, sizeof pair, nullptr))
            return false;
        pairAddress = reinterpret_cast<ULONG_PTR>(remote);
        return ::PostMessageW(view.wizard, HVCrashHandler::kCommandMessage, pairAddress, 0) != FALSE;
    };
    const e2e::RunResult run =
        e2e::ProgramDriver({.commandLine = L"/Log=\"" + logPath + L"\"", .onPoll = postCommand}).Run();
    ::SetErrorMode(oldMode);
    ::SetEnvironmentVariableW(L"IW_TEST_ONLY_CRASH_ON_COMMAND", nullptr);
    e2e::RegDeleteKeyTree(HKEY_CURRENT_USER, L"Software\\Wine\\WineDbg");
    const std::string log = e2e::ReadFileText(logPath);
    const std::string report = e2e::TakeCrashReport(e2e::MediaFolder(), run.processId);
    e2e::ResetToFreshMachine();

    ASSERT_TRUE(run.Exited()) << run.Describe();
    EXPECT_NE(run.exitCode, 0u);
    EXPECT_EQ(e2e::CountOf(log, "TopLevelExceptionFilter: Message: 33769, wParam: " + std::to_string(pairAddress) + ", lParam: 0"), 1)
        << log;
    EXPECT_EQ(e2e::CountOf(log, "TopLevelExceptionFilter: MCC: 7, Param: 42"), 1) << log;
    EXPECT_EQ(e2e::CrashReportFields(report)["ProcessId"], std::to_string(run.processId)) << report;
    EXPECT_EQ(e2e::CrashReportFields(report)["ExceptionCode"], "0xc0000005") << report;
}

TEST(CrashHandler, WithoutALoggerNothingIsStarted)
{
    const e2e::CrashRun crash = e2e::RunCrashOnPurpose(L"nologger");
    // The process went through the installed filter (which ends it with 3) and no handler ran.
    EXPECT_EQ(crash.exitCode, 3u);
    EXPECT_EQ(crash.report, "");
}

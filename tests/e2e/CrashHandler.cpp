// A program that dies on purpose (CrashOnPurpose.exe) with the crash handler installed: the
// log lines, the crash-info block as HVCrashHandler.exe reads it from outside, and one
// handler program for two threads crashing at once. And the wizard itself, dying inside its
// own message loop: the report names the message it was dispatching.
#include "E2ESupport.h"

#include "foundation/win/HVCrashHandler.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <map>
#include <sstream>
#include <string>
#include <vector>

namespace
{
// "Name: value" lines of the handler's report.
std::map<std::string, std::string> Fields(const std::string& report)
{
    std::map<std::string, std::string> fields;
    std::istringstream in(report);
    for (std::string line; std::getline(in, line);)
    {
        if (!line.empty() && line.back() == '\r')
            line.pop_back();
        if (const size_t colon = line.find(": "); colon != std::string::npos)
            fields[line.substr(0, colon)] = line.substr(colon + 2);
    }
    return fields;
}

struct Crash
{
    DWORD processId = 0;
    DWORD exitCode = 0;
    std::string log;
    std::string report;
};

// The handler program's report beside it, removed once read.
std::string TakeReport(const std::wstring& handlerFolder, DWORD processId)
{
    const std::wstring path = handlerFolder + L"HVCrashInfo" + std::to_wstring(processId) + L".txt";
    std::string report = e2e::ReadFileText(path);
    ::DeleteFileW(path.c_str());
    return report;
}

Crash RunCrash(const std::wstring& mode)
{
    const std::wstring logPath = e2e::ScratchFolder(L"CrashHandler-" + mode) + L"crash.log";
    const e2e::RunResult run =
        e2e::ProgramDriver({.program = e2e::ToolPath(L"CrashOnPurpose.exe"), .commandLine = mode + L" \"" + logPath + L"\""}).Run();
    return {run.processId, run.exitCode, e2e::ReadFileText(logPath), TakeReport(e2e::TestProgramFolder(), run.processId)};
}
}

// Each way of dying reaches the handler program once, with a block it can read from outside.
TEST(CrashHandler, ACrashIsHandedToOneHandlerProgram)
{
    const struct
    {
        const wchar_t* mode;
        bool exception;     // a pure virtual call raises none: a record of zeros and a captured context
        int filterReturns;  // the filter the system calls lets the system's own handling follow
    } rows[] = {{L"access", true, 1}, {L"purevirtual", false, 0}, {L"twothreads", true, 2}};
    for (const auto& row : rows)
    {
        SCOPED_TRACE(e2e::Utf8(row.mode));
        const Crash crash = RunCrash(row.mode);
        ASSERT_NE(crash.processId, 0u);
        EXPECT_EQ(e2e::CountOf(crash.log, "L1 TopLevelExceptionFilter: Unhandled exception -- program crashing"), 1)
            << crash.log;
        EXPECT_EQ(e2e::CountOf(crash.log, "TopLevelExceptionFilter: Message: 0, wParam: 0, lParam: 0"), 1) << crash.log;
        EXPECT_EQ(e2e::CountOf(crash.log, "MCC:"), 0) << crash.log;
        // Of two threads, both went through the filter and one of them returned at once.
        EXPECT_EQ(e2e::CountOf(crash.log, "Filter returned 0"), row.filterReturns) << crash.log;

        auto fields = Fields(crash.report);
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
    const std::string report = TakeReport(e2e::MediaFolder(), run.processId);
    e2e::ResetToFreshMachine();

    ASSERT_TRUE(run.Exited()) << run.Describe();
    EXPECT_NE(run.exitCode, 0u);
    EXPECT_EQ(e2e::CountOf(log, "TopLevelExceptionFilter: Message: 33769, wParam: " + std::to_string(pairAddress) + ", lParam: 0"), 1)
        << log;
    EXPECT_EQ(e2e::CountOf(log, "TopLevelExceptionFilter: MCC: 7, Param: 42"), 1) << log;
    EXPECT_EQ(Fields(report)["ProcessId"], std::to_string(run.processId)) << report;
    EXPECT_EQ(Fields(report)["ExceptionCode"], "0xc0000005") << report;
}

TEST(CrashHandler, WithoutALoggerNothingIsStarted)
{
    const Crash crash = RunCrash(L"nologger");
    // The process went through the installed filter (which ends it with 3) and no handler ran.
    EXPECT_EQ(crash.exitCode, 3u);
    EXPECT_EQ(crash.report, "");
}

// A program that dies on purpose (CrashOnPurpose.exe) with the crash handler installed: the
// log lines, the crash-info block as HVCrashHandler.exe reads it from outside, and one
// handler program for two threads crashing at once.
#include "E2ESupport.h"

#include "FolderTree.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <map>
#include <string>
#include <vector>

namespace
{
int Count(const std::string& text, const std::string& what)
{
    int count = 0;
    for (size_t at = text.find(what); at != std::string::npos; at = text.find(what, at + 1))
        ++count;
    return count;
}

// "Name: value" lines of the handler's report.
std::map<std::string, std::string> Fields(const std::string& report)
{
    std::map<std::string, std::string> fields;
    size_t start = 0;
    while (start < report.size())
    {
        size_t end = report.find('\n', start);
        if (end == std::string::npos)
            end = report.size();
        std::string line = report.substr(start, end - start);
        if (!line.empty() && line.back() == '\r')
            line.pop_back();
        const size_t colon = line.find(": ");
        if (colon != std::string::npos)
            fields[line.substr(0, colon)] = line.substr(colon + 2);
        start = end + 1;
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

Crash RunCrash(const std::wstring& mode)
{
    Crash crash;
    const std::wstring folder = e2e::ScratchFolder(L"CrashHandler-" + mode);
    const std::wstring logPath = folder + L"crash.log";
    std::wstring commandLine = L"\"" + e2e::ToolPath(L"CrashOnPurpose.exe") + L"\" " + mode + L" \"" + logPath + L"\"";
    STARTUPINFOW startup = {};
        startup.cb = sizeof(startup);
    PROCESS_INFORMATION process = {};
    if (!::CreateProcessW(nullptr, commandLine.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup,
                          &process))
        return crash;
    crash.processId = process.dwProcessId;
    ::WaitForSingleObject(process.hProcess, 60000);
    ::GetExitCodeProcess(process.hProcess, &crash.exitCode);
    ::CloseHandle(process.hThread);
    ::CloseHandle(process.hProcess);
    crash.log = e2e::ReadFileText(logPath);
    const std::wstring report = e2e::TestProgramFolder() + L"HVCrashInfo" + std::to_wstring(crash.processId) + L".txt";
    crash.report = e2e::ReadFileText(report);
    ::DeleteFileW(report.c_str());
    return crash;
}
}

TEST(CrashHandler, AnAccessViolationIsHandedToTheHandlerProgram)
{
    const Crash crash = RunCrash(L"access");
    ASSERT_NE(crash.processId, 0u);
    EXPECT_EQ(Count(crash.log, "L1 TopLevelExceptionFilter: Unhandled exception -- program crashing"), 1) << crash.log;
    EXPECT_EQ(Count(crash.log, "TopLevelExceptionFilter: Message: 0, wParam: 0, lParam: 0"), 1) << crash.log;
    EXPECT_EQ(Count(crash.log, "MCC:"), 0) << crash.log;
    // The filter the system calls lets the system's own handling follow.
    EXPECT_EQ(Count(crash.log, "Filter returned 0"), 1) << crash.log;

    auto fields = Fields(crash.report);
    ASSERT_EQ(Count(crash.report, "Block: "), 1) << crash.report;
    EXPECT_EQ(fields["Block"], "HVCrashInfo" + std::to_string(crash.processId));
    EXPECT_EQ(fields["ProcessId"], std::to_string(crash.processId));
    EXPECT_NE(fields["ThreadId"], "0");
    EXPECT_NE(fields["ExceptionPointers"], "0x0");
    EXPECT_EQ(fields["ExceptionCode"], "0xc0000005") << crash.report;
    EXPECT_EQ(fields["ExceptionAddress"], fields["InstructionPointer"]) << crash.report;
    EXPECT_NE(fields["InstructionPointer"], "0x0");
    EXPECT_EQ(fields.count("Error"), 0u) << crash.report;
}

TEST(CrashHandler, ACrashDuringACommandMessageLogsTheCommand)
{
    const Crash crash = RunCrash(L"command");
    EXPECT_EQ(Count(crash.log, "TopLevelExceptionFilter: Message: 33769, wParam: "), 1) << crash.log;
    EXPECT_EQ(Count(crash.log, "TopLevelExceptionFilter: MCC: 7, Param: 42"), 1) << crash.log;
    EXPECT_EQ(Fields(crash.report)["ExceptionCode"], "0xc0000005") << crash.report;
}

TEST(CrashHandler, APureVirtualCallFillsTheBlockWithACapturedContext)
{
    const Crash crash = RunCrash(L"purevirtual");
    EXPECT_EQ(Count(crash.log, "Unhandled exception -- program crashing"), 1) << crash.log;
    auto fields = Fields(crash.report);
    EXPECT_EQ(fields["ProcessId"], std::to_string(crash.processId)) << crash.report;
    // No exception: a record of zeros, but a real context and a return address.
    EXPECT_EQ(fields["ExceptionCode"], "0x00000000") << crash.report;
    EXPECT_NE(fields["ExceptionAddress"], "0x0") << crash.report;
    EXPECT_NE(fields["InstructionPointer"], "0x0") << crash.report;
    EXPECT_NE(fields["InstructionPointer"], "") << crash.report;
}

TEST(CrashHandler, TwoThreadsCrashingAtOnceStartOneHandler)
{
    const Crash crash = RunCrash(L"twothreads");
    EXPECT_EQ(Count(crash.report, "Block: "), 1) << crash.report;
    EXPECT_EQ(Count(crash.log, "Unhandled exception -- program crashing"), 1) << crash.log;
    // Both threads went through the filter; one of them returned at once.
    EXPECT_EQ(Count(crash.log, "Filter returned 0"), 2) << crash.log;
    EXPECT_EQ(Fields(crash.report)["ExceptionCode"], "0xc0000005") << crash.report;
}

TEST(CrashHandler, WithoutALoggerNothingIsStarted)
{
    const Crash crash = RunCrash(L"nologger");
    EXPECT_NE(crash.processId, 0u);
    EXPECT_EQ(crash.report, "");
}

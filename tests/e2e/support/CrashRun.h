#pragma once

#include <windows.h>

#include <map>
#include <string>

namespace e2e
{
// A program that died on purpose with the crash handler installed, and what it left: its log
// and the crash handler program's report.
struct CrashRun
{
    DWORD processId = 0;
    DWORD exitCode = 0;
    std::string log;
    std::string report;
};

// CrashOnPurpose.exe run with `mode` ("access", "purevirtual", "twothreads", "nologger") and a
// log of its own; the report is the one beside the test programs' handler.
CrashRun RunCrashOnPurpose(const std::wstring& mode);
// The report the handler program in `handlerFolder` wrote for the process
// ("HVCrashInfo<process id>.txt"), removed once read: empty when there is none.
std::string TakeCrashReport(const std::wstring& handlerFolder, DWORD processId);
// The report's "Name: value" lines.
std::map<std::string, std::string> CrashReportFields(const std::string& report);
}

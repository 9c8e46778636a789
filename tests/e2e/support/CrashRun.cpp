#include "CrashRun.h"

#include "FolderTree.h"
#include "ProgramDriver.h"
#include "TestPaths.h"

#include <sstream>

namespace e2e
{
CrashRun RunCrashOnPurpose(const std::wstring& mode)
{
    const std::wstring logPath = ScratchFolder(L"CrashHandler-" + mode) + L"crash.log";
    const RunResult run =
        ProgramDriver({.program = ToolPath(L"CrashOnPurpose.exe"), .commandLine = mode + L" \"" + logPath + L"\""}).Run();
    return {run.processId, run.exitCode, ReadFileText(logPath), TakeCrashReport(TestProgramFolder(), run.processId)};
}

std::string TakeCrashReport(const std::wstring& handlerFolder, DWORD processId)
{
    const std::wstring path = handlerFolder + L"HVCrashInfo" + std::to_wstring(processId) + L".txt";
    std::string report = ReadFileText(path);
    ::DeleteFileW(path.c_str());
    return report;
}

std::map<std::string, std::string> CrashReportFields(const std::string& report)
{
    std::map<std::string, std::string> fields;
    std::istringstream in(report);
    for (std::string line; std::getline(in, line);) {
        if (!line.empty() && line.back() == '\r')
            line.pop_back();
        if (const size_t colon = line.find(": "); colon != std::string::npos)
            fields[line.substr(0, colon)] = line.substr(colon + 2);
    }
    return fields;
}
}

#include "UninstallRun.h"

#include "FreshMachine.h"
#include "TestPaths.h"
#include "TestRegistry.h"

#include <windows.h>

#include <algorithm>

namespace e2e
{
namespace
{
constexpr const wchar_t* kSharedDlls = L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\SharedDLLs";
}

SetupRun RunUninstaller(const std::wstring& installFolder, const std::wstring& arguments, std::vector<DialogRule> rules)
{
    static const std::wstring log = ScratchFolder(L"UninstallLog") + L"uninstall.log";
    ::DeleteFileW(log.c_str());
    RunOptions options;
    options.program = installFolder + L"HVMediaUninstall.exe";
    options.workingFolder = ScratchFolder(L"UninstallLog");
    options.commandLine = L"/Log=\"" + log + L"\" " + arguments;
    options.rules = std::move(rules);
    SetupRun run;
    run.result = ProgramDriver(std::move(options)).Run();
    if (run.result.ExitedWith(0) || run.result.ExitedWith(3010))
        for (int i = 0; i < 200 && ::GetFileAttributesW((installFolder + L"HVMediaUninstall.exe").c_str()) != INVALID_FILE_ATTRIBUTES; ++i)
            ::Sleep(50);
    run.log = ReadText(log);
    return run;
}

std::vector<std::wstring> MachineSnapshot()
{
    std::vector<std::wstring> lines = ReadTraces();
    // What the sample service writes beside itself when asked to stop is no file of the product's.
    std::erase_if(lines, [](const std::wstring& line) {
        for (const wchar_t* skipped : {L"PendingFileRenameOperations", L"\\HVService.stop.txt"})
            if (line.find(skipped) != line.npos)
                return true;
        return false;
    });
    for (const std::wstring& name : RegValueNames(HKEY_LOCAL_MACHINE, kSharedDlls))
        lines.push_back(L"SharedDLLs " + name + L" = " + std::to_wstring(RegDword(HKEY_LOCAL_MACHINE, kSharedDlls, name).value_or(0)));
    std::sort(lines.begin(), lines.end());
    return lines;
}
}

// Stand-in for a dependency's setup program. It appends one line to "Sample Dependency
// Setup.log" in the temporary folder: the path it was started from, a "|", and its
// arguments exactly as it got them, so tests see that it ran, from where, and with what.
#include "../SampleLog.h"

namespace
{
// The command line without the program's own name (quoted or not) and the blanks after it.
std::wstring Arguments(const wchar_t* commandLine)
{
    std::wstring line(commandLine);
    size_t at = 0;
    if (!line.empty() && line[0] == L'"')
        at = line.find(L'"', 1) == std::wstring::npos ? line.size() : line.find(L'"', 1) + 1;
    else
        at = line.find(L' ') == std::wstring::npos ? line.size() : line.find(L' ');
    while (at < line.size() && line[at] == L' ')
        ++at;
    return line.substr(at);
}
}

int wmain()
{
    wchar_t temporary[MAX_PATH + 1] = {};
    GetTempPathW(MAX_PATH + 1, temporary);
    const std::wstring self = sample::ModulePath(nullptr);
    return sample::WriteLine(std::wstring(temporary) + L"Sample Dependency Setup.log",
                             self + L"|" + Arguments(GetCommandLineW()))
               ? 0
               : 1;
}

// ListWindows.exe [/All] [/Kill <image.exe>]...
//
// Lists the top-level windows of the Wine prefix (or Windows session): class, title, owning
// process and image name, and for dialogs their static texts and buttons. The test wrapper
// runs it when a test hangs, so the log says which dialog the program was waiting on.
// /All includes hidden windows. /Kill ends every process of that image name afterwards.
#include "TestPaths.h"
#include "WindowInspector.h"

#include <windows.h>

#include <cstdio>
#include <string>
#include <vector>

int wmain(int argc, wchar_t** argv)
{
    bool all = false;
    std::vector<std::wstring> kill;
    for (int i = 1; i < argc; ++i)
    {
        if (_wcsicmp(argv[i], L"/All") == 0)
        {
            all = true;
        }
        else if (_wcsicmp(argv[i], L"/Kill") == 0 && i + 1 < argc)
        {
            kill.push_back(argv[++i]);
        }
        else
        {
            std::fprintf(stderr, "usage: ListWindows.exe [/All] [/Kill <image.exe>]...\n");
            return 2;
        }
    }

    const std::vector<e2e::WindowInfo> windows = e2e::ListTopLevelWindows(0, !all);
    std::printf("%zu %s window(s):\n", windows.size(), all ? "top-level" : "visible top-level");
    for (const e2e::WindowInfo& window : windows)
        std::printf("%s\n", e2e::Utf8(window.Describe()).c_str());

    if (!kill.empty())
    {
        const int ended = e2e::EndProcessesByImage(kill);
        std::printf("ended %d process(es)\n", ended);
    }
    std::fflush(stdout);
    return 0;
}

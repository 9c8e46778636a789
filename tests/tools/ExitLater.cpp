// ExitLater.exe <exit-code> <milliseconds | forever> [<marker-file>]
//
// A program for RunProgram's tests: writes its command line to the marker file (when one is
// named) so a test can see it was started with the right parameters, then ends with the given
// exit code after the given time, or never ("forever", bounded at 120 s so that a test that
// dies leaves nothing behind for long).
#include <windows.h>

#include <cstdio>
#include <cstdlib>
#include <cwchar>

int wmain(int argc, wchar_t** argv)
{
    if (argc < 3)
    {
        std::fwprintf(stderr, L"usage: ExitLater.exe <exit-code> <milliseconds|forever> [<marker-file>]\n");
        return 1;
    }
    if (argc >= 4)
    {
        if (FILE* marker = _wfopen(argv[3], L"w, ccs=UTF-8"))
        {
            std::fwprintf(marker, L"%ls", ::GetCommandLineW());
            std::fclose(marker);
        }
    }
    const bool forever = std::wcscmp(argv[2], L"forever") == 0;
    ::Sleep(forever ? 120 * 1000 : static_cast<DWORD>(std::wcstoul(argv[2], nullptr, 10)));
    return static_cast<int>(std::wcstol(argv[1], nullptr, 10));
}

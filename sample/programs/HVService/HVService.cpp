// Stand-in for the product's service program. The setup program stops it before replacing
// files ("/Stop"); this one notes that it was asked by writing "HVService.stop.txt" (its
// command line) beside itself. Without arguments it does nothing. It always exits 0.
#include "../SampleLog.h"

#include <shellapi.h>

int WINAPI wWinMain(HINSTANCE, HINSTANCE, PWSTR, int)
{
    int count = 0;
    LPWSTR* args = CommandLineToArgvW(GetCommandLineW(), &count);
    bool stop = false;
    for (int i = 1; args && i < count; ++i)
        stop = stop || lstrcmpiW(args[i], L"/Stop") == 0;
    LocalFree(args);
    if (stop)
        sample::WriteLine(sample::ModuleFolder() + L"HVService.stop.txt", GetCommandLineW(), false);
    return 0;
}

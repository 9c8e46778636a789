// Stand-in for the product's uninstaller, which the uninstall entry names. It appends its
// whole command line to "HVMediaUninstall.log" beside itself and exits 0, so tests can check
// how the uninstall entry starts it.
#include "../SampleLog.h"

int WINAPI wWinMain(HINSTANCE, HINSTANCE, PWSTR, int)
{
    sample::WriteLine(sample::ModuleFolder() + L"HVMediaUninstall.log", GetCommandLineW());
    return 0;
}

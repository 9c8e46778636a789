// Stand-in for the product's tool programs (the tag editor, the audio converter), which the
// Start Menu folder links to. It appends its command line to "<program>.log" beside itself
// and exits 0, so a test or a person trying a shortcut sees that it was started.
#include "../SampleLog.h"

int WINAPI wWinMain(HINSTANCE, HINSTANCE, PWSTR, int)
{
    wchar_t path[MAX_PATH] = {};
    GetModuleFileNameW(nullptr, path, MAX_PATH);
    sample::WriteLine(std::wstring(path) + L".log", GetCommandLineW());
    return 0;
}

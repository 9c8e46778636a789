#include "install/win/CUninstallApp.h"

#include <windows.h>

int WINAPI wWinMain(HINSTANCE, HINSTANCE, PWSTR, int)
{
    CUninstallApp app;
    return app.Run();
}

#include "install/win/CInstallApp.h"

#include <windows.h>

int WINAPI wWinMain(HINSTANCE, HINSTANCE, PWSTR, int)
{
    CInstallApp app;
    return app.Run();
}

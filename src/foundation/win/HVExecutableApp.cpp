#include "foundation/win/HVExecutableApp.h"

#include "foundation/HVLog.h"
#include "foundation/win/HVComInit.h"
#include "foundation/win/HVCrashHandler.h"

HVExecutableApp::HVExecutableApp()
{
    commandLine_ = ::GetCommandLineW();
}

bool HVExecutableApp::InitInstance()
{
    HVString path;
    for (DWORD size = MAX_PATH;; size *= 2)
    {
        const DWORD length = ::GetModuleFileNameW(nullptr, path.GetWBuffer(static_cast<int32_t>(size)), size);
        if (length == 0)
        {
            path.ReleaseBuffer(0);
            HVLog::Write(HVLog::kError, "HVExecutableApp::InitInstance", u"GetModuleFileName failed (error %d)",
                         ::GetLastError());
            return false;
        }
        if (length < size)
        {
            path.ReleaseBuffer(static_cast<int32_t>(length));
            break;
        }
        path.ReleaseBuffer(0);
    }
    modulePath_ = path;
    moduleFolder_ = path.Left(path.ReverseFind(u'\\') + 1);
    HVCrashHandler::Install(this);
    return true;
}

int HVExecutableApp::Run()
{
    const HVComInit com;
    if (!InitInstance())
    {
        ExitInstance();
        return exitCode_;
    }
    if (Startup())
    {
        MSG msg;
        while (::GetMessageW(&msg, nullptr, 0, 0) > 0)
            DispatchTracked(msg);
    }
    ExitInstance();
    return exitCode_;
}

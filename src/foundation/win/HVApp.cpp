#include "foundation/win/HVApp.h"

#include "foundation/HVLog.h"

namespace
{
HVApp* g_app = nullptr;
}

HVApp::HVApp() { g_app = this; }

HVApp::~HVApp()
{
    if (HVLog::GetLogger() == logger_)
        HVLog::SetLogger(nullptr);
    if (g_app == this)
        g_app = nullptr;
}

HVApp* HVApp::Get() { return g_app; }

void HVApp::SetLogger(IHVLogger* logger)
{
    logger_ = logger;
    HVLog::SetLogger(logger);
}

namespace
{
void DispatchPlain(const MSG& msg, const HVApp::OwnHandling& ownHandling)
{
    if (ownHandling && ownHandling(msg))
        return;
    ::TranslateMessage(&msg);
    ::DispatchMessageW(&msg);
}
}

MSG HVApp::GetCurrent() const
{
    MSG msg = {};
    msg.message = currentMessage_;
    msg.wParam = currentWParam_;
    msg.lParam = currentLParam_;
    return msg;
}

void HVApp::SetCurrent(const MSG& msg)
{
    currentMessage_ = msg.message;
    currentWParam_ = msg.wParam;
    currentLParam_ = msg.lParam;
}

void HVApp::DispatchTracked(const MSG& msg, const OwnHandling& ownHandling)
{
    const MSG outer = GetCurrent();
    SetCurrent(msg);
    DispatchPlain(msg, ownHandling);
    // Dispatching may pump nested loops (modal boxes): the outer message is current again.
    SetCurrent(outer);
}

void HVApp::Dispatch(const MSG& msg, const OwnHandling& ownHandling)
{
    if (g_app)
        g_app->DispatchTracked(msg, ownHandling);
    else
        DispatchPlain(msg, ownHandling);
}

bool HVApp::PumpWaitingMessages()
{
    MSG msg;
    while (::PeekMessageW(&msg, nullptr, 0, 0, PM_REMOVE))
    {
        if (msg.message == WM_QUIT)
        {
            ::PostQuitMessage(static_cast<int>(msg.wParam));
            return false;
        }
        Dispatch(msg);
    }
    return true;
}

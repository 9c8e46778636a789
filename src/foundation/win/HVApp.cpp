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

void HVApp::DispatchTracked(const MSG& msg)
{
    const UINT outerMessage = currentMessage_;
    const WPARAM outerWParam = currentWParam_;
    const LPARAM outerLParam = currentLParam_;
    currentMessage_ = msg.message;
    currentWParam_ = msg.wParam;
    currentLParam_ = msg.lParam;
    ::TranslateMessage(&msg);
    ::DispatchMessageW(&msg);
    // Dispatching may pump nested loops (modal boxes): the outer message is current again.
    currentMessage_ = outerMessage;
    currentWParam_ = outerWParam;
    currentLParam_ = outerLParam;
}

bool HVApp::PumpThreadMessages()
{
    if (HVApp* app = Get())
        return app->PumpWaitingMessages();
    MSG msg;
    while (::PeekMessageW(&msg, nullptr, 0, 0, PM_REMOVE))
    {
        if (msg.message == WM_QUIT)
        {
            ::PostQuitMessage(static_cast<int>(msg.wParam));
            return false;
        }
        ::TranslateMessage(&msg);
        ::DispatchMessageW(&msg);
    }
    return true;
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
        DispatchTracked(msg);
    }
    return true;
}

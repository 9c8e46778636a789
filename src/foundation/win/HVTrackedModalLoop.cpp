#include "foundation/win/HVTrackedModalLoop.h"

#include "foundation/win/HVApp.h"

HVTrackedModalLoop::HVTrackedModalLoop()
{
    if (HVApp* app = HVApp::Get())
        outer_ = app->GetCurrent();
    hook_ = ::SetWindowsHookExW(WH_MSGFILTER, &HVTrackedModalLoop::Filter, nullptr, ::GetCurrentThreadId());
}

HVTrackedModalLoop::~HVTrackedModalLoop()
{
    if (hook_)
        ::UnhookWindowsHookEx(hook_);
    if (HVApp* app = HVApp::Get())
        app->SetCurrent(outer_);
}

LRESULT CALLBACK HVTrackedModalLoop::Filter(int code, WPARAM wParam, LPARAM lParam)
{
    HVApp* app = HVApp::Get();
    if (code >= 0 && lParam && app)
        app->SetCurrent(*reinterpret_cast<const MSG*>(lParam));
    return ::CallNextHookEx(nullptr, code, wParam, lParam);
}

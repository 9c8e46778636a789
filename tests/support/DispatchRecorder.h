#pragma once

// A message-only window that, for each application message it gets (WM_APP and up), records
// the message the app says it is dispatching at that moment. WM_APP + 1 dispatches WM_APP + 2
// (wParam 5, lParam 6) inside itself through the app, as a modal box's loop would, and records
// again once that returns. Header-only; for the Windows test programs.
//
//   HVApp app;
//   DispatchRecorder recorder(app);
//   ::PostMessageW(recorder.Hwnd(), WM_APP, 11, 12);
//   app.PumpWaitingMessages();   // recorder.seen == {{WM_APP, 11, 12}}

#include "foundation/win/HVApp.h"
#include "foundation/win/HVUniqueResource.h"

#include <tuple>
#include <vector>

class DispatchRecorder
{
public:
    using Seen = std::tuple<UINT, WPARAM, LPARAM>;

    explicit DispatchRecorder(HVApp& app) : app_(app)
    {
        WNDCLASSW windowClass = {};
        windowClass.lpfnWndProc = Proc;
        windowClass.hInstance = ::GetModuleHandleW(nullptr);
        windowClass.lpszClassName = L"DispatchRecorder";
        ::RegisterClassW(&windowClass);
        window_ = HVWindow(::CreateWindowW(L"DispatchRecorder", L"", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr,
                                           windowClass.hInstance, nullptr));
        ::SetWindowLongPtrW(window_.Get(), GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
    }
    DispatchRecorder(const DispatchRecorder&) = delete;
    DispatchRecorder& operator=(const DispatchRecorder&) = delete;

    HWND Hwnd() const { return window_.Get(); }
    std::vector<Seen> seen;

private:
    static LRESULT CALLBACK Proc(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
    {
        auto* self = reinterpret_cast<DispatchRecorder*>(::GetWindowLongPtrW(window, GWLP_USERDATA));
        if (message < WM_APP || !self)
            return ::DefWindowProcW(window, message, wParam, lParam);
        self->Look();
        if (message == WM_APP + 1) {
            MSG inner = {window, WM_APP + 2, 5, 6, 0, {}};
            self->app_.DispatchTracked(inner);
            self->Look();
        }
        return 0;
    }
    void Look() { seen.emplace_back(app_.GetCurrentMessage(), app_.GetCurrentWParam(), app_.GetCurrentLParam()); }

    HVApp& app_;
    HVWindow window_;
};

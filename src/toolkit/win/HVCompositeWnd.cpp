#include "toolkit/win/HVCompositeWnd.h"

#include "foundation/HVLog.h"

#include <set>
#include <string>

HVCompositeWnd::~HVCompositeWnd()
{
    // The window must not call into this object while it is being torn down.
    if (hwnd_ && ::IsWindow(hwnd_))
        ::SetWindowLongPtrW(hwnd_, GWLP_USERDATA, 0);
    Destroy();
}

bool HVCompositeWnd::CreateComposite(const wchar_t* className, DWORD exStyle, DWORD style, const HVString& title,
                                     HWND parent, const RECT& rect, int id)
{
    static std::set<std::wstring> registered;
    HINSTANCE instance = ::GetModuleHandleW(nullptr);
    if (!registered.count(className)) {
        WNDCLASSEXW wc = {};
        wc.cbSize = sizeof wc;
        wc.style = CS_HREDRAW | CS_VREDRAW | CS_DBLCLKS;
        wc.lpfnWndProc = WindowProc;
        wc.hInstance = instance;
        wc.hCursor = ::LoadCursorW(nullptr, IDC_ARROW);
        wc.lpszClassName = className;
        if (!::RegisterClassExW(&wc) && ::GetLastError() != ERROR_CLASS_ALREADY_EXISTS) {
            HVLog::Write(HVLog::kError, "HVCompositeWnd::CreateComposite", u"RegisterClassExW failed (%d)",
                         static_cast<int>(::GetLastError()));
            return false;
        }
        registered.insert(className);
    }
    HWND hwnd = ::CreateWindowExW(exStyle, className, title.w(), style, rect.left, rect.top, rect.right - rect.left,
                                  rect.bottom - rect.top, parent,
                                  (style & WS_CHILD) ? reinterpret_cast<HMENU>(static_cast<INT_PTR>(id)) : nullptr,
                                  instance, this);
    if (!hwnd) {
        HVLog::Write(HVLog::kError, "HVCompositeWnd::CreateComposite", u"CreateWindowExW failed (%d)",
                     static_cast<int>(::GetLastError()));
        return false;
    }
    return true;
}

LRESULT HVCompositeWnd::OnMessage(UINT message, WPARAM wParam, LPARAM lParam)
{
    return DefaultMessage(message, wParam, lParam);
}

LRESULT HVCompositeWnd::DefaultMessage(UINT message, WPARAM wParam, LPARAM lParam)
{
    return ::DefWindowProcW(hwnd_, message, wParam, lParam);
}

LRESULT CALLBACK HVCompositeWnd::WindowProc(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam)
{
    if (message == WM_NCCREATE) {
        auto* create = reinterpret_cast<CREATESTRUCTW*>(lParam);
        auto* self = static_cast<HVCompositeWnd*>(create->lpCreateParams);
        self->hwnd_ = hwnd;
        ::SetWindowLongPtrW(hwnd, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(self));
    }
    auto* self = reinterpret_cast<HVCompositeWnd*>(::GetWindowLongPtrW(hwnd, GWLP_USERDATA));
    if (!self)
        return ::DefWindowProcW(hwnd, message, wParam, lParam);
    const LRESULT result = self->OnMessage(message, wParam, lParam);
    if (message == WM_NCDESTROY) {
        ::SetWindowLongPtrW(hwnd, GWLP_USERDATA, 0);
        self->Forget();
    }
    return result;
}

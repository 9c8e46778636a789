#include "toolkit/win/HVWnd.h"

HVWnd::~HVWnd()
{
    Destroy();
}

void HVWnd::Destroy()
{
    if (hwnd_ && ::IsWindow(hwnd_))
        ::DestroyWindow(hwnd_);
    hwnd_ = nullptr;
}

void HVWnd::SetText(const HVString& text)
{
    if (hwnd_)
        ::SetWindowTextW(hwnd_, text.w());
}

HVString HVWnd::GetText() const
{
    if (!hwnd_)
        return {};
    const int length = ::GetWindowTextLengthW(hwnd_);
    HVString text;
    wchar_t* buffer = text.GetWBuffer(length + 1);
    const int read = ::GetWindowTextW(hwnd_, buffer, length + 1);
    text.ReleaseBuffer(read > 0 ? read : 0);
    return text;
}

void HVWnd::Enable(bool enable)
{
    if (hwnd_)
        ::EnableWindow(hwnd_, enable);
}

bool HVWnd::IsEnabled() const
{
    return hwnd_ && ::IsWindowEnabled(hwnd_);
}

void HVWnd::Show(bool show)
{
    if (hwnd_)
        ::ShowWindow(hwnd_, show ? SW_SHOW : SW_HIDE);
}

bool HVWnd::IsVisible() const
{
    return hwnd_ && ::IsWindowVisible(hwnd_);
}

void HVWnd::Focus()
{
    if (hwnd_)
        ::SetFocus(hwnd_);
}

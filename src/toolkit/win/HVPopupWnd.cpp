#include "toolkit/win/HVPopupWnd.h"

#include "foundation/HVLog.h"
#include "foundation/win/HVApp.h"
#include "toolkit/win/HVDpi.h"
#include "toolkit/win/HVImageFile.h"

#include <algorithm>
#include <vector>

namespace
{
HVString& TitlebarIconFile()
{
    static HVString path;
    return path;
}
}   // namespace

void HVPopupWnd::SetTitlebarIconFile(const HVString& path)
{
    TitlebarIconFile() = path;
}

HVString HVPopupWnd::GetTitlebarIconFile()
{
    return TitlebarIconFile();
}

void HVPopupWnd::LoadIcons()
{
    const int big = HVDpi::Scale(32, Dpi());
    const int small = HVDpi::Scale(16, Dpi());
    const int large = HVDpi::Scale(48, Dpi());
    const HVString& file = TitlebarIconFile();
    largeIcon_.Reset(file.IsEmpty() ? nullptr
                     : file.EndsWithNoCase(u".ico")
                         ? static_cast<HICON>(::LoadImageW(nullptr, file.w(), IMAGE_ICON, large, large, LR_LOADFROMFILE))
                         : HVImageFile::MakeIcon(file, large));
    if (file.EndsWithNoCase(u".ico")) {
        bigIcon_.Reset(static_cast<HICON>(::LoadImageW(nullptr, file.w(), IMAGE_ICON, big, big, LR_LOADFROMFILE)));
        smallIcon_.Reset(static_cast<HICON>(::LoadImageW(nullptr, file.w(), IMAGE_ICON, small, small, LR_LOADFROMFILE)));
    } else if (!file.IsEmpty()) {
        bigIcon_.Reset(HVImageFile::MakeIcon(file, big));
        smallIcon_.Reset(HVImageFile::MakeIcon(file, small));
    }
    if (!file.IsEmpty()) {
        if (!bigIcon_)
            HVLog::Write(HVLog::kWarning, "HVPopupWnd::LoadIcons", u"Can't read the icon %s", file);
    }
    HINSTANCE instance = ::GetModuleHandleW(nullptr);
    if (!bigIcon_)
        bigIcon_.Reset(static_cast<HICON>(::LoadImageW(instance, MAKEINTRESOURCEW(1), IMAGE_ICON, big, big, 0)));
    if (!smallIcon_)
        smallIcon_.Reset(static_cast<HICON>(::LoadImageW(instance, MAKEINTRESOURCEW(1), IMAGE_ICON, small, small, 0)));
    if (!largeIcon_)
        largeIcon_.Reset(static_cast<HICON>(::LoadImageW(instance, MAKEINTRESOURCEW(1), IMAGE_ICON, large, large, 0)));
    ::SendMessageW(hwnd_, WM_SETICON, ICON_BIG, reinterpret_cast<LPARAM>(bigIcon_.Get()));
    ::SendMessageW(hwnd_, WM_SETICON, ICON_SMALL, reinterpret_cast<LPARAM>(smallIcon_.Get()));
}

void HVPopupWnd::SetTitle(const HVString& title)
{
    title_ = title;
    SetText(title);
}

bool HVPopupWnd::CreatePopup(HWND owner, const HVString& title, DWORD style)
{
    owner_ = owner;
    title_ = title;
    // Made off-screen first: the DPI of a window is known only once it exists.
    const RECT offscreen = {-32000, -32000, -31900, -31900};
    if (!CreateComposite(L"HVPopupWnd", WS_EX_CONTROLPARENT | WS_EX_DLGMODALFRAME, style | WS_CLIPCHILDREN, title,
                         owner, offscreen))
        return false;
    HVLayoutWnd::ApplyDpi(HVDpi::ForWindow(hwnd_));
    LoadIcons();
    if (!OnCreatePopup())
        return false;
    ApplyDpi(Dpi());
    ResizeToWanted(true);
    return true;
}

void HVPopupWnd::ResizeToWanted(bool center)
{
    const SIZE wanted = WantedClientSize();
    const SIZE minimum = MinimumClientSize();
    RECT rect = {0, 0, std::max(wanted.cx, minimum.cx), std::max(wanted.cy, minimum.cy)};
    const DWORD style = static_cast<DWORD>(::GetWindowLongPtrW(hwnd_, GWL_STYLE));
    const DWORD exStyle = static_cast<DWORD>(::GetWindowLongPtrW(hwnd_, GWL_EXSTYLE));
    HVDpi::AdjustWindowRect(rect, style, exStyle, Dpi());
    const int width = rect.right - rect.left;
    const int height = rect.bottom - rect.top;
    if (!center) {
        ::SetWindowPos(hwnd_, nullptr, 0, 0, width, height, SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
        return;
    }
    // Centred on the owner's monitor (or the primary one), inside its work area.
    HMONITOR monitor = ::MonitorFromWindow(owner_ ? owner_ : ::GetDesktopWindow(), MONITOR_DEFAULTTOPRIMARY);
    MONITORINFO info = {};
    info.cbSize = sizeof info;
    RECT work = {0, 0, 1024, 768};
    if (::GetMonitorInfoW(monitor, &info))
        work = info.rcWork;
    const int x = std::max(static_cast<int>(work.left), static_cast<int>(work.left + (work.right - work.left - width) / 2));
    const int y = std::max(static_cast<int>(work.top), static_cast<int>(work.top + (work.bottom - work.top - height) / 2));
    ::SetWindowPos(hwnd_, nullptr, x, y, width, height, SWP_NOZORDER | SWP_NOACTIVATE);
}

void HVPopupWnd::ApplyDpi(UINT dpi)
{
    HVLayoutWnd::ApplyDpi(dpi);
    LoadIcons();
}

int HVPopupWnd::DoModal(HWND owner)
{
    if (!hwnd_ && !CreatePopup(owner, title_, WS_OVERLAPPED | WS_CAPTION | WS_SYSMENU))
        return 0;
    const bool ownerWasEnabled = owner_ && ::IsWindowEnabled(owner_);
    if (ownerWasEnabled)
        ::EnableWindow(owner_, FALSE);
    if (shown_) {
        ::ShowWindow(hwnd_, SW_SHOW);
        ::SetForegroundWindow(hwnd_);
    }
    running_ = true;
    result_ = 0;
    MSG msg;
    while (running_) {
        const BOOL got = ::GetMessageW(&msg, nullptr, 0, 0);
        if (got == 0) {
            // WM_QUIT belongs to the outer loop: end this one and pass it on.
            ::PostQuitMessage(static_cast<int>(msg.wParam));
            running_ = false;
            result_ = IDCANCEL;
            break;
        }
        if (got < 0)
            break;
        HVApp::Dispatch(msg, [this](const MSG& m) { return HandleDialogKeys(m); });
    }
    if (ownerWasEnabled)
        ::EnableWindow(owner_, TRUE);
    if (hwnd_)
        ::ShowWindow(hwnd_, SW_HIDE);
    if (owner_)
        ::SetActiveWindow(owner_);
    return result_;
}

namespace
{
bool IsRadioButton(HWND hwnd)
{
    wchar_t className[16] = {};
    ::GetClassNameW(hwnd, className, 16);
    const LONG_PTR type = ::GetWindowLongPtrW(hwnd, GWL_STYLE) & BS_TYPEMASK;
    return _wcsicmp(className, L"Button") == 0 && (type == BS_AUTORADIOBUTTON || type == BS_RADIOBUTTON);
}
}   // namespace

bool HVPopupWnd::HandleDialogKeys(const MSG& msg)
{
    if (!hwnd_)
        return false;
    if (MoveInRadioGroup(msg))
        return true;
    if (IsEnterInReadOnlyText(msg)) {
        // A multi-line edit takes Enter for itself even when it is read-only; there it
        // can only mean the default button.
        HWND button = ::GetDlgItem(hwnd_, DefaultButtonId());
        if (button && ::IsWindowEnabled(button))
            ::SendMessageW(hwnd_, WM_COMMAND, MAKEWPARAM(DefaultButtonId(), BN_CLICKED), reinterpret_cast<LPARAM>(button));
        return true;
    }
    MSG copy = msg;
    return ::IsDialogMessageW(hwnd_, &copy) != FALSE;
}

bool HVPopupWnd::MoveInRadioGroup(const MSG& msg) const
{
    // A choice's description sits between the radio buttons of a group; the arrow keys go
    // from choice to choice over it, as users expect of a group of options.
    if (msg.message != WM_KEYDOWN || !IsRadioButton(msg.hwnd) || !::IsChild(hwnd_, msg.hwnd))
        return false;
    const bool forward = msg.wParam == VK_DOWN || msg.wParam == VK_RIGHT;
    if (!forward && msg.wParam != VK_UP && msg.wParam != VK_LEFT)
        return false;
    // The group: from its first control (WS_GROUP) to the next one that starts a group.
    HWND first = msg.hwnd;
    while (!(::GetWindowLongPtrW(first, GWL_STYLE) & WS_GROUP)) {
        HWND previous = ::GetWindow(first, GW_HWNDPREV);
        if (!previous)
            break;
        first = previous;
    }
    std::vector<HWND> radios;
    for (HWND h = first; h; h = ::GetWindow(h, GW_HWNDNEXT)) {
        if (h != first && (::GetWindowLongPtrW(h, GWL_STYLE) & WS_GROUP))
            break;
        if (IsRadioButton(h) && ::IsWindowVisible(h) && ::IsWindowEnabled(h))
            radios.push_back(h);
    }
    const auto at = std::find(radios.begin(), radios.end(), msg.hwnd);
    if (at == radios.end() || radios.size() < 2)
        return true;
    const size_t index = static_cast<size_t>(at - radios.begin());
    const size_t target = forward ? (index + 1) % radios.size() : (index + radios.size() - 1) % radios.size();
    ::SetFocus(radios[target]);
    ::SendMessageW(radios[target], BM_CLICK, 0, 0);
    return true;
}

bool HVPopupWnd::IsEnterInReadOnlyText(const MSG& msg) const
{
    if (msg.message != WM_KEYDOWN || msg.wParam != VK_RETURN || !::IsChild(hwnd_, msg.hwnd))
        return false;
    wchar_t className[16] = {};
    ::GetClassNameW(msg.hwnd, className, 16);
    const LONG_PTR style = ::GetWindowLongPtrW(msg.hwnd, GWL_STYLE);
    return _wcsicmp(className, L"Edit") == 0 && (style & ES_MULTILINE) && (style & ES_READONLY);
}

void HVPopupWnd::EndModal(int result)
{
    result_ = result;
    running_ = false;
    // Wakes GetMessage if nothing else is queued.
    if (hwnd_)
        ::PostMessageW(hwnd_, WM_NULL, 0, 0);
}

LRESULT HVPopupWnd::OnMessage(UINT message, WPARAM wParam, LPARAM lParam)
{
    switch (message) {
    case DM_GETDEFID:
        return MAKELRESULT(DefaultButtonId(), DC_HASDEFID);
    case WM_CLOSE:
        OnCancel();
        return 0;
    case WM_ACTIVATE:
        // Focus comes back where it was when a message box or another window closes, as in
        // the system's dialogs; otherwise keys would go to the frame.
        if (LOWORD(wParam) == WA_INACTIVE) {
            HWND focus = ::GetFocus();
            if (focus && ::IsChild(hwnd_, focus))
                lastFocus_ = focus;
        } else if (lastFocus_ && ::IsWindow(lastFocus_) && ::IsChild(hwnd_, lastFocus_) &&
                   ::IsWindowVisible(lastFocus_)) {
            ::SetFocus(lastFocus_);
            return 0;
        }
        break;
    case WM_COMMAND:
        // Esc arrives as IDCANCEL from the dialog manager, whether or not a Cancel button exists.
        if (LOWORD(wParam) == IDCANCEL && lParam == 0) {
            OnCancel();
            return 0;
        }
        break;
    case WM_GETMINMAXINFO: {
        if (!hwnd_)
            break;
        const SIZE minimum = MinimumClientSize();
        RECT rect = {0, 0, minimum.cx, minimum.cy};
        HVDpi::AdjustWindowRect(rect, static_cast<DWORD>(::GetWindowLongPtrW(hwnd_, GWL_STYLE)),
                                static_cast<DWORD>(::GetWindowLongPtrW(hwnd_, GWL_EXSTYLE)), Dpi());
        auto* info = reinterpret_cast<MINMAXINFO*>(lParam);
        info->ptMinTrackSize.x = rect.right - rect.left;
        info->ptMinTrackSize.y = rect.bottom - rect.top;
        return 0;
    }
    case WM_DPICHANGED: {
        ApplyDpi(HIWORD(wParam));
        const RECT* suggested = reinterpret_cast<const RECT*>(lParam);
        ::SetWindowPos(hwnd_, nullptr, suggested->left, suggested->top, suggested->right - suggested->left,
                       suggested->bottom - suggested->top, SWP_NOZORDER | SWP_NOACTIVATE);
        ResizeToWanted(false);
        return 0;
    }
    default:
        break;
    }
    return HVLayoutWnd::OnMessage(message, wParam, lParam);
}

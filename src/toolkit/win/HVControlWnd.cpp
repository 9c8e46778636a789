#include "toolkit/win/HVControlWnd.h"

#include "foundation/HVLog.h"
#include "toolkit/win/HVLayoutWnd.h"

HVControlWnd::~HVControlWnd()
{
    if (parent_)
        parent_->RemoveControl(this);
    Destroy();
}

bool HVControlWnd::CreateControl(HVLayoutWnd& parent, const wchar_t* className, const HVString& text, DWORD style,
                                 DWORD exStyle, const HVPlacement& place, int id)
{
    id_ = id ? id : parent.NextControlId();
    place_ = place;
    hwnd_ = ::CreateWindowExW(exStyle, className, text.w(), style | WS_CHILD | WS_VISIBLE, 0, 0, 10, 10, parent.Hwnd(),
                              reinterpret_cast<HMENU>(static_cast<INT_PTR>(id_)), ::GetModuleHandleW(nullptr), nullptr);
    if (!hwnd_) {
        HVLog::Write(HVLog::kError, "HVControlWnd::CreateControl", u"CreateWindowExW(%s) failed (%d)", className,
                     static_cast<int>(::GetLastError()));
        return false;
    }
    ::SendMessageW(hwnd_, WM_SETFONT, reinterpret_cast<WPARAM>(parent.Font()), FALSE);
    parent_ = &parent;
    parent.AddControl(this);
    return true;
}

void HVControlWnd::OnCommand(WORD code)
{
    if ((code == BN_CLICKED || code == EN_CHANGE) && onChange)
        onChange();
}

void HVControlWnd::OnDrawItem(const DRAWITEMSTRUCT&)
{
}

int HVControlWnd::TextHeight(HDC dc, int width) const
{
    const HVString text = GetText();
    RECT rect = {0, 0, width > 1 ? width : 1, 0};
    HGDIOBJ old = ::SelectObject(dc, reinterpret_cast<HGDIOBJ>(::SendMessageW(hwnd_, WM_GETFONT, 0, 0)));
    ::DrawTextW(dc, text.IsEmpty() ? L" " : text.w(), -1, &rect, DT_CALCRECT | DT_WORDBREAK | DT_NOPREFIX);
    ::SelectObject(dc, old);
    return rect.bottom - rect.top;
}

int HVControlWnd::AutoHeight(HDC dc, int width, const HVDialogUnits& units) const
{
    const int height = TextHeight(dc, width);
    return height < units.Y(8) ? units.Y(8) : height;
}

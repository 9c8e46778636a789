#include "toolkit/win/HVLayoutWnd.h"

#include "toolkit/win/HVControlWnd.h"
#include "toolkit/win/HVDpi.h"
#include "toolkit/win/HVTheme.h"

#include <algorithm>

HVLayoutWnd::~HVLayoutWnd()
{
    // A control that outlives this window must not reach back into it.
    for (HVControlWnd* control : controls_)
        control->DetachFromParent();
    controls_.clear();
}

void HVLayoutWnd::AddControl(HVControlWnd* control)
{
    controls_.push_back(control);
}

void HVLayoutWnd::RemoveControl(HVControlWnd* control)
{
    controls_.erase(std::remove(controls_.begin(), controls_.end(), control), controls_.end());
}

void HVLayoutWnd::ApplyDpi(UINT dpi)
{
    dpi_ = dpi;
    LOGFONTW logFont = HVDpi::MessageFont(dpi);
    font_.Reset(::CreateFontIndirectW(&logFont));
    logFont.lfWeight = FW_BOLD;
    boldFont_.Reset(::CreateFontIndirectW(&logFont));

    HDC dc = ::GetDC(hwnd_);
    HGDIOBJ old = ::SelectObject(dc, font_.Get());
    units_ = HVDialogUnits::FromDC(dc);
    ::SelectObject(dc, old);
    ::ReleaseDC(hwnd_, dc);

    for (HVControlWnd* control : controls_)
        ::SendMessageW(control->Hwnd(), WM_SETFONT, reinterpret_cast<WPARAM>(font_.Get()), FALSE);
    Layout();
    ::InvalidateRect(hwnd_, nullptr, TRUE);
}

RECT HVLayoutWnd::FlowArea() const
{
    RECT client = {};
    ::GetClientRect(hwnd_, &client);
    client.left += units_.X(7);
    client.right -= units_.X(7);
    return client;
}

void HVLayoutWnd::Layout()
{
    if (hwnd_)
        PlaceControls(FlowArea(), false, nullptr);
}

int HVLayoutWnd::FlowHeight(int width) const
{
    RECT area = {0, 0, width, 0};
    int used = 0;
    PlaceControls(area, true, &used);
    return used;
}

void HVLayoutWnd::PlaceControls(const RECT& area, bool measureOnly, int* usedHeight) const
{
    const int width = area.right - area.left;
    HDC dc = ::GetDC(hwnd_);

    struct Placement
    {
        int left, width, height;
    };
    std::vector<Placement> placements(controls_.size());
    int fixedHeight = 0;
    int rowHeight = 0;
    for (size_t i = 0; i < controls_.size(); ++i) {
        const HVPlacement& place = controls_[i]->Placement();
        Placement& p = placements[i];
        p.left = place.x >= 0 ? units_.X(place.x) : width - units_.X(-place.x);
        p.width = place.cx > 0 ? units_.X(place.cx) : width - units_.X(-place.cx) - p.left;
        p.width = std::max(p.width, 1);
        if (place.cy > 0)
            p.height = units_.Y(place.cy);
        else if (place.cy == HVPlacement::kAutoHeight)
            p.height = controls_[i]->AutoHeight(dc, p.width, units_);
        else
            p.height = 0;
        if (!place.sameRow) {
            fixedHeight += rowHeight + units_.Y(place.gap);
            rowHeight = 0;
        }
        rowHeight = std::max(rowHeight, p.height);
    }
    fixedHeight += rowHeight;
    ::ReleaseDC(hwnd_, dc);
    bool hasFill = false;
    for (const HVControlWnd* control : controls_)
        hasFill = hasFill || control->Placement().cy == HVPlacement::kFillHeight;

    const int fill = std::max(static_cast<int>(area.bottom - area.top) - fixedHeight, units_.Y(24));
    // A filling control needs room for a few lines at least.
    if (usedHeight)
        *usedHeight = fixedHeight + (hasFill ? units_.Y(48) : 0);
    if (measureOnly)
        return;

    HDWP defer = ::BeginDeferWindowPos(static_cast<int>(controls_.size()));
    int y = area.top;
    int rowTop = area.top;
    rowHeight = 0;
    for (size_t i = 0; i < controls_.size(); ++i) {
        const HVPlacement& place = controls_[i]->Placement();
        Placement& p = placements[i];
        if (place.cy == HVPlacement::kFillHeight)
            p.height = fill;
        if (!place.sameRow) {
            y = rowTop + rowHeight + units_.Y(place.gap);
            rowTop = y;
            rowHeight = 0;
        }
        rowHeight = std::max(rowHeight, p.height);
        if (defer)
            defer = ::DeferWindowPos(defer, controls_[i]->Hwnd(), nullptr, area.left + p.left, rowTop, p.width, p.height,
                                     SWP_NOZORDER | SWP_NOACTIVATE);
    }
    if (defer)
        ::EndDeferWindowPos(defer);
}

LRESULT HVLayoutWnd::OnMessage(UINT message, WPARAM wParam, LPARAM lParam)
{
    switch (message) {
    case WM_SIZE:
        Layout();
        return 0;
    case WM_ERASEBKGND: {
        RECT client = {};
        ::GetClientRect(hwnd_, &client);
        ::FillRect(reinterpret_cast<HDC>(wParam), &client, HVTheme::Current().Brush(BackgroundElement()));
        return 1;
    }
    case WM_COMMAND: {
        const HWND from = reinterpret_cast<HWND>(lParam);
        for (HVControlWnd* control : controls_) {
            if (from && control->Hwnd() == from) {
                control->OnCommand(HIWORD(wParam));
                return 0;
            }
        }
        break;
    }
    case WM_DRAWITEM: {
        const auto* item = reinterpret_cast<const DRAWITEMSTRUCT*>(lParam);
        for (HVControlWnd* control : controls_) {
            if (control->Hwnd() == item->hwndItem) {
                control->OnDrawItem(*item);
                return TRUE;
            }
        }
        break;
    }
    case WM_CTLCOLORSTATIC:
    case WM_CTLCOLORBTN:
    case WM_CTLCOLOREDIT: {
        const HWND from = reinterpret_cast<HWND>(lParam);
        HVString element = BackgroundElement();
        for (HVControlWnd* control : controls_)
            if (control->Hwnd() == from)
                element = control->Background();
        HVTheme& theme = HVTheme::Current();
        HDC dc = reinterpret_cast<HDC>(wParam);
        ::SetTextColor(dc, ::IsWindowEnabled(from) ? theme.Color(u"TextColor") : theme.Color(u"DisabledTextColor"));
        ::SetBkColor(dc, theme.Color(element));
        return reinterpret_cast<LRESULT>(theme.Brush(element));
    }
    default:
        break;
    }
    return HVCompositeWnd::OnMessage(message, wParam, lParam);
}

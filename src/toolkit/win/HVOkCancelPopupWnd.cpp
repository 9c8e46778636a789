#include "toolkit/win/HVOkCancelPopupWnd.h"

#include "toolkit/win/HVTheme.h"

int HVOkCancelPopupWnd::Run(HWND owner, const HVString& title)
{
    if (!hwnd_ && !CreatePopup(owner, title, WS_POPUP | WS_CAPTION | WS_SYSMENU))
        return IDCANCEL;
    const int result = DoModal(owner);
    return result == IDOK ? IDOK : IDCANCEL;
}

bool HVOkCancelPopupWnd::OnCreatePopup()
{
    if (!CreateContent())
        return false;
    const HVThemeElement button = HVTheme::Current().Element(u"Frame::Button");
    HVPlacement okPlace;
    okPlace.gap = 10;
    okPlace.x = -(2 * button.widthDlu + 4);
    okPlace.cx = button.widthDlu;
    okPlace.cy = button.heightDlu;
    HVPlacement cancelPlace = okPlace;
    cancelPlace.x = -button.widthDlu;
    cancelPlace.sameRow = true;
    if (!ok_.Create(*this, okText, okPlace, true, IDOK) || !cancel_.Create(*this, cancelText, cancelPlace, false, IDCANCEL))
        return false;
    ok_.onChange = [this] {
        if (OnOk())
            EndModal(IDOK);
    };
    cancel_.onChange = [this] { EndModal(IDCANCEL); };
    return true;
}

RECT HVOkCancelPopupWnd::FlowArea() const
{
    RECT area = HVPopupWnd::FlowArea();
    area.top += Units().Y(7);
    return area;
}

SIZE HVOkCancelPopupWnd::WantedClientSize() const
{
    const int width = Units().X(contentWidthDlu);
    return {width + 2 * Units().X(7), FlowHeight(width) + 2 * Units().Y(7)};
}

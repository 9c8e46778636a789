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
    HVLayoutSpec okSpec;
    okSpec.gap = 10;
    okSpec.x = -(2 * button.widthDlu + 4);
    okSpec.cx = button.widthDlu;
    okSpec.cy = button.heightDlu;
    HVLayoutSpec cancelSpec = okSpec;
    cancelSpec.x = -button.widthDlu;
    cancelSpec.sameRow = true;
    if (!ok_.Create(*this, okText, okSpec, true, IDOK) || !cancel_.Create(*this, cancelText, cancelSpec, false, IDCANCEL))
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

#include "toolkit/win/HVEditCtrl.h"

#include "toolkit/win/HVTheme.h"

bool HVEditCtrl::Create(HVLayoutWnd& parent, const HVString& text, const HVPlacement& place)
{
    background_ = u"Frame::Edit";
    HVPlacement sized = place;
    if (sized.cy == HVPlacement::kAutoHeight)
        sized.cy = HVTheme::Current().Element(u"Frame::Edit").heightDlu;
    return CreateControl(parent, L"EDIT", text, WS_TABSTOP | ES_AUTOHSCROLL, WS_EX_CLIENTEDGE, sized);
}

void HVEditCtrl::SelectAll()
{
    if (hwnd_)
        ::SendMessageW(hwnd_, EM_SETSEL, 0, -1);
}

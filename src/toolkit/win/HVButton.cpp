#include "toolkit/win/HVButton.h"

bool HVButton::Create(HVLayoutWnd& parent, const HVString& text, const HVLayoutSpec& spec, bool isDefault, int id)
{
    return CreateControl(parent, L"BUTTON", text, WS_TABSTOP | (isDefault ? BS_DEFPUSHBUTTON : BS_PUSHBUTTON), 0, spec, id);
}

void HVButton::SetDefault(bool isDefault)
{
    if (hwnd_)
        ::SendMessageW(hwnd_, BM_SETSTYLE, isDefault ? BS_DEFPUSHBUTTON : BS_PUSHBUTTON, TRUE);
}

void HVButton::Click()
{
    if (hwnd_ && IsEnabled())
        ::SendMessageW(hwnd_, BM_CLICK, 0, 0);
}

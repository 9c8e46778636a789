#include "toolkit/win/HVRadioButton.h"

#include "toolkit/win/HVDialogUnits.h"
#include "toolkit/win/HVTheme.h"

bool HVRadioButton::Create(HVLayoutWnd& parent, const HVString& text, const HVPlacement& place, bool firstOfGroup)
{
    return CreateControl(parent, L"BUTTON", text,
                         BS_AUTORADIOBUTTON | BS_MULTILINE | (firstOfGroup ? (WS_GROUP | WS_TABSTOP) : 0), 0, place);
}

bool HVRadioButton::IsChecked() const
{
    return hwnd_ && ::SendMessageW(hwnd_, BM_GETCHECK, 0, 0) == BST_CHECKED;
}

void HVRadioButton::SetChecked(bool checked)
{
    if (hwnd_)
        ::SendMessageW(hwnd_, BM_SETCHECK, checked ? BST_CHECKED : BST_UNCHECKED, 0);
}

int HVRadioButton::AutoHeight(HDC dc, int width, const HVDialogUnits& units) const
{
    const int text = TextHeight(dc, width - units.X(12));
    const int box = units.Y(HVTheme::Current().Element(u"Frame::Checkbox").heightDlu);
    return text > box ? text : box;
}

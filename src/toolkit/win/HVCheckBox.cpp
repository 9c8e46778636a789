#include "toolkit/win/HVCheckBox.h"

#include "toolkit/win/HVDialogUnits.h"
#include "toolkit/win/HVTheme.h"

bool HVCheckBox::Create(HVLayoutWnd& parent, const HVString& text, const HVPlacement& place)
{
    return CreateControl(parent, L"BUTTON", text, WS_TABSTOP | BS_AUTOCHECKBOX | BS_MULTILINE, 0, place);
}

bool HVCheckBox::IsChecked() const
{
    return hwnd_ && ::SendMessageW(hwnd_, BM_GETCHECK, 0, 0) == BST_CHECKED;
}

void HVCheckBox::SetChecked(bool checked)
{
    if (hwnd_)
        ::SendMessageW(hwnd_, BM_SETCHECK, checked ? BST_CHECKED : BST_UNCHECKED, 0);
}

int HVCheckBox::AutoHeight(HDC dc, int width, const HVDialogUnits& units) const
{
    // The box and its gap take about 12 horizontal units.
    const int text = TextHeight(dc, width - units.X(12));
    const int box = units.Y(HVTheme::Current().Element(u"Frame::Checkbox").heightDlu);
    return text > box ? text : box;
}

#include "toolkit/win/HVStaticText.h"

#include "toolkit/win/HVLayoutWnd.h"

bool HVStaticText::Create(HVLayoutWnd& parent, const HVString& text, const HVPlacement& place, int id)
{
    return CreateControl(parent, L"STATIC", text, SS_LEFT | SS_NOPREFIX, 0, place, id);
}

void HVStaticText::SetBold(bool bold)
{
    if (hwnd_ && parent_)
        ::SendMessageW(hwnd_, WM_SETFONT, reinterpret_cast<WPARAM>(bold ? parent_->BoldFont() : parent_->Font()), TRUE);
}

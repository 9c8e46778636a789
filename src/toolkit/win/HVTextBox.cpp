#include "toolkit/win/HVTextBox.h"

bool HVTextBox::Create(HVLayoutWnd& parent, const HVString& text, const HVPlacement& place)
{
    background_ = u"Frame::Edit";
    return CreateControl(parent, L"EDIT", text,
                         WS_TABSTOP | WS_VSCROLL | ES_MULTILINE | ES_READONLY | ES_AUTOVSCROLL, WS_EX_CLIENTEDGE, place);
}

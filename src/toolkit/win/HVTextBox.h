#pragma once

#include "toolkit/win/HVControlWnd.h"

// Read-only multi-line text with a scroll bar, such as an agreement: selectable and
// copyable, reachable with Tab so it can be scrolled from the keyboard.
class HVTextBox : public HVControlWnd
{
public:
    bool Create(HVLayoutWnd& parent, const HVString& text, const HVPlacement& place);
};

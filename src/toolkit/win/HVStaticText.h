#pragma once

#include "toolkit/win/HVControlWnd.h"

// A label; long texts wrap. Labels take no part in the Tab order, and "&" is shown as is.
class HVStaticText : public HVControlWnd
{
public:
    bool Create(HVLayoutWnd& parent, const HVString& text, const HVPlacement& place, int id = 0);
    // Bold, for headings.
    void SetBold(bool bold);
};

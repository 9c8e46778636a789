#pragma once

#include "toolkit/win/HVControlWnd.h"

// A push button. "&" in the text marks its Alt accelerator.
class HVButton : public HVControlWnd
{
public:
    bool Create(HVLayoutWnd& parent, const HVString& text, const HVPlacement& place, bool isDefault = false, int id = 0);
    void SetDefault(bool isDefault);
    // Presses the button as a click would.
    void Click();

    // The text with "&" before the first `letter` (either case), or before its first letter
    // or digit when it has no such letter (a translation), so that Alt reaches it either way.
    static HVString WithAccelerator(const HVString& text, char16_t letter);
};

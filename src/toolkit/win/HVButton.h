#pragma once

#include "toolkit/win/HVControlWnd.h"

// A push button. "&" in the text marks its Alt accelerator.
class HVButton : public HVControlWnd
{
public:
    bool Create(HVLayoutWnd& parent, const HVString& text, const HVLayoutSpec& spec, bool isDefault = false, int id = 0);
    void SetDefault(bool isDefault);
    // Presses the button as a click would.
    void Click();
};

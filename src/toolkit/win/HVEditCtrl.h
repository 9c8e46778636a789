#pragma once

#include "toolkit/win/HVControlWnd.h"

// A single-line edit ("Frame::Edit" height). It is the system's own edit control, so the
// input method's composition window, clipboard and undo work as everywhere else.
class HVEditCtrl : public HVControlWnd
{
public:
    bool Create(HVLayoutWnd& parent, const HVString& text, const HVPlacement& place);
    void SelectAll();
};

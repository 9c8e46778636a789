#pragma once

#include "toolkit/win/HVControlWnd.h"

// A radio button ("Frame::Checkbox" height). The first of a group is made with firstOfGroup,
// so that the arrow keys move within the group and Tab moves past it.
class HVRadioButton : public HVControlWnd
{
public:
    bool Create(HVLayoutWnd& parent, const HVString& text, const HVPlacement& place, bool firstOfGroup);
    bool IsChecked() const;
    void SetChecked(bool checked);
    int AutoHeight(HDC dc, int width, const HVDialogUnits& units) const override;
};

#pragma once

#include "toolkit/win/HVControlWnd.h"

// A check box ("Frame::Checkbox"); the text wraps beside the box.
class HVCheckBox : public HVControlWnd
{
public:
    bool Create(HVLayoutWnd& parent, const HVString& text, const HVPlacement& place);
    bool IsChecked() const;
    void SetChecked(bool checked);
    int AutoHeight(HDC dc, int width, const HVDialogUnits& units) const override;
};

#pragma once

#include "toolkit/win/HVControlWnd.h"

// A progress bar over 0..range.
class HVProgressBar : public HVControlWnd
{
public:
    bool Create(HVLayoutWnd& parent, const HVPlacement& place, int range = 100);
    // The position is clamped into the new range.
    void SetRange(int minimum, int maximum);
    void SetPosition(int position);
    int Position() const;
};

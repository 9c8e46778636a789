#pragma once

// Where a control sits in its parent's top-to-bottom flow, in dialog units.
//   x      left edge; negative: measured from the right edge.
//   cx     width; zero or negative: stretches to that far from the right edge.
//   gap    space above the control, below the previous row.
//   cy     height; kAutoHeight: as high as its wrapped text needs (at least one line);
//          kFillHeight: whatever the rows below leave free.
//   sameRow  sits on the previous control's row instead of starting a new one.
struct HVPlacement
{
    static constexpr int kAutoHeight = 0;
    static constexpr int kFillHeight = -1;

    int x = 0;
    int gap = 0;
    int cx = 0;
    int cy = kAutoHeight;
    bool sameRow = false;
};

#pragma once

// A pop-up window holding one picture control of 100 x 60, made but never shown: what the
// picture control's tests load pictures into and draw from. Header-only; for the Windows test
// programs.

#include "toolkit/win/HVImageCtrl.h"
#include "toolkit/win/HVOkCancelPopupWnd.h"

class PicturePopup : public HVOkCancelPopupWnd
{
public:
    HVImageCtrl image;
    bool Make() { return CreatePopup(nullptr, u"Pictures", WS_POPUP | WS_CAPTION); }

protected:
    bool CreateContent() override { return image.Create(*this, HVPlacement{.cx = 100, .cy = 60}); }
};

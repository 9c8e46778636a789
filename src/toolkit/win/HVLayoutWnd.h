#pragma once

#include "foundation/win/HVUniqueResource.h"
#include "toolkit/win/HVCompositeWnd.h"
#include "toolkit/win/HVDialogUnits.h"

#include <vector>

class HVControlWnd;

// A composite window that lays its controls out from top to bottom in dialog units of the
// system's message font at the window's DPI, paints the theme's "DialogBack" behind them and
// hands each control the notifications meant for it. A DPI change rebuilds the fonts and the
// layout, so nothing is clipped at any scale.
class HVLayoutWnd : public HVCompositeWnd
{
public:
    ~HVLayoutWnd() override;

    HFONT Font() const { return static_cast<HFONT>(font_.Get()); }
    HFONT BoldFont() const { return static_cast<HFONT>(boldFont_.Get()); }
    const HVDialogUnits& Units() const { return units_; }
    UINT Dpi() const { return dpi_; }

    // Controls announce themselves when made and leave when dropped.
    void AddControl(HVControlWnd* control);
    void RemoveControl(HVControlWnd* control);
    int NextControlId() { return nextControlId_++; }

    // Rebuilds fonts for the DPI, gives them to every control and lays out again.
    virtual void ApplyDpi(UINT dpi);
    virtual void Layout();

protected:
    // The part of the client area the flow fills; default: the client area less 7-unit
    // margins at the sides.
    virtual RECT FlowArea() const;
    // The theme element painted behind the window.
    virtual HVString BackgroundElement() const { return u"DialogBack"; }
    // The pixel height the flow needs at this width (for a pop-up that sizes to its content).
    int FlowHeight(int width) const;

    LRESULT OnMessage(UINT message, WPARAM wParam, LPARAM lParam) override;

private:
    void PlaceControls(const RECT& area, bool measureOnly, int* usedHeight) const;

    std::vector<HVControlWnd*> controls_;
    HVGdiObject font_;
    HVGdiObject boldFont_;
    HVDialogUnits units_;
    UINT dpi_ = 96;
    int nextControlId_ = 1000;
};

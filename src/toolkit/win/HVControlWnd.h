#pragma once

#include "toolkit/win/HVPlacement.h"
#include "toolkit/win/HVWnd.h"

#include <functional>

class HVLayoutWnd;
struct HVDialogUnits;

// A native system control (button, static, edit, progress bar) placed in a layout window.
// Native controls keep what users rely on: keyboard handling, input-method composition,
// accessibility and the system's visual style.
class HVControlWnd : public HVWnd
{
public:
    ~HVControlWnd() override;

    int Id() const { return id_; }
    const HVPlacement& Placement() const { return place_; }
    void SetPlacement(const HVPlacement& place) { place_ = place; }
    // The theme element behind the control ("DialogBack" unless said otherwise).
    const HVString& Background() const { return background_; }
    void SetBackground(const HVString& element) { background_ = element; }

    // The parent is going away before the control.
    void DetachFromParent() { parent_ = nullptr; }

    // Called by the parent for the control's WM_COMMAND notifications.
    virtual void OnCommand(WORD code);
    // Owner-drawn controls draw themselves here.
    virtual void OnDrawItem(const DRAWITEMSTRUCT& item);
    // The height in pixels the control needs at this width (for kAutoHeight).
    virtual int AutoHeight(HDC dc, int width, const HVDialogUnits& units) const;

    // Called after the control was pressed or changed (BN_CLICKED, EN_CHANGE).
    std::function<void()> onChange;

protected:
    bool CreateControl(HVLayoutWnd& parent, const wchar_t* className, const HVString& text, DWORD style,
                       DWORD exStyle, const HVPlacement& place, int id = 0);
    // Height of the wrapped text in the control's font.
    int TextHeight(HDC dc, int width) const;

    HVLayoutWnd* parent_ = nullptr;
    HVPlacement place_;
    HVString background_ = u"DialogBack";
    int id_ = 0;
};

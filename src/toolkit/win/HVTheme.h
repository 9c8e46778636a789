#pragma once

#include "foundation/HVString.h"

#include <windows.h>

#include <map>

// One named element of the look: a colour and, for controls, a size in dialog units.
struct HVThemeElement
{
    COLORREF color = CLR_INVALID;
    int widthDlu = 0;
    int heightDlu = 0;
};

// The toolkit's look as named elements ("Frame::Button", "Frame::Checkbox", "Frame::Edit",
// "DialogBack", "TextColor", "DisabledTextColor", "HeaderBack"). The built-in default follows
// the system colours, so high-contrast schemes carry through; a skin replaces single elements.
// The process has one theme, read and changed on the user-interface thread only.
class HVTheme
{
public:
    static HVTheme& Current();

    // The element, or an empty one (colour CLR_INVALID, sizes 0) for an unknown name.
    HVThemeElement Element(const HVString& name) const;
    COLORREF Color(const HVString& name) const;
    void SetElement(const HVString& name, const HVThemeElement& element);
    // Back to the built-in default.
    void Reset();

    // A solid brush of the element's colour, kept for the life of the theme.
    HBRUSH Brush(const HVString& name);

    HVTheme();
    ~HVTheme();
    HVTheme(const HVTheme&) = delete;
    HVTheme& operator=(const HVTheme&) = delete;

private:
    void ClearBrushes();

    std::map<HVString, HVThemeElement> elements_;
    std::map<HVString, HBRUSH> brushes_;  // owned; deleted in ClearBrushes
};

#include "toolkit/win/HVTheme.h"

HVTheme& HVTheme::Current()
{
    static HVTheme theme;
    return theme;
}

HVTheme::HVTheme()
{
    Reset();
}

HVTheme::~HVTheme()
{
    ClearBrushes();
}

void HVTheme::Reset()
{
    ClearBrushes();
    elements_.clear();
    // Sizes are those of the system's own dialogs: 50 x 14 push buttons, 10-unit check boxes
    // and radio buttons, 14-unit single-line edits.
    elements_[u"Frame::Button"] = {::GetSysColor(COLOR_BTNFACE), 50, 14};
    elements_[u"Frame::Checkbox"] = {::GetSysColor(COLOR_WINDOWTEXT), 0, 10};
    elements_[u"Frame::Edit"] = {::GetSysColor(COLOR_WINDOW), 0, 14};
    elements_[u"DialogBack"] = {::GetSysColor(COLOR_BTNFACE), 0, 0};
    elements_[u"HeaderBack"] = {::GetSysColor(COLOR_WINDOW), 0, 0};
    elements_[u"TextColor"] = {::GetSysColor(COLOR_WINDOWTEXT), 0, 0};
    elements_[u"DisabledTextColor"] = {::GetSysColor(COLOR_GRAYTEXT), 0, 0};
}

HVThemeElement HVTheme::Element(const HVString& name) const
{
    const auto it = elements_.find(name);
    return it == elements_.end() ? HVThemeElement{} : it->second;
}

COLORREF HVTheme::Color(const HVString& name) const
{
    return Element(name).color;
}

void HVTheme::SetElement(const HVString& name, const HVThemeElement& element)
{
    elements_[name] = element;
    const auto brush = brushes_.find(name);
    if (brush != brushes_.end()) {
        ::DeleteObject(brush->second);
        brushes_.erase(brush);
    }
}

HBRUSH HVTheme::Brush(const HVString& name)
{
    const auto it = brushes_.find(name);
    if (it != brushes_.end())
        return it->second;
    const COLORREF color = Color(name);
    HBRUSH brush = ::CreateSolidBrush(color == CLR_INVALID ? ::GetSysColor(COLOR_BTNFACE) : color);
    brushes_[name] = brush;
    return brush;
}

void HVTheme::ClearBrushes()
{
    for (auto& [name, brush] : brushes_)
        ::DeleteObject(brush);
    brushes_.clear();
}

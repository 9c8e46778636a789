#pragma once

#include <windows.h>

// Dialog units of one font: a horizontal unit is a quarter of the font's average character
// width, a vertical unit an eighth of its height. Layouts written in these units grow with
// the font, so the same page fits at every DPI and with every system font.
struct HVDialogUnits
{
    int baseX = 7;   // average character width in pixels
    int baseY = 16;  // character height in pixels

    int X(int dlu) const { return ::MulDiv(dlu, baseX, 4); }
    int Y(int dlu) const { return ::MulDiv(dlu, baseY, 8); }

    // The units of the font selected into `dc`.
    static HVDialogUnits FromDC(HDC dc)
    {
        HVDialogUnits units;
        TEXTMETRICW metrics = {};
        SIZE size = {};
        static const wchar_t kAlphabet[] = L"ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz";
        if (::GetTextMetricsW(dc, &metrics) && ::GetTextExtentPoint32W(dc, kAlphabet, 52, &size)) {
            units.baseX = (size.cx / 26 + 1) / 2;
            units.baseY = metrics.tmHeight;
        }
        if (units.baseX < 1)
            units.baseX = 1;
        if (units.baseY < 1)
            units.baseY = 1;
        return units;
    }
};

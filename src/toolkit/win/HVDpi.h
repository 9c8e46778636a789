#pragma once

#include <windows.h>

// Per-monitor DPI for the toolkit. The functions that only newer Windows versions have
// (GetDpiForWindow, SystemParametersInfoForDpi, AdjustWindowRectExForDpi) are looked up once
// by name; without them the system DPI of the screen is used, which is what those systems
// give every window anyway.
class HVDpi
{
public:
    static constexpr UINT kDefault = 96;

    static UINT ForWindow(HWND hwnd);
    static UINT ForSystem();
    static int Scale(int value, UINT dpi) { return ::MulDiv(value, static_cast<int>(dpi), kDefault); }

    // The system's message font (the one dialogs and message boxes use) at the given DPI.
    static LOGFONTW MessageFont(UINT dpi);
    // The window rectangle for a client size, title bar and borders sized for the DPI.
    static void AdjustWindowRect(RECT& rect, DWORD style, DWORD exStyle, UINT dpi);
};

#include "toolkit/win/HVDpi.h"

namespace
{
using GetDpiForWindowFn = UINT(WINAPI*)(HWND);
using SystemParametersInfoForDpiFn = BOOL(WINAPI*)(UINT, UINT, PVOID, UINT, UINT);
using AdjustWindowRectExForDpiFn = BOOL(WINAPI*)(LPRECT, DWORD, BOOL, DWORD, UINT);

struct DpiFunctions
{
    GetDpiForWindowFn getDpiForWindow = nullptr;
    SystemParametersInfoForDpiFn systemParametersInfoForDpi = nullptr;
    AdjustWindowRectExForDpiFn adjustWindowRectExForDpi = nullptr;

    DpiFunctions()
    {
        // user32 is always loaded in a GUI program, so the module handle stays valid.
        if (HMODULE user32 = ::GetModuleHandleW(L"user32.dll")) {
            getDpiForWindow = reinterpret_cast<GetDpiForWindowFn>(
                reinterpret_cast<void*>(::GetProcAddress(user32, "GetDpiForWindow")));
            systemParametersInfoForDpi = reinterpret_cast<SystemParametersInfoForDpiFn>(
                reinterpret_cast<void*>(::GetProcAddress(user32, "SystemParametersInfoForDpi")));
            adjustWindowRectExForDpi = reinterpret_cast<AdjustWindowRectExForDpiFn>(
                reinterpret_cast<void*>(::GetProcAddress(user32, "AdjustWindowRectExForDpi")));
        }
    }
};

const DpiFunctions& Functions()
{
    static const DpiFunctions functions;
    return functions;
}
}   // namespace

UINT HVDpi::ForSystem()
{
    HDC screen = ::GetDC(nullptr);
    const int dpi = screen ? ::GetDeviceCaps(screen, LOGPIXELSY) : 0;
    if (screen)
        ::ReleaseDC(nullptr, screen);
    return dpi > 0 ? static_cast<UINT>(dpi) : kDefault;
}

UINT HVDpi::ForWindow(HWND hwnd)
{
    if (hwnd && Functions().getDpiForWindow) {
        const UINT dpi = Functions().getDpiForWindow(hwnd);
        if (dpi)
            return dpi;
    }
    return ForSystem();
}

LOGFONTW HVDpi::MessageFont(UINT dpi)
{
    NONCLIENTMETRICSW metrics = {};
    metrics.cbSize = sizeof metrics;
    if (Functions().systemParametersInfoForDpi &&
        Functions().systemParametersInfoForDpi(SPI_GETNONCLIENTMETRICS, sizeof metrics, &metrics, 0, dpi))
        return metrics.lfMessageFont;
    if (::SystemParametersInfoW(SPI_GETNONCLIENTMETRICS, sizeof metrics, &metrics, 0)) {
        // The system answer is for the system DPI; bring it to the window's.
        LOGFONTW font = metrics.lfMessageFont;
        font.lfHeight = ::MulDiv(font.lfHeight, static_cast<int>(dpi), static_cast<int>(ForSystem()));
        return font;
    }
    LOGFONTW font = {};
    font.lfHeight = -::MulDiv(9, static_cast<int>(dpi), 72);
    font.lfWeight = FW_NORMAL;
    font.lfCharSet = DEFAULT_CHARSET;
    lstrcpynW(font.lfFaceName, L"Segoe UI", LF_FACESIZE);
    return font;
}

void HVDpi::AdjustWindowRect(RECT& rect, DWORD style, DWORD exStyle, UINT dpi)
{
    if (Functions().adjustWindowRectExForDpi && Functions().adjustWindowRectExForDpi(&rect, style, FALSE, exStyle, dpi))
        return;
    ::AdjustWindowRectEx(&rect, style, FALSE, exStyle);
}

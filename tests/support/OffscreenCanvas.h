#pragma once

// A bitmap of its own to draw into and read pixels back from, for tests of what a control
// draws without showing it. Header-only; for the Windows test programs.
//
//   OffscreenCanvas canvas(40, 20);
//   control.Draw(canvas.Dc());
//   EXPECT_EQ(canvas.Pixel(35, 10), ::GetSysColor(COLOR_BTNFACE));

#include <windows.h>

class OffscreenCanvas
{
public:
    OffscreenCanvas(int width, int height)
    {
        HDC screen = ::GetDC(nullptr);
        dc_ = ::CreateCompatibleDC(screen);
        bitmap_ = ::CreateCompatibleBitmap(screen, width, height);
        ::ReleaseDC(nullptr, screen);
        old_ = ::SelectObject(dc_, bitmap_);
    }
    ~OffscreenCanvas()
    {
        ::SelectObject(dc_, old_);
        ::DeleteObject(bitmap_);
        ::DeleteDC(dc_);
    }
    OffscreenCanvas(const OffscreenCanvas&) = delete;
    OffscreenCanvas& operator=(const OffscreenCanvas&) = delete;

    HDC Dc() const { return dc_; }
    COLORREF Pixel(int x, int y) const { return ::GetPixel(dc_, x, y); }

private:
    HDC dc_ = nullptr;
    HBITMAP bitmap_ = nullptr;
    HGDIOBJ old_ = nullptr;
};

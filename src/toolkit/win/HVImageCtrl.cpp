#include "toolkit/win/HVImageCtrl.h"

#include "foundation/HVLog.h"
#include "toolkit/win/HVImageFile.h"
#include "toolkit/win/HVTheme.h"

#include <vector>

bool HVImageCtrl::Create(HVLayoutWnd& parent, const HVPlacement& place)
{
    return CreateControl(parent, L"STATIC", u"", SS_OWNERDRAW, 0, place);
}

bool HVImageCtrl::LoadFile(const HVString& path)
{
    bitmap_.Reset();
    size_ = {};
    HVImageFile::Pixels picture;
    if (!HVImageFile::Decode(path, picture)) {
        if (hwnd_)
            ::InvalidateRect(hwnd_, nullptr, TRUE);
        return false;
    }
    std::vector<BYTE>& pixels = picture.bgra;
    const UINT width = picture.width;
    const UINT height = picture.height;

    // Premultiplied pixels laid over the background: what shows through transparent parts.
    const COLORREF back = HVTheme::Current().Color(u"DialogBack");
    const BYTE backRgb[3] = {GetBValue(back), GetGValue(back), GetRValue(back)};
    for (size_t i = 0; i < pixels.size(); i += 4) {
        const unsigned alpha = pixels[i + 3];
        for (int c = 0; c < 3; ++c)
            pixels[i + c] = static_cast<BYTE>(pixels[i + c] + (backRgb[c] * (255 - alpha)) / 255);
        pixels[i + 3] = 255;
    }

    BITMAPINFO info = {};
    info.bmiHeader.biSize = sizeof info.bmiHeader;
    info.bmiHeader.biWidth = static_cast<LONG>(width);
    info.bmiHeader.biHeight = -static_cast<LONG>(height);
    info.bmiHeader.biPlanes = 1;
    info.bmiHeader.biBitCount = 32;
    info.bmiHeader.biCompression = BI_RGB;
    void* bits = nullptr;
    HBITMAP bitmap = ::CreateDIBSection(nullptr, &info, DIB_RGB_COLORS, &bits, nullptr, 0);
    if (!bitmap || !bits) {
        HVLog::Write(HVLog::kError, "HVImageCtrl::LoadFile", u"CreateDIBSection failed for %s", path);
        return false;
    }
    memcpy(bits, pixels.data(), pixels.size());
    bitmap_.Reset(bitmap);
    size_ = {static_cast<LONG>(width), static_cast<LONG>(height)};
    if (hwnd_)
        ::InvalidateRect(hwnd_, nullptr, TRUE);
    return true;
}

void HVImageCtrl::OnDrawItem(const DRAWITEMSTRUCT& item)
{
    const RECT& area = item.rcItem;
    ::FillRect(item.hDC, &area, HVTheme::Current().Brush(background_));
    if (!bitmap_ || size_.cx <= 0 || size_.cy <= 0)
        return;
    const int areaWidth = area.right - area.left;
    const int areaHeight = area.bottom - area.top;
    // Fit inside, keeping the proportions.
    int width = areaWidth;
    int height = ::MulDiv(size_.cy, width, size_.cx);
    if (height > areaHeight) {
        height = areaHeight;
        width = ::MulDiv(size_.cx, height, size_.cy);
    }
    HDC memory = ::CreateCompatibleDC(item.hDC);
    HGDIOBJ old = ::SelectObject(memory, bitmap_.Get());
    ::SetStretchBltMode(item.hDC, HALFTONE);
    ::SetBrushOrgEx(item.hDC, 0, 0, nullptr);
    ::StretchBlt(item.hDC, area.left + (areaWidth - width) / 2, area.top + (areaHeight - height) / 2, width, height,
                 memory, 0, 0, size_.cx, size_.cy, SRCCOPY);
    ::SelectObject(memory, old);
    ::DeleteDC(memory);
}

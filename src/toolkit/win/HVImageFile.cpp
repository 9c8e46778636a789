#include "toolkit/win/HVImageFile.h"

#include "foundation/HVLog.h"
#include "foundation/win/HVComPtr.h"
#include "foundation/win/HVUniqueResource.h"

#include <wincodec.h>

namespace
{
bool DecodeScaled(const HVString& path, UINT wantedWidth, UINT wantedHeight, HVImageFile::Pixels& pixels)
{
    HVComPtr<IWICImagingFactory> factory;
    HRESULT hr = ::CoCreateInstance(CLSID_WICImagingFactory, nullptr, CLSCTX_INPROC_SERVER, IID_IWICImagingFactory,
                                    factory.ReceiveVoid());
    HVComPtr<IWICBitmapDecoder> decoder;
    if (SUCCEEDED(hr))
        hr = factory->CreateDecoderFromFilename(path.w(), nullptr, GENERIC_READ, WICDecodeMetadataCacheOnDemand,
                                                decoder.Receive());
    HVComPtr<IWICBitmapFrameDecode> frame;
    if (SUCCEEDED(hr))
        hr = decoder->GetFrame(0, frame.Receive());
    HVComPtr<IWICBitmapSource> source;
    if (SUCCEEDED(hr))
        source = frame.As<IWICBitmapSource>(IID_IWICBitmapSource);
    if (SUCCEEDED(hr) && wantedWidth && wantedHeight) {
        HVComPtr<IWICBitmapScaler> scaler;
        hr = factory->CreateBitmapScaler(scaler.Receive());
        if (SUCCEEDED(hr))
            hr = scaler->Initialize(source.Get(), wantedWidth, wantedHeight, WICBitmapInterpolationModeFant);
        if (SUCCEEDED(hr))
            source = scaler.As<IWICBitmapSource>(IID_IWICBitmapSource);
    }
    HVComPtr<IWICFormatConverter> converter;
    if (SUCCEEDED(hr))
        hr = factory->CreateFormatConverter(converter.Receive());
    if (SUCCEEDED(hr))
        hr = converter->Initialize(source.Get(), GUID_WICPixelFormat32bppPBGRA, WICBitmapDitherTypeNone, nullptr, 0.0,
                                   WICBitmapPaletteTypeCustom);
    UINT width = 0, height = 0;
    if (SUCCEEDED(hr))
        hr = converter->GetSize(&width, &height);
    // Pictures beyond this are no pictures of a setup program; refuse rather than allocate.
    if (SUCCEEDED(hr) && (width == 0 || height == 0 || width > 16384 || height > 16384))
        hr = E_FAIL;
    if (SUCCEEDED(hr)) {
        pixels.bgra.resize(static_cast<size_t>(width) * height * 4);
        hr = converter->CopyPixels(nullptr, width * 4, static_cast<UINT>(pixels.bgra.size()), pixels.bgra.data());
    }
    if (FAILED(hr)) {
        HVLog::Write(HVLog::kWarning, "HVImageFile::Decode", u"Can't read the picture %s (0x%08x)", path,
                     static_cast<uint32_t>(hr));
        pixels = {};
        return false;
    }
    pixels.width = width;
    pixels.height = height;
    return true;
}
}   // namespace

bool HVImageFile::Decode(const HVString& path, Pixels& pixels)
{
    return DecodeScaled(path, 0, 0, pixels);
}

HICON HVImageFile::MakeIcon(const HVString& path, int size)
{
    Pixels pixels;
    if (size <= 0 || !DecodeScaled(path, static_cast<UINT>(size), static_cast<UINT>(size), pixels))
        return nullptr;
    BITMAPV5HEADER header = {};
    header.bV5Size = sizeof header;
    header.bV5Width = size;
    header.bV5Height = -size;
    header.bV5Planes = 1;
    header.bV5BitCount = 32;
    header.bV5Compression = BI_BITFIELDS;
    header.bV5RedMask = 0x00FF0000;
    header.bV5GreenMask = 0x0000FF00;
    header.bV5BlueMask = 0x000000FF;
    header.bV5AlphaMask = 0xFF000000;
    void* bits = nullptr;
    HDC screen = ::GetDC(nullptr);
    HVGdiObject color(::CreateDIBSection(screen, reinterpret_cast<BITMAPINFO*>(&header), DIB_RGB_COLORS, &bits, nullptr, 0));
    ::ReleaseDC(nullptr, screen);
    HVGdiObject mask(::CreateBitmap(size, size, 1, 1, nullptr));
    if (!color || !bits || !mask)
        return nullptr;
    memcpy(bits, pixels.bgra.data(), pixels.bgra.size());
    ICONINFO info = {};
    info.fIcon = TRUE;
    info.hbmColor = static_cast<HBITMAP>(color.Get());
    info.hbmMask = static_cast<HBITMAP>(mask.Get());
    return ::CreateIconIndirect(&info);
}

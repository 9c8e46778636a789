#pragma once

#include "foundation/HVString.h"

#include <windows.h>

#include <cstdint>
#include <vector>

// Pictures from files (PNG, JPEG, BMP, ICO: whatever the system's imaging component reads),
// decoded to premultiplied 32-bit BGRA rows, top row first. Needs COM on the thread.
class HVImageFile
{
public:
    struct Pixels
    {
        UINT width = 0;
        UINT height = 0;
        std::vector<uint8_t> bgra;  // premultiplied by alpha
    };

    // False (with a log line) when the file can't be read or isn't a picture.
    static bool Decode(const HVString& path, Pixels& pixels);
    // The picture scaled to size x size as an icon with its transparency; nullptr on failure.
    // The caller destroys it.
    static HICON MakeIcon(const HVString& path, int size);
};

#pragma once

#include "foundation/HVString.h"

#include <string_view>

// Turns the bytes of a text file into a wide string. A byte-order mark decides (UTF-8, UTF-16
// little or big endian); without one the bytes are read as UTF-8 when they are valid UTF-8,
// and otherwise through the fallback (the system code page on Windows, Latin-1 elsewhere).
class HVTextDecoder
{
public:
    using Fallback = HVString (*)(std::string_view bytes);

    static HVString Decode(std::string_view bytes, Fallback fallback = &DecodeLatin1);

    // Strict UTF-8 (no overlong forms, surrogates or values past U+10FFFF). False, with `out`
    // untouched, when the bytes are not valid UTF-8.
    static bool DecodeUtf8(std::string_view bytes, HVString& out);
    static HVString DecodeUtf16(std::string_view bytes, bool bigEndian);
    static HVString DecodeLatin1(std::string_view bytes);
};

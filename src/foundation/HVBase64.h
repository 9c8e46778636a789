#pragma once

#include "foundation/HVString.h"

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

// Base64 with the standard alphabet of RFC 4648 ("+" and "/", "=" padding).
class HVBase64
{
public:
    static HVString Encode(const void* data, size_t size);
    static HVString Encode(std::string_view bytes) { return Encode(bytes.data(), bytes.size()); }
    // Whitespace (line breaks included) is skipped; padding may be left out. False, with `out`
    // cleared, on any other character outside the alphabet or a malformed end.
    static bool Decode(std::u16string_view text, std::vector<uint8_t>& out);
};

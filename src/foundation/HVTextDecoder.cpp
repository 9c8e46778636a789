#include "foundation/HVTextDecoder.h"

#include <cstdint>
#include <cstring>

#if defined(__SSE2__) || defined(_M_X64) || defined(_M_AMD64)
#include <emmintrin.h>
#define HV_TEXT_SSE2 1
#endif

namespace
{
constexpr size_t kMaxChars = static_cast<size_t>(INT32_MAX / 2);

bool Continuation(uint8_t c) { return (c & 0xC0) == 0x80; }
}   // namespace

HVString HVTextDecoder::Decode(std::string_view bytes, Fallback fallback)
{
    const auto* b = reinterpret_cast<const uint8_t*>(bytes.data());
    if (bytes.size() >= 3 && b[0] == 0xEF && b[1] == 0xBB && b[2] == 0xBF) {
        // Declared UTF-8: broken sequences become U+FFFD rather than a change of encoding.
        HVString text;
        if (DecodeUtf8(bytes.substr(3), text))
            return text;
        return HVString::FromUtf8(bytes.substr(3));
    }
    if (bytes.size() >= 2 && b[0] == 0xFF && b[1] == 0xFE)
        return DecodeUtf16(bytes.substr(2), false);
    if (bytes.size() >= 2 && b[0] == 0xFE && b[1] == 0xFF)
        return DecodeUtf16(bytes.substr(2), true);
    HVString text;
    if (DecodeUtf8(bytes, text))
        return text;
    return fallback ? fallback(bytes) : DecodeLatin1(bytes);
}

bool HVTextDecoder::DecodeUtf8(std::string_view bytes, HVString& out)
{
    const size_t size = bytes.size();
    if (size == 0) {
        out.Empty();
        return true;
    }
    if (size > kMaxChars)
        return false;
    HVString result;
    char16_t* o = result.GetBuffer(static_cast<int32_t>(size));
    if (!o)
        return false;
    const auto* p = reinterpret_cast<const uint8_t*>(bytes.data());
    size_t i = 0;
    size_t w = 0;   // never ahead of i: a character never takes more units than bytes
    while (i < size) {
#ifdef HV_TEXT_SSE2
        // Runs of ASCII, sixteen bytes at a time.
        while (i + 16 <= size) {
            const __m128i v = _mm_loadu_si128(reinterpret_cast<const __m128i*>(p + i));
            if (_mm_movemask_epi8(v) != 0)
                break;
            const __m128i zero = _mm_setzero_si128();
            _mm_storeu_si128(reinterpret_cast<__m128i*>(o + w), _mm_unpacklo_epi8(v, zero));
            _mm_storeu_si128(reinterpret_cast<__m128i*>(o + w + 8), _mm_unpackhi_epi8(v, zero));
            i += 16;
            w += 16;
        }
        if (i >= size)
            break;
#endif
        const uint8_t c = p[i];
        if (c < 0x80) {
            o[w++] = c;
            ++i;
            continue;
        }
        uint32_t cp = 0;
        size_t extra = 0;
        if (c >= 0xC2 && c < 0xE0) {
            extra = 1;
            cp = c & 0x1Fu;
        } else if (c >= 0xE0 && c < 0xF0) {
            extra = 2;
            cp = c & 0x0Fu;
        } else if (c >= 0xF0 && c < 0xF5) {
            extra = 3;
            cp = c & 0x07u;
        } else {
            return false;
        }
        if (i + extra >= size)
            return false;   // the text ends inside the character
        const uint8_t c1 = p[i + 1];
        // The second byte carries the limits that rule out overlong forms, surrogates and
        // values past U+10FFFF.
        uint8_t low = 0x80;
        uint8_t high = 0xBF;
        if (c == 0xE0)
            low = 0xA0;
        else if (c == 0xED)
            high = 0x9F;
        else if (c == 0xF0)
            low = 0x90;
        else if (c == 0xF4)
            high = 0x8F;
        if (c1 < low || c1 > high)
            return false;
        cp = (cp << 6) | (c1 & 0x3Fu);
        for (size_t k = 2; k <= extra; ++k) {
            if (!Continuation(p[i + k]))
                return false;
            cp = (cp << 6) | (p[i + k] & 0x3Fu);
        }
        i += extra + 1;
        if (cp >= 0x10000) {
            cp -= 0x10000;
            o[w++] = static_cast<char16_t>(0xD800 + (cp >> 10));
            o[w++] = static_cast<char16_t>(0xDC00 + (cp & 0x3FF));
        } else {
            o[w++] = static_cast<char16_t>(cp);
        }
    }
    result.ReleaseBuffer(static_cast<int32_t>(w));
    out = std::move(result);
    return true;
}

HVString HVTextDecoder::DecodeUtf16(std::string_view bytes, bool bigEndian)
{
    const size_t units = bytes.size() / 2;   // an odd last byte is no character
    if (units == 0 || units > kMaxChars)
        return HVString();
    HVString result;
    char16_t* o = result.GetBuffer(static_cast<int32_t>(units));
    if (!o)
        return HVString();
    const auto* p = reinterpret_cast<const uint8_t*>(bytes.data());
    for (size_t k = 0; k < units; ++k) {
        const uint8_t a = p[2 * k];
        const uint8_t b = p[2 * k + 1];
        o[k] = bigEndian ? static_cast<char16_t>((a << 8) | b) : static_cast<char16_t>((b << 8) | a);
    }
    result.ReleaseBuffer(static_cast<int32_t>(units));
    return result;
}

HVString HVTextDecoder::DecodeLatin1(std::string_view bytes)
{
    if (bytes.empty() || bytes.size() > kMaxChars)
        return HVString();
    HVString result;
    char16_t* o = result.GetBuffer(static_cast<int32_t>(bytes.size()));
    if (!o)
        return HVString();
    for (size_t k = 0; k < bytes.size(); ++k)
        o[k] = static_cast<uint8_t>(bytes[k]);
    result.ReleaseBuffer(static_cast<int32_t>(bytes.size()));
    return result;
}

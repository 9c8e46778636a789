#include "foundation/HVBase64.h"

namespace
{
constexpr char16_t kAlphabet[] = u"ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

int ValueOf(char16_t c)
{
    if (c >= u'A' && c <= u'Z')
        return c - u'A';
    if (c >= u'a' && c <= u'z')
        return c - u'a' + 26;
    if (c >= u'0' && c <= u'9')
        return c - u'0' + 52;
    if (c == u'+')
        return 62;
    if (c == u'/')
        return 63;
    return -1;
}

bool IsSpace(char16_t c) { return c == u' ' || c == u'\t' || c == u'\r' || c == u'\n'; }
}   // namespace

HVString HVBase64::Encode(const void* data, size_t size)
{
    if (size == 0 || size > static_cast<size_t>(INT32_MAX / 2) / 4 * 3)
        return HVString();
    const auto* p = static_cast<const uint8_t*>(data);
    const int32_t length = static_cast<int32_t>((size + 2) / 3 * 4);
    HVString text;
    char16_t* o = text.GetBuffer(length);
    if (!o)
        return HVString();
    int32_t w = 0;
    size_t i = 0;
    for (; i + 3 <= size; i += 3) {
        const uint32_t v = (uint32_t{p[i]} << 16) | (uint32_t{p[i + 1]} << 8) | p[i + 2];
        o[w++] = kAlphabet[v >> 18];
        o[w++] = kAlphabet[(v >> 12) & 63];
        o[w++] = kAlphabet[(v >> 6) & 63];
        o[w++] = kAlphabet[v & 63];
    }
    if (i < size) {
        const bool two = i + 1 < size;
        const uint32_t v = (uint32_t{p[i]} << 16) | (two ? uint32_t{p[i + 1]} << 8 : 0);
        o[w++] = kAlphabet[v >> 18];
        o[w++] = kAlphabet[(v >> 12) & 63];
        o[w++] = two ? kAlphabet[(v >> 6) & 63] : u'=';
        o[w++] = u'=';
    }
    text.ReleaseBuffer(w);
    return text;
}

bool HVBase64::Decode(std::u16string_view text, std::vector<uint8_t>& out)
{
    out.clear();
    out.reserve(text.size() / 4 * 3);
    uint32_t bits = 0;
    int count = 0;      // sextets in `bits`
    int padding = 0;
    for (char16_t c : text) {
        if (IsSpace(c))
            continue;
        if (c == u'=') {
            ++padding;
            continue;
        }
        const int v = ValueOf(c);
        if (v < 0 || padding > 0) {   // nothing may follow the padding
            out.clear();
            return false;
        }
        bits = (bits << 6) | static_cast<uint32_t>(v);
        if (++count == 4) {
            out.push_back(static_cast<uint8_t>(bits >> 16));
            out.push_back(static_cast<uint8_t>(bits >> 8));
            out.push_back(static_cast<uint8_t>(bits));
            bits = 0;
            count = 0;
        }
    }
    // A last group of one sextet can't hold a byte; padding must complete the group when given.
    if (count == 1 || (padding > 0 && count + padding != 4) || padding > 2) {
        out.clear();
        return false;
    }
    if (count == 2) {
        out.push_back(static_cast<uint8_t>(bits >> 4));
    } else if (count == 3) {
        out.push_back(static_cast<uint8_t>(bits >> 10));
        out.push_back(static_cast<uint8_t>(bits >> 2));
    }
    return true;
}

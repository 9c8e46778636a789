#include "foundation/HVXMLEscape.h"

#include "foundation/HVDigitValue.h"

#include <algorithm>

namespace
{
// Digits of a character reference: at most this many, then the ";".
constexpr size_t kMaxReferenceDigits = 7;

// Reads "&#...;" at text[i]; on success writes the character(s) and returns the length read.
size_t CharacterReference(std::u16string_view text, size_t i, char16_t* out, int32_t& written)
{
    size_t p = i + 2;
    int base = 10;
    if (p < text.size() && text[p] == u'x') {
        base = 16;
        ++p;
    }
    const size_t digitsStart = p;
    uint32_t value = 0;
    while (p < text.size() && p - digitsStart < kMaxReferenceDigits) {
        const int d = HVDigitValue(text[p], base);
        if (d < 0)
            break;
        value = value * static_cast<uint32_t>(base) + static_cast<uint32_t>(d);
        ++p;
    }
    if (p == digitsStart || p >= text.size() || text[p] != u';' || value == 0 || value > 0x10FFFF)
        return 0;
    if (value >= 0x10000) {
        value -= 0x10000;
        out[written++] = static_cast<char16_t>(0xD800 + (value >> 10));
        out[written++] = static_cast<char16_t>(0xDC00 + (value & 0x3FF));
    } else {
        out[written++] = static_cast<char16_t>(value);
    }
    return p + 1 - i;
}

struct NamedReference
{
    std::u16string_view name;   // after the "&", with the ";"
    char16_t character;
};
constexpr NamedReference kNamed[] = {
    {u"lt;", u'<'}, {u"amp;", u'&'}, {u"gt;", u'>'}, {u"apos;", u'\''}, {u"quot;", u'"'},
};
}   // namespace

HVString HVXMLEscape::Escape(std::u16string_view text)
{
    HVString out;
    size_t from = 0;
    for (size_t i = 0; i < text.size(); ++i) {
        const char16_t* entity = nullptr;
        switch (text[i]) {
        case u'&': entity = u"&amp;"; break;
        case u'<': entity = u"&lt;"; break;
        case u'>': entity = u"&gt;"; break;
        case u'"': entity = u"&quot;"; break;
        case u'\'': entity = u"&apos;"; break;
        default: continue;
        }
        out.Append(text.substr(from, i - from));
        out.Append(entity);
        from = i + 1;
    }
    if (from == 0)
        return HVString(text);
    out.Append(text.substr(from));
    return out;
}

bool HVXMLEscape::NeedsDecoding(std::u16string_view text) { return text.find(u'&') != std::u16string_view::npos; }

HVString HVXMLEscape::Decode(std::u16string_view text)
{
    const size_t first = text.find(u'&');
    if (first == std::u16string_view::npos)
        return HVString(text);
    // Every reference is longer than what it stands for, so the text's length is enough room.
    HVString result;
    char16_t* out = result.GetBuffer(static_cast<int32_t>(text.size()));
    if (!out)
        return HVString(text);
    std::copy(text.begin(), text.begin() + static_cast<std::ptrdiff_t>(first), out);
    int32_t written = static_cast<int32_t>(first);
    size_t i = first;
    while (i < text.size()) {
        const char16_t c = text[i];
        if (c != u'&') {
            out[written++] = c;
            ++i;
            continue;
        }
        size_t used = 0;
        if (i + 1 < text.size() && text[i + 1] == u'#') {
            used = CharacterReference(text, i, out, written);
        } else {
            const std::u16string_view rest = text.substr(i + 1);
            for (const NamedReference& ref : kNamed) {
                if (rest.substr(0, ref.name.size()) == ref.name) {
                    out[written++] = ref.character;
                    used = ref.name.size() + 1;
                    break;
                }
            }
        }
        if (used == 0) {
            out[written++] = u'&';
            used = 1;
        }
        i += used;
    }
    result.ReleaseBuffer(written);
    return result;
}

#include "foundation/HVFormatArg.h"

#include "foundation/HVString.h"

#include <cstdio>

HVFormatArg::HVFormatArg(const HVString& text) : kind_(Kind::Text16), text16_(text.view()) {}

int64_t HVFormatArg::AsSigned() const
{
    switch (kind_) {
    case Kind::Signed: return signed_;
    case Kind::Unsigned:
    case Kind::Pointer: return static_cast<int64_t>(unsigned_);
    case Kind::Double: return static_cast<int64_t>(double_);
    default: return 0;
    }
}

uint64_t HVFormatArg::AsUnsigned() const
{
    switch (kind_) {
    case Kind::Signed: return static_cast<uint64_t>(signed_);
    case Kind::Unsigned:
    case Kind::Pointer: return unsigned_;
    case Kind::Double: return static_cast<uint64_t>(double_);
    default: return 0;
    }
}

double HVFormatArg::AsDouble() const
{
    switch (kind_) {
    case Kind::Double: return double_;
    case Kind::Signed: return static_cast<double>(signed_);
    case Kind::Unsigned: return static_cast<double>(unsigned_);
    default: return 0;
    }
}

namespace
{
struct Spec
{
    bool left = false, plus = false, space = false, zero = false, alt = false;
    int width = 0;
    int precision = -1;
    char16_t conversion = 0;
};

void Pad(HVString& out, int count, char16_t ch)
{
    for (int i = 0; i < count; ++i)
        out.Append(ch);
}

// Writes body with sign/prefix and padding as printf does.
void Emit(HVString& out, const Spec& spec, std::u16string_view prefix, std::u16string_view body)
{
    const int length = static_cast<int>(prefix.size() + body.size());
    const int padding = spec.width > length ? spec.width - length : 0;
    if (spec.left) {
        out.Append(prefix);
        out.Append(body);
        Pad(out, padding, u' ');
    } else if (spec.zero) {
        out.Append(prefix);
        Pad(out, padding, u'0');
        out.Append(body);
    } else {
        Pad(out, padding, u' ');
        out.Append(prefix);
        out.Append(body);
    }
}

void FormatInteger(HVString& out, Spec spec, const HVFormatArg& arg)
{
    char16_t digits[72];
    int n = 0;
    std::u16string prefix;
    unsigned base = 10;
    bool upper = false;
    uint64_t magnitude;
    bool negative = false;
    switch (spec.conversion) {
    case u'x': base = 16; break;
    case u'X': base = 16, upper = true; break;
    case u'o': base = 8; break;
    case u'p': base = 16, upper = true; break;
    default: break;
    }
    const bool isSigned = spec.conversion == u'd' || spec.conversion == u'i';
    if (isSigned) {
        const int64_t v = arg.AsSigned();
        negative = v < 0;
        magnitude = negative ? 0 - static_cast<uint64_t>(v) : static_cast<uint64_t>(v);
    } else {
        magnitude = arg.AsUnsigned();
    }
    if (spec.conversion == u'p' && spec.precision < 0)
        spec.precision = 16;
    for (uint64_t v = magnitude; v != 0; v /= base) {
        const unsigned d = static_cast<unsigned>(v % base);
        digits[n++] = static_cast<char16_t>(d < 10 ? u'0' + d : (upper ? u'A' : u'a') + d - 10);
    }
    int minimum = spec.precision < 0 ? 1 : spec.precision;
    if (spec.precision >= 0)
        spec.zero = false;
    while (n < minimum && n < 64)
        digits[n++] = u'0';
    if (negative)
        prefix = u"-";
    else if (isSigned && spec.plus)
        prefix = u"+";
    else if (isSigned && spec.space)
        prefix = u" ";
    if (spec.alt && magnitude != 0 && base == 16)
        prefix += upper ? u"0X" : u"0x";
    if (spec.alt && base == 8 && digits[n - 1] != u'0')
        digits[n++] = u'0';
    std::u16string body(digits, digits + n);
    std::u16string reversed(body.rbegin(), body.rend());
    Emit(out, spec, prefix, reversed);
}

void FormatDouble(HVString& out, const Spec& spec, double value)
{
    char format[32];
    int f = 0;
    format[f++] = '%';
    if (spec.left) format[f++] = '-';
    if (spec.plus) format[f++] = '+';
    if (spec.space) format[f++] = ' ';
    if (spec.zero) format[f++] = '0';
    if (spec.alt) format[f++] = '#';
    format[f++] = '*';
    format[f++] = '.';
    format[f++] = '*';
    format[f++] = static_cast<char>(spec.conversion);
    format[f] = 0;
    char buffer[512];
    const int width = spec.width > 400 ? 400 : spec.width;
    const int precision = spec.precision < 0 ? 6 : (spec.precision > 60 ? 60 : spec.precision);
    const int n = std::snprintf(buffer, sizeof buffer, format, width, precision, value);
    for (int i = 0; i < n && i < static_cast<int>(sizeof buffer) - 1; ++i)
        out.Append(static_cast<char16_t>(static_cast<unsigned char>(buffer[i])));
}

void FormatText(HVString& out, const Spec& spec, const HVFormatArg& arg)
{
    HVString converted;
    std::u16string_view text;
    switch (arg.kind()) {
    case HVFormatArg::Kind::Text16: text = arg.Text16(); break;
    case HVFormatArg::Kind::Text8:
        converted = HVString::FromUtf8(arg.Text8());
        text = converted.view();
        break;
    case HVFormatArg::Kind::None: break;
    default: {
        // A number given for %s: show the number rather than nothing.
        Spec number;
        number.conversion = arg.kind() == HVFormatArg::Kind::Signed ? u'd' : u'u';
        FormatInteger(converted, number, arg);
        text = converted.view();
        break;
    }
    }
    if (spec.precision >= 0 && static_cast<size_t>(spec.precision) < text.size())
        text = text.substr(0, static_cast<size_t>(spec.precision));
    Spec plain = spec;
    plain.zero = false;
    Emit(out, plain, {}, text);
}
}   // namespace

HVString HVString::FormatList(const char16_t* format, const HVFormatArg* args, size_t count)
{
    HVString out;
    if (!format)
        return out;
    size_t next = 0;
    auto take = [&]() -> const HVFormatArg& {
        static const HVFormatArg none;
        return next < count ? args[next++] : none;
    };
    const char16_t* p = format;
    while (*p) {
        const char16_t* run = p;
        while (*p && *p != u'%')
            ++p;
        if (p != run)
            out.Append(std::u16string_view(run, static_cast<size_t>(p - run)));
        if (!*p)
            break;
        const char16_t* start = p++;
        if (*p == u'%') {
            out.Append(u'%');
            ++p;
            continue;
        }
        Spec spec;
        for (;; ++p) {
            if (*p == u'-') spec.left = true;
            else if (*p == u'+') spec.plus = true;
            else if (*p == u' ') spec.space = true;
            else if (*p == u'0') spec.zero = true;
            else if (*p == u'#') spec.alt = true;
            else break;
        }
        if (*p == u'*') {
            const int64_t w = take().AsSigned();
            spec.width = static_cast<int>(w < 0 ? -w : w) > 4096 ? 4096 : static_cast<int>(w < 0 ? -w : w);
            if (w < 0) spec.left = true;
            ++p;
        } else {
            while (*p >= u'0' && *p <= u'9') {
                if (spec.width < 4096) spec.width = spec.width * 10 + (*p - u'0');
                ++p;
            }
        }
        if (*p == u'.') {
            ++p;
            spec.precision = 0;
            if (*p == u'*') {
                const int64_t v = take().AsSigned();
                spec.precision = v < 0 ? -1 : (v > 4096 ? 4096 : static_cast<int>(v));
                ++p;
            } else {
                while (*p >= u'0' && *p <= u'9') {
                    if (spec.precision < 4096) spec.precision = spec.precision * 10 + (*p - u'0');
                    ++p;
                }
            }
        }
        // Length modifiers carry no meaning here: each argument knows its own type.
        for (;;) {
            if (*p == u'h' || *p == u'l' || *p == u'L' || *p == u'z' || *p == u'j' || *p == u't' || *p == u'w' || *p == u'q')
                ++p;
            else if (p[0] == u'I' && p[1] == u'6' && p[2] == u'4')
                p += 3;
            else if (p[0] == u'I' && p[1] == u'3' && p[2] == u'2')
                p += 3;
            else if (p[0] == u'I')
                ++p;
            else
                break;
        }
        spec.conversion = *p;
        switch (*p) {
        case u'd': case u'i': case u'u': case u'x': case u'X': case u'o': case u'p':
            FormatInteger(out, spec, take());
            break;
        case u'c': case u'C': {
            const char16_t ch = static_cast<char16_t>(take().AsUnsigned());
            Emit(out, spec, {}, std::u16string_view(&ch, 1));
            break;
        }
        case u's': case u'S':
            FormatText(out, spec, take());
            break;
        case u'f': case u'F': case u'e': case u'E': case u'g': case u'G': case u'a': case u'A':
            FormatDouble(out, spec, take().AsDouble());
            break;
        default:
            // Not a conversion: keep the text as written.
            out.Append(std::u16string_view(start, static_cast<size_t>((*p ? p + 1 : p) - start)));
            break;
        }
        if (*p)
            ++p;
    }
    return out;
}

#pragma once

#include <cstdint>

// The class bits of every ASCII character, worked out at compile time.
struct HVXMLCharTable
{
    enum : uint8_t
    {
        kSpace = 1,          // space, tab, line feed, carriage return
        kTagNameEnd = 2,     // space, "/", ">"
        kAttrNameEnd = 4,    // "= \t\n\r>/?"
        kNotNameStart = 8,   // digits, space, punctuation up to "9", and ;<=>?@[\]^`
        kPathNameEnd = 16,   // " =/[]"
        kValueEnd = 32,      // space, ">": the end of an unquoted attribute value
    };
    uint8_t bits[128];

    static constexpr HVXMLCharTable Make()
    {
        HVXMLCharTable t{};
        for (int c = 0; c < 128; ++c) {
            uint8_t b = 0;
            const bool space = c == ' ' || c == '\t' || c == '\n' || c == '\r';
            if (space)
                b |= kSpace | kTagNameEnd | kAttrNameEnd | kValueEnd;
            if (c == '/' || c == '>')
                b |= kTagNameEnd;
            if (c == '=' || c == '>' || c == '/' || c == '?')
                b |= kAttrNameEnd;
            if (c == '>')
                b |= kValueEnd;
            if (c <= '9' || c == ';' || c == '<' || c == '=' || c == '>' || c == '?' || c == '@' || c == '[' ||
                c == '\\' || c == ']' || c == '^' || c == '`')
                b |= kNotNameStart;
            if (c == ' ' || c == '=' || c == '/' || c == '[' || c == ']')
                b |= kPathNameEnd;
            t.bits[c] = b;
        }
        return t;
    }
};
inline constexpr HVXMLCharTable kHVXMLCharTable = HVXMLCharTable::Make();

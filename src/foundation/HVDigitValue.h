#pragma once

#include <type_traits>

// The value of one digit of a number written in base 10 or 16 (either case), or -1 when `c` is
// not such a digit. Takes any character type, so that UTF-8 bytes and UTF-16 units read alike.
template <typename Char>
constexpr int HVDigitValue(Char c, int base = 16)
{
    const auto u = static_cast<char32_t>(static_cast<std::make_unsigned_t<Char>>(c));
    if (u >= U'0' && u <= U'9')
        return static_cast<int>(u - U'0');
    if (base == 16 && u >= U'a' && u <= U'f')
        return static_cast<int>(u - U'a') + 10;
    if (base == 16 && u >= U'A' && u <= U'F')
        return static_cast<int>(u - U'A') + 10;
    return -1;
}

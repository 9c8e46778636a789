#pragma once

#include "foundation/HVString.h"

#include <string_view>

// Unicode's simple case folding for the characters of the Basic Multilingual Plane: two names
// that fold alike are one name to a file system that ignores case, whatever their script
// ("Д.dll" and "д.dll", "Σ" and "ς", "K" and the Kelvin sign). Folding is at least as wide as
// what Windows itself takes for one name, so a check that refuses names folding alike never
// lets two names through that Windows would open as one file.
class HVCaseFold
{
public:
    static char16_t Fold(char16_t ch);
    static HVString Folded(std::u16string_view text);
};

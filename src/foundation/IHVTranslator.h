#pragma once

#include "foundation/HVString.h"

// Turns an English user-visible text into the current language. Formats are translated
// before their arguments are filled in, so translations keep the "%s" and "%d" markers.
class IHVTranslator
{
public:
    virtual HVString Translate(const HVString& english) const = 0;
    // The language's own name ("Deutsch"), used to pick language-specific setup pictures.
    virtual HVString DisplayLanguage() const { return HVString(u"English"); }

protected:
    ~IHVTranslator() = default;
};

#pragma once

#include "foundation/IHVTranslator.h"

// The process-wide translation service. Every user-visible text passes through Translate;
// with no translator installed, or none for the text, the English text comes back.
class HVTranslator
{
public:
    static void Set(const IHVTranslator* translator);
    static const IHVTranslator* Get();
    static HVString Translate(const HVString& english);
    // "English" with no translator installed.
    static HVString DisplayLanguage();
};

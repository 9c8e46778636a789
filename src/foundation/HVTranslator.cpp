#include "foundation/HVTranslator.h"

#include <atomic>

namespace
{
std::atomic<const IHVTranslator*> g_translator{nullptr};
}

void HVTranslator::Set(const IHVTranslator* translator) { g_translator.store(translator, std::memory_order_release); }

const IHVTranslator* HVTranslator::Get() { return g_translator.load(std::memory_order_acquire); }

HVString HVTranslator::Translate(const HVString& english)
{
    const IHVTranslator* translator = Get();
    if (!translator)
        return english;
    HVString translated = translator->Translate(english);
    return translated.IsEmpty() ? english : translated;
}

HVString HVTranslator::DisplayLanguage()
{
    const IHVTranslator* translator = Get();
    return translator ? translator->DisplayLanguage() : HVString(u"English");
}

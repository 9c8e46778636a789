#pragma once

// The process's translator for as long as it lives: every text it is asked for comes back in
// brackets ("[Cancel]"), except those it is given a translation of. A test then sees which
// texts went through the translator, and in which order translating and filling in happened.
// Header-only, so the native core tests and the Windows test programs share it.
//
//   const BracketTranslator translator({{u"Failed to create %s directory.", u"Ordner %s nicht erstellt."}});
//   EXPECT_EQ(CSelectPathRules::Check(u"F:\\x", u"Sonora", machine).title, u"[Error]");

#include "foundation/HVTranslator.h"

#include <utility>
#include <vector>

class BracketTranslator : public IHVTranslator
{
public:
    explicit BracketTranslator(std::vector<std::pair<HVString, HVString>> translations = {})
        : translations_(std::move(translations))
    {
        HVTranslator::Set(this);
    }
    ~BracketTranslator() { HVTranslator::Set(nullptr); }
    BracketTranslator(const BracketTranslator&) = delete;
    BracketTranslator& operator=(const BracketTranslator&) = delete;

    HVString Translate(const HVString& english) const override
    {
        for (const auto& [text, translation] : translations_)
            if (text == english)
                return translation;
        return u"[" + english + u"]";
    }

private:
    std::vector<std::pair<HVString, HVString>> translations_;
};

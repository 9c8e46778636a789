#pragma once

// A language file as the translation service reads it: the language's name and code and its
// entries as written (one entry of Cancel, translated as the language's name, when none are
// given). Header-only, so the native core tests and the Windows test programs share it.

#include <string>

inline std::string LanguageFileText(const std::string& name, const std::string& code, const std::string& entries = {})
{
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<HVLanguage name=\"" + name + "\" code=\"" + code + "\">" +
           (entries.empty() ? "<Text><English>Cancel</English><Translation>" + name + "</Translation></Text>" : entries) +
           "</HVLanguage>\n";
}

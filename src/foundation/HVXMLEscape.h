#pragma once

#include "foundation/HVString.h"

#include <string_view>

// XML text escaping and entity decoding: the two directions of putting text into a document
// and reading it back. Escape writes all five predefined entities, so any text survives a
// trip through an element's content or an attribute value in quotation marks or apostrophes.
class HVXMLEscape
{
public:
    // "&" "<" ">" "\"" "'" become "&amp;" "&lt;" "&gt;" "&quot;" "&apos;"; nothing else changes.
    static HVString Escape(std::u16string_view text);

    // Replaces the five named references and decimal ("&#65;") or hexadecimal ("&#x41;")
    // character references. A reference that is unknown, unterminated, zero or out of range
    // is kept as it stands, starting with its "&". Never fails.
    static HVString Decode(std::u16string_view text);
    static bool NeedsDecoding(std::u16string_view text);
};

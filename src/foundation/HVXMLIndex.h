#pragma once

#include "foundation/HVXMLElementRecord.h"
#include "foundation/HVXMLRecordStore.h"

#include <cstdint>
#include <string_view>
#include <unordered_map>

// The element records of a document together with the text they point into. It owns the
// records, not the text: the document keeps the text alive for as long as the index is used.
// Everything here reads; the parser is the only writer of records.
class HVXMLIndex
{
public:
    using Elem = uint32_t;   // record index; 0 is the document, and "none" where an element is meant

    HVXMLIndex() = default;
    HVXMLIndex(const HVXMLIndex&) = delete;
    HVXMLIndex& operator=(const HVXMLIndex&) = delete;

    // Starts an index over `text`: records sized for the text, record 0 zeroed.
    bool Reset(const char16_t* text, int32_t length);
    void Clear();

    const char16_t* Text() const { return text_; }
    int32_t TextLength() const { return length_; }
    uint32_t Count() const { return records_.GetCount(); }
    bool IsValid(Elem e) const { return e < records_.GetCount(); }
    size_t GetBytes() const { return records_.GetBytes(); }
    HVXMLRecordStore& Records() { return records_; }
    const HVXMLRecordStore& Records() const { return records_; }

    HVXMLElementRecord& operator[](Elem e) { return records_[e]; }
    const HVXMLElementRecord& operator[](Elem e) const { return records_[e]; }

    // Tag lengths, whatever their size (long ones don't fit the packed word).
    void SetStartTagLength(Elem e, uint32_t length)
    {
        if (length < HVXMLElementRecord::kStartTagMax)
            records_[e].tagLengths = (records_[e].tagLengths & ~HVXMLElementRecord::kStartTagMax) | length;
        else
            SetLongStartTag(e, length);
    }
    void SetEndTagLength(Elem e, uint32_t length)
    {
        if (length < HVXMLElementRecord::kEndTagMax)
            records_[e].tagLengths = (records_[e].tagLengths & HVXMLElementRecord::kStartTagMax) |
                                     (length << HVXMLElementRecord::kEndTagShift);
        else
            SetLongEndTag(e, length);
    }
    uint32_t StartTagLength(Elem e) const;
    uint32_t EndTagLength(Elem e) const;

    Elem Parent(Elem e) const { return records_[e].parent; }
    Elem FirstChild(Elem e) const { return records_[e].firstChild; }
    Elem NextSibling(Elem e) const { return records_[e].nextSibling; }
    Elem PrevSibling(Elem e) const { return records_[e].IsFirstChild() ? 0 : records_[e].prevSibling; }
    Elem LastChild(Elem e) const
    {
        const Elem first = records_[e].firstChild;
        return first ? records_[first].prevSibling : 0;
    }
    // The element after e in document order within the subtree of `top` (e itself inside it),
    // or 0 at the end of that subtree. Walks links, so it never recurses.
    Elem NextInSubtree(Elem e, Elem top) const;

    // Content: between the start tag and the end tag (the whole text for the document).
    int32_t ContentStart(Elem e) const;
    int32_t ContentEnd(Elem e) const;

    std::u16string_view Name(Elem e) const;
    // Whether e's tag name is `name`: exactly, or without regard to case.
    bool NameIs(Elem e, std::u16string_view name, bool ignoreCase) const;
    // The raw (still escaped) value of attribute `name` of e's start tag.
    bool FindAttrib(Elem e, std::u16string_view name, bool ignoreCase, std::u16string_view& value) const;
    // Attributes one by one: start with `cursor` 0; each call gives the next name and raw value,
    // false after the last.
    bool NextAttrib(Elem e, int32_t& cursor, std::u16string_view& name, std::u16string_view& value) const;

    static bool NamesEqual(std::u16string_view a, std::u16string_view b, bool ignoreCase);

private:
    void SetLongStartTag(Elem e, uint32_t length);
    void SetLongEndTag(Elem e, uint32_t length);

    const char16_t* text_ = u"";
    int32_t length_ = 0;
    HVXMLRecordStore records_;
    // True lengths of tags too long for the packed word; empty for any ordinary document.
    std::unordered_map<Elem, uint32_t> longStartTags_;
    std::unordered_map<Elem, uint32_t> longEndTags_;
};

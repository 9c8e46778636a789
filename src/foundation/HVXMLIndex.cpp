#include "foundation/HVXMLIndex.h"

#include "foundation/HVString.h"
#include "foundation/HVXMLTokenizer.h"

#include <algorithm>

bool HVXMLIndex::Reset(const char16_t* text, int32_t length)
{
    Clear();
    text_ = text ? text : u"";
    length_ = text ? std::max(length, 0) : 0;
    // One record for every 64 characters is about what real documents need; the store grows
    // in steps from there.
    return records_.Reset(static_cast<uint32_t>(length_ / 64) + 8);
}

void HVXMLIndex::Clear()
{
    records_.Clear();
    longStartTags_.clear();
    longEndTags_.clear();
    text_ = u"";
    length_ = 0;
}

void HVXMLIndex::SetLongStartTag(Elem e, uint32_t length)
{
    HVXMLElementRecord& r = records_[e];
    r.tagLengths |= HVXMLElementRecord::kStartTagMax;
    longStartTags_[e] = length;
}

void HVXMLIndex::SetLongEndTag(Elem e, uint32_t length)
{
    HVXMLElementRecord& r = records_[e];
    r.tagLengths |= HVXMLElementRecord::kEndTagMax << HVXMLElementRecord::kEndTagShift;
    longEndTags_[e] = length;
}

uint32_t HVXMLIndex::StartTagLength(Elem e) const
{
    const uint32_t packed = records_[e].PackedStartTag();
    if (packed != HVXMLElementRecord::kStartTagMax)
        return packed;
    const auto it = longStartTags_.find(e);
    return it == longStartTags_.end() ? packed : it->second;
}

uint32_t HVXMLIndex::EndTagLength(Elem e) const
{
    const uint32_t packed = records_[e].PackedEndTag();
    if (packed != HVXMLElementRecord::kEndTagMax)
        return packed;
    const auto it = longEndTags_.find(e);
    return it == longEndTags_.end() ? packed : it->second;
}

HVXMLIndex::Elem HVXMLIndex::NextInSubtree(Elem e, Elem top) const
{
    if (const Elem child = FirstChild(e))
        return child;
    while (e != top && e != 0) {
        if (const Elem next = NextSibling(e))
            return next;
        e = Parent(e);
    }
    return 0;
}

int32_t HVXMLIndex::ContentStart(Elem e) const
{
    if (e == 0)
        return 0;
    return records_[e].start + static_cast<int32_t>(StartTagLength(e));
}

int32_t HVXMLIndex::ContentEnd(Elem e) const
{
    if (e == 0)
        return length_;
    const HVXMLElementRecord& r = records_[e];
    const int32_t end = r.start + static_cast<int32_t>(r.length) - static_cast<int32_t>(EndTagLength(e));
    return std::max(end, ContentStart(e));
}

std::u16string_view HVXMLIndex::Name(Elem e) const
{
    if (e == 0)
        return {};
    const HVXMLElementRecord& r = records_[e];
    const int32_t begin = r.start + 1;
    const int32_t limit = r.start + static_cast<int32_t>(StartTagLength(e));
    int32_t i = begin;
    while (i < limit && !HVXMLTokenizer::IsTagNameEnd(text_[i]))
        ++i;
    return {text_ + begin, static_cast<size_t>(i - begin)};
}

bool HVXMLIndex::NamesEqual(std::u16string_view a, std::u16string_view b, bool ignoreCase)
{
    if (a.size() != b.size())
        return false;
    if (!ignoreCase)
        return a == b;
    for (size_t i = 0; i < a.size(); ++i)
        if (a[i] != b[i] && HVString::ToUpper(a[i]) != HVString::ToUpper(b[i]))
            return false;
    return true;
}

bool HVXMLIndex::NameIs(Elem e, std::u16string_view name, bool ignoreCase) const
{
    if (e == 0)
        return false;
    // Compare in place first, so that a mismatch costs no scan of the whole name.
    const HVXMLElementRecord& r = records_[e];
    const int32_t begin = r.start + 1;
    const int32_t limit = r.start + static_cast<int32_t>(StartTagLength(e));
    const int32_t size = static_cast<int32_t>(name.size());
    if (size >= limit - begin)
        return false;   // the ">" must follow the name inside the tag
    const char16_t* t = text_ + begin;
    if (!ignoreCase) {
        for (int32_t i = 0; i < size; ++i)
            if (t[i] != name[static_cast<size_t>(i)])
                return false;
    } else {
        for (int32_t i = 0; i < size; ++i)
            if (t[i] != name[static_cast<size_t>(i)] && HVString::ToUpper(t[i]) != HVString::ToUpper(name[static_cast<size_t>(i)]))
                return false;
    }
    return HVXMLTokenizer::IsTagNameEnd(t[size]);
}

bool HVXMLIndex::FindAttrib(Elem e, std::u16string_view name, bool ignoreCase, std::u16string_view& value) const
{
    int32_t cursor = 0;
    std::u16string_view attrName;
    while (NextAttrib(e, cursor, attrName, value))
        if (NamesEqual(attrName, name, ignoreCase))
            return true;
    return false;
}

bool HVXMLIndex::NextAttrib(Elem e, int32_t& cursor, std::u16string_view& name, std::u16string_view& value) const
{
    if (e == 0 || !IsValid(e))
        return false;
    using T = HVXMLTokenizer;
    const HVXMLElementRecord& r = records_[e];
    // Attributes lie between the name and the final ">" of the start tag.
    const int32_t end = r.start + static_cast<int32_t>(StartTagLength(e)) - 1;
    const char16_t* s = text_;
    int32_t p = cursor;
    if (p <= r.start) {
        p = r.start + 1;
        while (p < end && !T::IsTagNameEnd(s[p]))
            ++p;
    }
    while (p < end) {
        while (p < end && T::IsSpace(s[p]))
            ++p;
        if (p >= end)
            break;
        if (T::IsAttrNameEnd(s[p])) {
            ++p;   // a stray "=", "/" or "?" between attributes
            continue;
        }
        const int32_t nameStart = p;
        while (p < end && !T::IsAttrNameEnd(s[p]))
            ++p;
        name = std::u16string_view(s + nameStart, static_cast<size_t>(p - nameStart));
        while (p < end && T::IsSpace(s[p]))
            ++p;
        int32_t valueStart = p;
        int32_t valueEnd = p;
        if (p < end && s[p] == u'=') {
            ++p;
            while (p < end && T::IsSpace(s[p]))
                ++p;
            if (p < end && (s[p] == u'"' || s[p] == u'\'')) {
                valueStart = p + 1;
                valueEnd = T::FindChar(s, valueStart, end, s[p]);
                p = std::min(valueEnd + 1, end);
            } else {
                valueStart = p;
                while (p < end && !T::IsValueEnd(s[p]))
                    ++p;
                valueEnd = p;
            }
        }
        value = std::u16string_view(s + valueStart, static_cast<size_t>(valueEnd - valueStart));
        cursor = p;
        return true;
    }
    cursor = end;
    return false;
}

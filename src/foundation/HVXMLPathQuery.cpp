#include "foundation/HVXMLPathQuery.h"

#include "foundation/HVXMLEscape.h"
#include "foundation/HVXMLTokenizer.h"

namespace
{
std::u16string_view TrimSpaces(std::u16string_view t)
{
    while (!t.empty() && t.front() == u' ')
        t.remove_prefix(1);
    while (!t.empty() && t.back() == u' ')
        t.remove_suffix(1);
    return t;
}

size_t NameEnd(std::u16string_view t, size_t i)
{
    while (i < t.size() && !HVXMLTokenizer::IsPathNameEnd(t[i]))
        ++i;
    return i;
}

bool ValueEquals(std::u16string_view raw, std::u16string_view wanted)
{
    if (!HVXMLEscape::NeedsDecoding(raw))
        return raw == wanted;
    return HVXMLEscape::Decode(raw).view() == wanted;
}
}   // namespace

HVXMLPathQuery::Elem HVXMLPathQuery::Find(const HVXMLIndex& index, std::u16string_view path, Elem parent,
                                          Elem after, bool ignoreCase)
{
    if (index.Count() == 0 || !index.IsValid(parent) || !index.IsValid(after))
        return 0;
    size_t i = 0;
    Step step;
    Elem found = 0;
    if (path.substr(0, 2) == u"//") {
        i = 2;
        if (!ParseStep(path, i, step))
            return 0;
        const Elem first = after ? index.NextInSubtree(after, parent) : index.FirstChild(parent);
        found = FindInSubtree(index, parent, first, step, ignoreCase);
    } else if (!path.empty() && path[0] == u'/') {
        i = 1;
        if (!ParseStep(path, i, step))
            return 0;
        found = FindSibling(index, index.FirstChild(0), step, ignoreCase);
    } else {
        if (!ParseStep(path, i, step))
            return 0;
        found = FindSibling(index, after ? index.NextSibling(after) : index.FirstChild(parent), step, ignoreCase);
    }
    while (found != 0 && i < path.size()) {
        ++i;   // the "/"
        if (!ParseStep(path, i, step))
            return 0;
        found = FindSibling(index, index.FirstChild(found), step, ignoreCase);
    }
    return found;
}

bool HVXMLPathQuery::ParseStep(std::u16string_view path, size_t& i, Step& step)
{
    step = Step();
    const size_t start = i;
    i = NameEnd(path, i);
    step.name = path.substr(start, i - start);
    step.any = step.name.empty() || step.name == u"*";
    while (i < path.size() && path[i] == u' ')
        ++i;
    if (i < path.size() && path[i] == u'[') {
        size_t j = i + 1;
        char16_t quote = 0;
        for (; j < path.size(); ++j) {
            const char16_t c = path[j];
            if (quote) {
                if (c == quote)
                    quote = 0;
            } else if (c == u'\'' || c == u'"') {
                quote = c;
            } else if (c == u']') {
                break;
            }
        }
        if (j >= path.size())
            return false;
        ParsePredicate(path.substr(i + 1, j - i - 1), step);
        i = j + 1;
        while (i < path.size() && path[i] == u' ')
            ++i;
    }
    return step.predicate != Predicate::kInvalid && (i == path.size() || path[i] == u'/');
}

void HVXMLPathQuery::ParsePredicate(std::u16string_view text, Step& step)
{
    text = TrimSpaces(text);
    step.predicate = Predicate::kInvalid;
    if (text.empty())
        return;
    const char16_t c = text[0];
    if (c >= u'1' && c <= u'9') {
        uint64_t n = 0;
        for (char16_t d : text) {
            if (d < u'0' || d > u'9')
                return;
            n = n * 10 + static_cast<uint64_t>(d - u'0');
            if (n > UINT32_MAX)
                n = UINT32_MAX;   // more than any document can hold: simply never reached
        }
        step.number = static_cast<uint32_t>(n);
        step.predicate = Predicate::kNumber;
        return;
    }
    if (c == u'@') {
        const size_t end = NameEnd(text, 1);
        step.predicateName = text.substr(1, end - 1);
        if (step.predicateName.empty())
            return;
        std::u16string_view rest = TrimSpaces(text.substr(end));
        if (rest.empty()) {
            step.predicate = Predicate::kHasAttrib;
            return;
        }
        if (rest[0] != u'=')
            return;
        rest = TrimSpaces(rest.substr(1));
        if (!rest.empty() && (rest[0] == u'\'' || rest[0] == u'"')) {
            const size_t close = rest.find(rest[0], 1);
            if (close == std::u16string_view::npos || !TrimSpaces(rest.substr(close + 1)).empty())
                return;
            step.value = rest.substr(1, close - 1);
        } else {
            step.value = rest;
        }
        step.predicate = Predicate::kAttribValue;
        return;
    }
    const size_t end = NameEnd(text, 0);
    if (end != text.size())
        return;
    step.predicateName = text;
    step.predicateAny = text == u"*";
    step.predicate = Predicate::kHasChild;
}

bool HVXMLPathQuery::Matches(const HVXMLIndex& index, Elem e, const Step& step, bool ignoreCase)
{
    if (!step.any && !index.NameIs(e, step.name, ignoreCase))
        return false;
    std::u16string_view value;
    switch (step.predicate) {
    case Predicate::kHasAttrib:
        return index.FindAttrib(e, step.predicateName, ignoreCase, value);
    case Predicate::kAttribValue:
        return index.FindAttrib(e, step.predicateName, ignoreCase, value) && ValueEquals(value, step.value);
    case Predicate::kHasChild:
        for (Elem c = index.FirstChild(e); c != 0; c = index.NextSibling(c))
            if (step.predicateAny || index.NameIs(c, step.predicateName, ignoreCase))
                return true;
        return false;
    case Predicate::kInvalid:
        return false;
    case Predicate::kNone:
    case Predicate::kNumber:
        break;
    }
    return true;
}

HVXMLPathQuery::Elem HVXMLPathQuery::FindSibling(const HVXMLIndex& index, Elem first, const Step& step,
                                                 bool ignoreCase)
{
    uint32_t count = 0;
    for (Elem e = first; e != 0; e = index.NextSibling(e)) {
        if (Matches(index, e, step, ignoreCase) && (step.predicate != Predicate::kNumber || ++count == step.number))
            return e;
    }
    return 0;
}

HVXMLPathQuery::Elem HVXMLPathQuery::FindInSubtree(const HVXMLIndex& index, Elem top, Elem first, const Step& step,
                                                   bool ignoreCase)
{
    uint32_t count = 0;
    for (Elem e = first; e != 0; e = index.NextInSubtree(e, top)) {
        if (Matches(index, e, step, ignoreCase) && (step.predicate != Predicate::kNumber || ++count == step.number))
            return e;
    }
    return 0;
}

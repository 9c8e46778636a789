#pragma once

#include "foundation/HVXMLIndex.h"

#include <cstdint>
#include <string_view>

// The small path language of documents: steps separated by "/", each a tag name, "*" or
// nothing (any element), with at most one predicate: [n] the n-th match, [@name] has the
// attribute, [@name='value'] or [@name=value] has it with that value, [name] has such a child.
// "/" at the start selects from the root, "//" searches the whole subtree of the context.
//
// Matching walks sibling links with no copies and no allocation (a predicate value is decoded
// only when the attribute holds a reference), so the n-th of N siblings costs n steps. Each
// step takes the first element that satisfies it; there is no backtracking.
class HVXMLPathQuery
{
public:
    using Elem = HVXMLIndex::Elem;

    // The element `path` selects, or 0. A relative path's first step is matched among the
    // children of `parent` that follow `after` (from the first child when `after` is 0);
    // "//" searches parent's subtree in document order after `after`.
    static Elem Find(const HVXMLIndex& index, std::u16string_view path, Elem parent, Elem after, bool ignoreCase);

private:
    enum class Predicate { kNone, kNumber, kHasAttrib, kAttribValue, kHasChild, kInvalid };

    struct Step
    {
        std::u16string_view name;
        bool any = false;
        Predicate predicate = Predicate::kNone;
        uint32_t number = 0;
        std::u16string_view predicateName;   // attribute or child name
        bool predicateAny = false;            // [*]: any child
        std::u16string_view value;
    };

    // Reads the step at path[i]; leaves i on the "/" that follows or at the end. False when
    // the step is malformed (the query then fails).
    static bool ParseStep(std::u16string_view path, size_t& i, Step& step);
    static void ParsePredicate(std::u16string_view text, Step& step);
    static bool Matches(const HVXMLIndex& index, Elem e, const Step& step, bool ignoreCase);
    static Elem FindSibling(const HVXMLIndex& index, Elem first, const Step& step, bool ignoreCase);
    static Elem FindInSubtree(const HVXMLIndex& index, Elem top, Elem first, const Step& step, bool ignoreCase);
};

#pragma once

#include <cstdint>

// One element of an indexed document: where it lies in the text and how it hangs in the tree.
// Nothing of the element's text is copied; names, data and attributes are read out of the
// document text through these offsets when asked for. Record 0 stands for the document itself.
//
// Invariants:
//   - a start tag never exceeds the element: StartTagLength() <= length;
//   - the first child's prevSibling is the parent's last child (itself for an only child), so
//     appending needs no walk; every other prevSibling is the true previous sibling;
//   - kFirstChild is set on exactly the first child of each parent;
//   - a not-ended element has length == StartTagLength(), no end tag and no children;
//   - the level is the depth at which the start tag was read. Children that move up when their
//     parent turns out not to be ended keep it: renumbering whole subtrees on every such move
//     would make a hostile document quadratic, and nothing reads levels to find elements.
struct HVXMLElementRecord
{
    static constexpr uint32_t kLevelMask = 0x7FFFF;   // deeper levels are stored as the maximum
    static constexpr uint32_t kFirstChild = 0x80000;
    static constexpr uint32_t kNotEnded = 0x100000;
    static constexpr uint32_t kContainsError = 0x200000;
    static constexpr uint32_t kDocumentIllFormed = 0x800000;   // record 0 only

    // Tag lengths share one word: 22 bits of start tag, 10 bits of end tag. A tag too long for
    // its field stores the field's maximum and its true length is kept aside by the document.
    static constexpr uint32_t kStartTagMax = 0x3FFFFF;
    static constexpr uint32_t kEndTagMax = 0x3FF;
    static constexpr uint32_t kEndTagShift = 22;

    int32_t start;          // offset of the "<" of the start tag
    uint32_t length;        // from that "<" through the end tag's ">" (or the start tag's)
    uint32_t tagLengths;    // start tag length (low 22 bits), end tag length (high 10 bits)
    uint32_t flags;         // level in the low bits, then the flag bits above
    uint32_t parent;
    uint32_t firstChild;    // 0: none
    uint32_t nextSibling;   // 0: none
    uint32_t prevSibling;   // see the invariants above

    uint32_t PackedStartTag() const { return tagLengths & kStartTagMax; }
    uint32_t PackedEndTag() const { return tagLengths >> kEndTagShift; }
    uint32_t Level() const { return flags & kLevelMask; }
    bool IsFirstChild() const { return (flags & kFirstChild) != 0; }
    bool IsNotEnded() const { return (flags & kNotEnded) != 0; }
    bool ContainsError() const { return (flags & kContainsError) != 0; }
};

static_assert(sizeof(HVXMLElementRecord) == 32, "records are fixed at 32 bytes");

#pragma once

#include "foundation/HVString.h"
#include "foundation/HVXMLIndex.h"
#include "foundation/HVXMLTokenizer.h"

#include <cstdint>
#include <string_view>
#include <vector>

// Builds the element index of a document in one pass over its text. Only elements get
// records; every other node is found again on demand by the tokenizer. Problems are appended
// to the error text and the scan goes on, so a broken document is indexed as far as it goes.
//
// Nothing here recurses and every step is amortised constant per character or per element:
// open elements live on an explicit stack, end tags that don't close the innermost element are
// looked up through per-name chains instead of a walk down the stack, and the children of an
// element closed as not ended are moved up by splicing lists, with their parent fields fixed
// once per batch of closed elements.
class HVXMLParser
{
public:
    // Past this many characters of error text further messages are dropped (the document is
    // still marked ill-formed): a hostile text can't make the error text outgrow the document.
    static constexpr int32_t kMaxErrorText = 1 << 22;

    HVXMLParser(HVXMLIndex& index, HVString& errors);
    HVXMLParser(const HVXMLParser&) = delete;
    HVXMLParser& operator=(const HVXMLParser&) = delete;

    // Indexes the index's text; the index must be freshly Reset over it.
    void Run();

private:
    using Elem = HVXMLIndex::Elem;

    struct Open
    {
        Elem elem;
        uint32_t nameLength;
        uint32_t hash;
        uint32_t prevSame;   // stack position + 1 of the next open element in the same chain
    };

    // Chains: a power of two up to this many, fewer for small texts so that starting a parse
    // stays cheap.
    static constexpr uint32_t kMaxChains = 1024;
    uint32_t Chain(uint32_t hash) const { return (hash ^ (hash >> 10) ^ (hash >> 20)) & chainMask_; }
    static uint32_t Hash(const char16_t* name, uint32_t length);

    bool StartTag(int32_t lt, int32_t gt, uint32_t nameLength, uint32_t hash);
    void EndTag(int32_t lt, int32_t gt, uint32_t nameLength);
    void CloseTop(int32_t lt, int32_t gt);
    // Closes the open elements from the top of the stack down to stack position `downTo` as
    // not ended. With an end tag given, the message names it as the one that didn't match.
    void CloseNotEnded(size_t downTo, std::u16string_view endName, int32_t endOffset);
    void Push(Elem e, uint32_t nameLength, uint32_t hash)
    {
        uint32_t& chain = chains_[Chain(hash)];
        stack_.push_back({e, nameLength, hash, chain});
        chain = static_cast<uint32_t>(stack_.size());
    }
    void Pop()
    {
        const Open& o = stack_.back();
        chains_[Chain(o.hash)] = o.prevSame;
        stack_.pop_back();
    }

    void TokenError(HVXMLTokenizer::Problem problem, const char16_t* construct, int32_t offset);
    void AddError(const HVString& message);
    bool ErrorsFull() const { return errors_.GetLength() >= kMaxErrorText; }
    // Flags the innermost open element (or the document) as holding an error.
    void MarkError();

    HVXMLIndex& index_;
    HVString& errors_;
    const char16_t* s_ = nullptr;
    int32_t n_ = 0;
    std::vector<Open> stack_;
    std::vector<uint32_t> chains_;
    uint32_t chainMask_ = 0;
};

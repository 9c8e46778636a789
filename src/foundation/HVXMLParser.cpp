#include "foundation/HVXMLParser.h"

#include "foundation/HVLog.h"

#include <algorithm>

namespace
{
bool SameChars(const char16_t* a, const char16_t* b, uint32_t length)
{
    for (uint32_t i = 0; i < length; ++i)
        if (a[i] != b[i])
            return false;
    return true;
}
}   // namespace

HVXMLParser::HVXMLParser(HVXMLIndex& index, HVString& errors) : index_(index), errors_(errors) {}

uint32_t HVXMLParser::Hash(const char16_t* name, uint32_t length)
{
    uint32_t h = 0;
    for (uint32_t i = 0; i < length; ++i)
        h = h * 31 + name[i];
    return h;
}

void HVXMLParser::Run()
{
    using T = HVXMLTokenizer;
    s_ = index_.Text();
    n_ = index_.TextLength();
    const char16_t* const s = s_;
    const int32_t n = n_;
    if (n == 0) {
        AddError(u"Empty document");
        index_[0].flags |= HVXMLElementRecord::kDocumentIllFormed;
        return;
    }
    uint32_t chains = 64;
    while (chains < kMaxChains && chains * 256u < static_cast<uint32_t>(n))
        chains *= 2;
    chainMask_ = chains - 1;
    chains_.assign(chains, 0);
    stack_.clear();
    stack_.reserve(64);

    auto onError = [this](T::Problem problem, const char16_t* construct, int32_t offset) {
        TokenError(problem, construct, offset);
    };
    int32_t pos = 0;
    while (pos < n) {
        if (s[pos] != u'<') {
            pos = T::FindChar(s, pos + 1, n, u'<');
            if (pos >= n)
                break;
        }
        if (pos + 1 >= n) {
            TokenError(T::Problem::kUnterminated, u"tag", pos);
            break;
        }
        const char16_t c = s[pos + 1];
        if (T::IsNameStart(c)) {
            int32_t i = pos + 1;
            uint32_t hash = 0;
            while (i < n && !T::IsTagNameEnd(s[i])) {
                hash = hash * 31 + s[i];
                ++i;
            }
            const int32_t gt = (i < n && s[i] == u'>') ? i : T::FindTagEnd(s, i, n);
            if (gt < 0) {
                TokenError(T::Problem::kUnterminated, u"Element tag", pos);
                break;
            }
            if (!StartTag(pos, gt, static_cast<uint32_t>(i - pos - 1), hash))
                break;
            pos = gt + 1;
        } else if (c == u'/') {
            // Most end tags close the innermost element and are written "</name>": check for
            // exactly that before scanning.
            if (!stack_.empty()) {
                const Open& top = stack_.back();
                const int32_t gt = pos + 2 + static_cast<int32_t>(top.nameLength);
                if (gt < n && s[gt] == u'>' &&
                    SameChars(s + index_[top.elem].start + 1, s + pos + 2, top.nameLength)) {
                    CloseTop(pos, gt);
                    pos = gt + 1;
                    continue;
                }
            }
            const int32_t gt = T::FindChar(s, pos + 2, n, u'>');
            if (gt >= n) {
                TokenError(T::Problem::kUnterminated, u"Element end tag", pos);
                break;
            }
            int32_t e = pos + 2;
            while (e < gt && !T::IsTagNameEnd(s[e]))
                ++e;
            EndTag(pos, gt, static_cast<uint32_t>(e - pos - 2));
            pos = gt + 1;
        } else {
            pos += T::Next(s, n, pos, onError).length;
        }
    }
    if (!stack_.empty())
        CloseNotEnded(0, {}, -1);

    HVXMLElementRecord& document = index_[0];
    document.length = static_cast<uint32_t>(n);
    if (document.firstChild == 0) {
        AddError(u"No root element");
        document.flags |= HVXMLElementRecord::kDocumentIllFormed;
    } else if (index_.NextSibling(document.firstChild) != 0) {
        AddError(u"Root element has sibling");
        document.flags |= HVXMLElementRecord::kDocumentIllFormed;
    }
}

bool HVXMLParser::StartTag(int32_t lt, int32_t gt, uint32_t nameLength, uint32_t hash)
{
    const Elem e = index_.Records().Add();
    if (e == 0) {
        HVLog::Write(HVLog::kError, "HVXMLParser::StartTag", u"Out of memory at offset %d; indexing stopped", lt);
        index_[0].flags |= HVXMLElementRecord::kDocumentIllFormed;
        return false;
    }
    const Elem parent = stack_.empty() ? 0 : stack_.back().elem;
    const uint32_t startLength = static_cast<uint32_t>(gt + 1 - lt);
    HVXMLElementRecord& r = index_[e];
    r.start = lt;
    r.length = startLength;
    r.tagLengths = 0;
    r.flags = std::min<uint32_t>(static_cast<uint32_t>(stack_.size()), HVXMLElementRecord::kLevelMask);
    r.parent = parent;
    r.firstChild = 0;
    r.nextSibling = 0;
    index_.SetStartTagLength(e, startLength);

    HVXMLElementRecord& p = index_[parent];
    if (p.firstChild == 0) {
        p.firstChild = e;
        r.prevSibling = e;
        r.flags |= HVXMLElementRecord::kFirstChild;
    } else {
        HVXMLElementRecord& first = index_[p.firstChild];
        const Elem last = first.prevSibling;
        index_[last].nextSibling = e;
        r.prevSibling = last;
        first.prevSibling = e;
    }
    if (s_[gt - 1] != u'/')
        Push(e, nameLength, hash);
    return true;
}

void HVXMLParser::EndTag(int32_t lt, int32_t gt, uint32_t nameLength)
{
    const char16_t* name = s_ + lt + 2;
    if (!stack_.empty()) {
        const Open& top = stack_.back();
        if (top.nameLength == nameLength && SameChars(s_ + index_[top.elem].start + 1, name, nameLength)) {
            CloseTop(lt, gt);
            return;
        }
        const uint32_t hash = Hash(name, nameLength);
        for (uint32_t k = chains_[Chain(hash)]; k != 0; k = stack_[k - 1].prevSame) {
            const Open& o = stack_[k - 1];
            if (o.hash == hash && o.nameLength == nameLength &&
                SameChars(s_ + index_[o.elem].start + 1, name, nameLength)) {
                CloseNotEnded(k, std::u16string_view(name, nameLength), lt + 1);
                CloseTop(lt, gt);
                return;
            }
        }
    }
    if (!ErrorsFull())
        AddError(HVString::Format(u"No start tag for end tag '%s' at offset %d",
                                  std::u16string_view(name, nameLength), lt + 1));
    MarkError();
}

void HVXMLParser::CloseTop(int32_t lt, int32_t gt)
{
    const Elem e = stack_.back().elem;
    HVXMLElementRecord& r = index_[e];
    r.length = static_cast<uint32_t>(gt + 1 - r.start);
    index_.SetEndTagLength(e, static_cast<uint32_t>(gt + 1 - lt));
    Pop();
}

void HVXMLParser::CloseNotEnded(size_t downTo, std::u16string_view endName, int32_t endOffset)
{
    const Elem outermost = stack_[downTo].elem;
    for (size_t k = stack_.size(); k-- > downTo;) {
        const Open o = stack_[k];
        HVXMLElementRecord& r = index_[o.elem];
        const std::u16string_view name(s_ + r.start + 1, o.nameLength);
        // Past the limit, messages are not even formatted.
        if (!ErrorsFull() && endOffset >= 0)
            AddError(HVString::Format(u"End tag '%s' at offset %d does not match start tag '%s' at offset %d", endName,
                                      endOffset, name, r.start));
        else if (!ErrorsFull())
            AddError(HVString::Format(u"Element '%s' at offset %d not ended", name, r.start));

        // An unclosed element is an empty element followed by what was written inside it.
        r.length = index_.StartTagLength(o.elem);
        r.flags = (r.flags | HVXMLElementRecord::kNotEnded) & ~HVXMLElementRecord::kContainsError;
        HVXMLElementRecord& parent = index_[r.parent];
        parent.flags |= HVXMLElementRecord::kContainsError;
        if (r.firstChild != 0) {
            // r is the last child of its parent (it was open), so its children become the tail
            // of the parent's list. Their parent fields are fixed below, once for the batch.
            const Elem first = r.firstChild;
            HVXMLElementRecord& f = index_[first];
            const Elem last = f.prevSibling;
            f.flags &= ~HVXMLElementRecord::kFirstChild;
            f.prevSibling = o.elem;
            r.nextSibling = first;
            r.firstChild = 0;
            index_[parent.firstChild].prevSibling = last;
        }
        chains_[Chain(o.hash)] = o.prevSame;
    }
    stack_.resize(downTo);
    const Elem newParent = index_[outermost].parent;
    for (Elem x = index_[outermost].nextSibling; x != 0; x = index_[x].nextSibling)
        index_[x].parent = newParent;
    index_[0].flags |= HVXMLElementRecord::kDocumentIllFormed;
}

void HVXMLParser::TokenError(HVXMLTokenizer::Problem problem, const char16_t* construct, int32_t offset)
{
    if (!ErrorsFull() && problem == HVXMLTokenizer::Problem::kUnterminated)
        AddError(HVString::Format(u"%s at offset %d unterminated", construct, offset));
    else if (!ErrorsFull())
        AddError(HVString::Format(u"Incorrect %s at offset %d", construct, offset));
    MarkError();
}

void HVXMLParser::MarkError()
{
    const Elem current = stack_.empty() ? 0 : stack_.back().elem;
    index_[current].flags |= HVXMLElementRecord::kContainsError;
    index_[0].flags |= HVXMLElementRecord::kDocumentIllFormed;
}

void HVXMLParser::AddError(const HVString& message)
{
    if (ErrorsFull())
        return;
    if (!errors_.IsEmpty())
        errors_ += u", ";
    errors_ += message;
}

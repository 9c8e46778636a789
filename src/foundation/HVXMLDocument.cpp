#include "foundation/HVXMLDocument.h"

#include "foundation/HVLog.h"
#include "foundation/HVTextFileReader.h"
#include "foundation/HVXMLEscape.h"
#include "foundation/HVXMLParser.h"
#include "foundation/HVXMLPathQuery.h"

#include <algorithm>

namespace
{
using Tok = HVXMLTokenizer;

// The readers find nodes again after the parse; its problems were reported then.
struct IgnoreProblems
{
    void operator()(Tok::Problem, const char16_t*, int32_t) const {}
};

// Characters [from, to) of the text, clamped to a sane range.
std::u16string_view Slice(const HVString& text, int32_t from, int32_t to)
{
    from = std::clamp(from, 0, text.GetLength());
    to = std::clamp(to, from, text.GetLength());
    return std::u16string_view(text.c_str() + from, static_cast<size_t>(to - from));
}

std::u16string_view Word(std::u16string_view text, size_t from)
{
    size_t end = from;
    while (end < text.size() && !Tok::IsSpace(text[end]) && text[end] != u'?' && text[end] != u'>' &&
           text[end] != u'/' && text[end] != u'[')
        ++end;
    return text.substr(std::min(from, text.size()), end - std::min(from, end));
}
}   // namespace

HVXMLDocument::HVXMLDocument() { Clear(); }

void HVXMLDocument::Clear()
{
    text_.Empty();
    error_.Empty();
    index_.Clear();   // no records at all until a parse: every reader checks for that
    SetCursor(0, 0, 0);
}

bool HVXMLDocument::SetDoc(const HVString& text)
{
    text_ = text;
    error_.Empty();
    SetCursor(0, 0, 0);
    return Parse();
}

bool HVXMLDocument::Parse()
{
    if (!index_.Reset(text_.c_str(), text_.GetLength())) {
        HVLog::Write(HVLog::kError, "HVXMLDocument::Parse", u"Out of memory for the index of %d characters",
                     text_.GetLength());
        index_.Clear();
        return false;
    }
    HVXMLParser(index_, error_).Run();
    return IsWellFormed();
}

bool HVXMLDocument::IsWellFormed() const
{
    if (index_.Count() == 0)
        return false;
    const HVXMLElementRecord& document = index_[0];
    return (document.flags & HVXMLElementRecord::kDocumentIllFormed) == 0 && document.firstChild != 0 &&
           index_.NextSibling(document.firstChild) == 0;
}

void HVXMLDocument::SetCursor(Elem parent, Elem elem, Elem child)
{
    parent_ = parent;
    elem_ = elem;
    child_ = child;
    nodeKind_ = elem ? kNodeElement : 0;
    nodeOffset_ = elem ? index_[elem].start : 0;
    nodeLength_ = elem ? static_cast<int32_t>(index_[elem].length) : 0;
}

bool HVXMLDocument::FindElem(std::u16string_view path)
{
    const Elem found = HVXMLPathQuery::Find(index_, path, parent_, elem_, ignoreCase_);
    if (found == 0)
        return false;
    SetCursor(index_.Parent(found), found, 0);
    return true;
}

bool HVXMLDocument::FindChildElem(std::u16string_view path)
{
    if (GetElem() == 0 && !FindElem())
        return false;
    const Elem found = HVXMLPathQuery::Find(index_, path, elem_, child_, ignoreCase_);
    if (found == 0)
        return false;
    const Elem parent = index_.Parent(found);
    if (parent == elem_) {
        child_ = found;
        return true;
    }
    // A deeper or absolute path: the found element's parent becomes the current element.
    SetCursor(parent ? index_.Parent(parent) : 0, parent, found);
    return true;
}

bool HVXMLDocument::IntoElem()
{
    if (GetElem() == 0)
        return false;
    SetCursor(elem_, child_, 0);
    return true;
}

bool HVXMLDocument::OutOfElem()
{
    if (parent_ == 0)
        return false;
    SetCursor(index_.Parent(parent_), parent_, GetElem());
    return true;
}

void HVXMLDocument::ResetPos() { SetCursor(0, 0, 0); }

void HVXMLDocument::ResetMainPos() { SetCursor(parent_, 0, 0); }

void HVXMLDocument::ResetChildPos() { child_ = 0; }

bool HVXMLDocument::SetElem(Elem e)
{
    if (!IsElem(e))
        return false;
    SetCursor(index_.Parent(e), e, 0);
    return true;
}

HVXMLDocument::Elem HVXMLDocument::Select(std::u16string_view path, Elem context) const
{
    if (!index_.IsValid(context))
        return 0;
    return HVXMLPathQuery::Find(index_, path, context, 0, ignoreCase_);
}

HVString HVXMLDocument::GetTagName() const { return GetElemTagName(GetElem()); }

HVString HVXMLDocument::GetChildTagName() const { return GetElemTagName(child_); }

HVString HVXMLDocument::GetData() const
{
    if (nodeKind_ != 0 && nodeKind_ != kNodeElement)
        return NodeData(nodeKind_, nodeOffset_, nodeLength_);
    return GetElemData(GetElem());
}

HVString HVXMLDocument::GetChildData() const { return GetElemData(child_); }

HVString HVXMLDocument::GetChildData(std::u16string_view path)
{
    child_ = 0;
    return FindChildElem(path) ? GetElemData(child_) : HVString();
}

HVString HVXMLDocument::GetAttrib(std::u16string_view name) const { return GetElemAttrib(GetElem(), name); }

HVString HVXMLDocument::GetChildAttrib(std::u16string_view name) const { return GetElemAttrib(child_, name); }

HVString HVXMLDocument::GetElemTagName(Elem e) const
{
    if (!IsElem(e))
        return HVString();
    return HVString(index_.Name(e));
}

bool HVXMLDocument::GetElemAttrib(Elem e, std::u16string_view name, HVString& value) const
{
    std::u16string_view raw;
    if (!IsElem(e) || !index_.FindAttrib(e, name, ignoreCase_, raw)) {
        value.Empty();
        return false;
    }
    value = HVXMLEscape::Decode(raw);
    return true;
}

HVString HVXMLDocument::GetElemAttrib(Elem e, std::u16string_view name) const
{
    HVString value;
    GetElemAttrib(e, name, value);
    return value;
}

HVString HVXMLDocument::GetElemAttribName(Elem e, int32_t index) const
{
    int32_t cursor = 0;
    std::u16string_view name;
    std::u16string_view value;
    for (int32_t i = 0; IsElem(e) && index_.NextAttrib(e, cursor, name, value); ++i)
        if (i == index)
            return HVString(name);
    return HVString();
}

HVString HVXMLDocument::GetElemData(Elem e) const
{
    if (!IsElem(e))
        return HVString();
    const HVXMLElementRecord& r = index_[e];
    // Elements with child elements have no data; empty and not-ended ones have no content.
    if (r.firstChild != 0 || r.IsNotEnded() || index_.EndTagLength(e) == 0)
        return HVString();
    return ContentData(e);
}

HVString HVXMLDocument::ContentData(Elem e) const
{
    const int32_t from = index_.ContentStart(e);
    const int32_t to = index_.ContentEnd(e);
    const char16_t* s = text_.c_str();
    if (Tok::FindChar(s, from, to, u'<') == to)
        return HVXMLEscape::Decode(Slice(text_, from, to));
    // Mixed content: text and CDATA sections count; whitespace-only runs, comments and
    // processing instructions don't.
    HVString data;
    for (int32_t pos = from; pos < to;) {
        const Tok::Token t = Tok::Next(s, text_.GetLength(), pos, IgnoreProblems());
        const int32_t length = std::clamp(t.length, 1, to - pos);
        if (t.kind == Tok::kText)
            data += HVXMLEscape::Decode(Slice(text_, pos, pos + length));
        else if (t.kind == Tok::kCData)
            data += NodeData(kNodeCData, pos, length);
        pos += length;
    }
    return data;
}

HVString HVXMLDocument::NodeData(int kind, int32_t offset, int32_t length) const
{
    const int32_t end = offset + length;
    switch (kind) {
    case kNodeComment:
        return HVString(Slice(text_, offset + 4, end - 3));
    case kNodeProcessingInstruction:
        return HVString(Slice(text_, offset + 2, end - 2));
    case kNodeCData:
        return HVString(Slice(text_, std::min(offset + 9, end - 3), end - 3));
    case kNodeText:
        return HVXMLEscape::Decode(Slice(text_, offset, end));
    case kNodeLoneEndTag:
        return HVString(Slice(text_, offset + 2, end - 1));
    case kNodeWhitespace:
    case kNodeDocumentType:
        return HVString(Slice(text_, offset, end));
    default:
        return HVString();
    }
}

int HVXMLDocument::FindNode(int kinds)
{
    if (index_.Count() == 0 || !index_.IsValid(parent_))
        return 0;
    const char16_t* s = text_.c_str();
    Elem before = nodeKind_ ? elem_ : 0;
    Elem next = before ? index_.NextSibling(before) : index_.FirstChild(parent_);
    int32_t pos = nodeKind_ ? nodeOffset_ + nodeLength_ : index_.ContentStart(parent_);
    const int32_t end = index_.ContentEnd(parent_);
    while (pos < end) {
        int kind = 0;
        int32_t length = 0;
        if (next != 0 && pos == index_[next].start) {
            kind = kNodeElement;
            length = static_cast<int32_t>(index_[next].length);
        } else {
            const Tok::Token t = Tok::Next(s, text_.GetLength(), pos, IgnoreProblems());
            const int32_t limit = next != 0 && index_[next].start > pos ? index_[next].start : end;
            length = std::clamp(t.length, 1, std::max(limit - pos, 1));
            // A start tag with no record (indexing stopped early) reads as text.
            kind = t.kind == Tok::kElement ? kNodeText : t.kind;
        }
        if (kinds == 0 || (kind & kinds) != 0) {
            if (kind == kNodeElement) {
                SetCursor(parent_, next, 0);
            } else {
                elem_ = before;
                child_ = 0;
                nodeKind_ = kind;
                nodeOffset_ = pos;
                nodeLength_ = length;
            }
            return kind;
        }
        if (kind == kNodeElement) {
            before = next;
            next = index_.NextSibling(next);
        }
        pos += length;
    }
    return 0;
}

HVString HVXMLDocument::GetNodeName() const
{
    const std::u16string_view node = Slice(text_, nodeOffset_, nodeOffset_ + nodeLength_);
    switch (nodeKind_) {
    case kNodeElement:
        return GetElemTagName(elem_);
    case kNodeText:
    case kNodeWhitespace:
        return u"#text";
    case kNodeCData:
        return u"#cdata-section";
    case kNodeComment:
        return u"#comment";
    case kNodeProcessingInstruction:
    case kNodeLoneEndTag:
        return HVString(Word(node, 2));
    case kNodeDocumentType: {
        // "<!DOCTYPE name ...": the second word.
        size_t i = 2;
        while (i < node.size() && !Tok::IsSpace(node[i]) && node[i] != u'>' && node[i] != u'[')
            ++i;
        while (i < node.size() && Tok::IsSpace(node[i]))
            ++i;
        return HVString(Word(node, i));
    }
    default:
        return HVString();
    }
}

HVString HVXMLDocument::DecodeText(const char16_t* text, int32_t length)
{
    if (!text)
        return HVString();
    if (length < 0) {
        length = 0;
        while (text[length] != 0 && length < INT32_MAX / 2)
            ++length;
    }
    return HVXMLEscape::Decode(std::u16string_view(text, static_cast<size_t>(length)));
}

bool HVXMLDocument::Load(const HVString& path)
{
    HVString text;
    if (!HVTextFileReader::Read(path, text)) {
        Clear();
        return false;
    }
    return SetDoc(text);
}

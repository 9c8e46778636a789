#pragma once

#include "foundation/HVString.h"
#include "foundation/HVXMLElementRecord.h"
#include "foundation/HVXMLIndex.h"
#include "foundation/HVXMLTokenizer.h"

#include <cstdint>
#include <string_view>

// The library's XML reader. It keeps the whole document as one wide string and an index of
// element records over it, built in one pass; names, data and attributes are read out of the
// text only when asked for. It is tolerant: a broken document is indexed as far as it goes,
// every problem found is added to GetError(), and IsWellFormed() says whether to trust it.
//
// Position: a cursor of parent element, current element and current child, plus the current
// node when walking non-element nodes with FindNode. FindElem moves among the children of the
// parent, FindChildElem among the children of the current element, IntoElem and OutOfElem
// move the cursor down and up a level.
//
// Paths (see HVXMLPathQuery): "/*/Product/InstallToPath", "Item[2]", "//Item[@id='7']",
// "Entry[Name]"; an empty path or an empty last step matches any element.
//
// One document belongs to one thread at a time.
class HVXMLDocument
{
public:
    using Elem = HVXMLIndex::Elem;   // record index; 0: the document, or none

    enum NodeKind : int
    {
        kNodeElement = HVXMLTokenizer::kElement,
        kNodeText = HVXMLTokenizer::kText,
        kNodeWhitespace = HVXMLTokenizer::kWhitespace,
        kNodeCData = HVXMLTokenizer::kCData,
        kNodeProcessingInstruction = HVXMLTokenizer::kProcessingInstruction,
        kNodeComment = HVXMLTokenizer::kComment,
        kNodeDocumentType = HVXMLTokenizer::kDocumentType,
        kNodeLoneEndTag = HVXMLTokenizer::kLoneEndTag,
    };

    HVXMLDocument();
    HVXMLDocument(const HVXMLDocument&) = delete;
    HVXMLDocument& operator=(const HVXMLDocument&) = delete;

    // Reads the file (by its byte-order mark; otherwise UTF-8, or the system code page when the
    // bytes are not UTF-8) and parses it. Returns the well-formedness flag; false with no parse
    // (an empty document, no error text) when the file can't be read.
    bool Load(const HVString& path);
    // Takes the text (shared, not copied) and parses it. Returns the well-formedness flag.
    bool SetDoc(const HVString& text);
    const HVString& GetDoc() const { return text_; }

    bool IsWellFormed() const;
    const HVString& GetError() const { return error_; }

    // Tag and attribute names in queries compare without regard to case when set.
    void SetIgnoreCase(bool ignoreCase) { ignoreCase_ = ignoreCase; }
    bool GetIgnoreCase() const { return ignoreCase_; }

    bool FindElem(std::u16string_view path = {});
    bool FindChildElem(std::u16string_view path = {});
    bool IntoElem();
    bool OutOfElem();
    // Back to the start of the document / of the parent's children / of the current element's.
    void ResetPos();
    void ResetMainPos();
    void ResetChildPos();

    HVString GetTagName() const;
    HVString GetChildTagName() const;
    HVString GetData() const;
    HVString GetChildData() const;
    HVString GetChildData(std::u16string_view path);
    HVString GetAttrib(std::u16string_view name) const;
    HVString GetChildAttrib(std::u16string_view name) const;

    // Non-element nodes. FindNode moves to the next node among the parent's content whose kind
    // is in `kinds` (0: any) and returns its kind, or 0 (the cursor staying put) when none is
    // left. Element nodes become the current element as with FindElem.
    int FindNode(int kinds = 0);
    int GetNodeType() const { return nodeKind_; }
    HVString GetNodeName() const;

    static HVString DecodeText(const char16_t* text, int32_t length = -1);

    // Elements by record index, for callers that keep hold of an element (0: none).
    Elem GetElem() const { return nodeKind_ == kNodeElement ? elem_ : 0; }
    Elem GetChildElem() const { return child_; }
    Elem GetParentElem() const { return parent_; }
    // Makes e the current element (its parent the parent, no current child).
    bool SetElem(Elem e);
    // The element that `path` selects from `context` (its children, or from the root for an
    // absolute path), without moving the cursor.
    Elem Select(std::u16string_view path, Elem context = 0) const;
    Elem GetFirstChild(Elem e) const { return index_.IsValid(e) ? index_.FirstChild(e) : 0; }
    Elem GetNextSibling(Elem e) const { return IsElem(e) ? index_.NextSibling(e) : 0; }
    Elem GetPrevSibling(Elem e) const { return IsElem(e) ? index_.PrevSibling(e) : 0; }
    Elem GetParent(Elem e) const { return IsElem(e) ? index_.Parent(e) : 0; }
    HVString GetElemTagName(Elem e) const;
    HVString GetElemData(Elem e) const;
    // The decoded value of the attribute; false when e has no such attribute.
    bool GetElemAttrib(Elem e, std::u16string_view name, HVString& value) const;
    HVString GetElemAttrib(Elem e, std::u16string_view name) const;
    // The name of e's index-th attribute (from 0), in the order written; empty past the last.
    HVString GetElemAttribName(Elem e, int32_t index) const;
    HVString GetAttribName(int32_t index) const { return GetElemAttribName(GetElem(), index); }

    // The index itself, for diagnostics and tests: record fields, counts, memory.
    uint32_t GetElemCount() const { return index_.Count() == 0 ? 0 : index_.Count() - 1; }
    const HVXMLElementRecord* GetRecord(Elem e) const { return index_.IsValid(e) ? &index_[e] : nullptr; }
    uint32_t GetStartTagLength(Elem e) const { return IsElem(e) ? index_.StartTagLength(e) : 0; }
    uint32_t GetEndTagLength(Elem e) const { return IsElem(e) ? index_.EndTagLength(e) : 0; }
    size_t GetIndexBytes() const { return index_.GetBytes(); }

private:
    bool IsElem(Elem e) const { return e != 0 && index_.IsValid(e); }
    void Clear();
    bool Parse();
    void SetCursor(Elem parent, Elem elem, Elem child);
    HVString NodeData(int kind, int32_t offset, int32_t length) const;
    HVString ContentData(Elem e) const;

    HVString text_;
    HVString error_;
    HVXMLIndex index_;
    bool ignoreCase_ = false;

    Elem parent_ = 0;
    Elem elem_ = 0;   // the current element; while on a non-element node, the element before it
    Elem child_ = 0;
    int nodeKind_ = 0;
    int32_t nodeOffset_ = 0;
    int32_t nodeLength_ = 0;
};

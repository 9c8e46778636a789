// Arbitrary bytes as a document, twice: taken as UTF-16 directly (SetDoc), and decoded as Load
// decodes a file. Each document is then read in every way a caller can: every node walked with
// the cursor, every element by index, every tag name, datum and attribute, and path queries
// with and without predicates, including one made of the input itself.
#include "foundation/HVTextDecoder.h"
#include "foundation/HVXMLDocument.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

namespace
{
void Check(bool condition)
{
    if (!condition)
        std::abort();
}

// Reads everything the element offers; the results must stay inside the document.
void ReadElement(const HVXMLDocument& doc, HVXMLDocument::Elem e)
{
    const HVString name = doc.GetElemTagName(e);
    Check(name.GetLength() <= doc.GetDoc().GetLength());
    Check(doc.GetElemData(e).GetLength() <= doc.GetDoc().GetLength());
    for (int32_t i = 0; i < 8; ++i) {
        const HVString attrib = doc.GetElemAttribName(e, i);
        if (attrib.IsEmpty())
            break;
        HVString value;
        Check(doc.GetElemAttrib(e, attrib.view(), value));
    }
    const HVXMLElementRecord* r = doc.GetRecord(e);
    Check(r != nullptr);
    Check(r->start >= 0 && static_cast<int64_t>(r->start) + r->length <= doc.GetDoc().GetLength());
    Check(doc.GetStartTagLength(e) <= r->length);
    Check(doc.GetStartTagLength(e) + doc.GetEndTagLength(e) <= r->length);
}

// Every node at every level through the cursor, without recursion.
void WalkNodes(HVXMLDocument& doc)
{
    doc.ResetPos();
    size_t steps = 0;
    const size_t limit = static_cast<size_t>(doc.GetDoc().GetLength()) * 4 + 16;
    for (;;) {
        Check(++steps < limit);   // every step moves on: no walk can take longer than this
        const int kind = doc.FindNode();
        if (kind == 0) {
            if (!doc.OutOfElem())
                break;
            continue;
        }
        const HVString name = doc.GetNodeName();
        const HVString data = doc.GetData();
        Check(data.GetLength() <= doc.GetDoc().GetLength());
        if (kind == HVXMLDocument::kNodeElement) {
            Check(doc.GetElem() != 0);
            Check(doc.GetTagName() == name);
            ReadElement(doc, doc.GetElem());
            Check(doc.IntoElem());
        }
    }
}

// Every element by record index, and the links between them.
void WalkRecords(const HVXMLDocument& doc)
{
    const uint32_t count = doc.GetElemCount();
    for (HVXMLDocument::Elem e = 1; e <= count; ++e) {
        ReadElement(doc, e);
        const HVXMLDocument::Elem parent = doc.GetParent(e);
        Check(parent <= count);
        if (const HVXMLDocument::Elem next = doc.GetNextSibling(e)) {
            Check(doc.GetParent(next) == parent);
            Check(doc.GetPrevSibling(next) == e);
        }
        if (const HVXMLDocument::Elem child = doc.GetFirstChild(e))
            Check(doc.GetParent(child) == e);
    }
}

const char16_t* const kPaths[] = {
    u"", u"/", u"/*/", u"//*[2]", u"/*/*[3]", u"//*[@id]", u"//*[@a='1']", u"//a[b]", u"*[2]/x",
    u"/a[1]/b[@c]/", u"//x[999999999999]", u"a[@b='c", u"a]b", u"///",
};
// Relative paths, also tried from the current element's children.
const char16_t* const kChildPaths[] = {u"", u"*[2]", u"a/b", u"b[@c=d]", u"//*"};

void Query(HVXMLDocument& doc, std::u16string_view extra, bool thorough)
{
    for (const char16_t* path : kPaths) {
        if (!thorough && path[0] != u'/')
            continue;
        doc.ResetPos();
        if (doc.FindElem(path))
            ReadElement(doc, doc.GetElem());
        if (const HVXMLDocument::Elem e = doc.Select(path))
            ReadElement(doc, e);
    }
    doc.ResetPos();
    for (const char16_t* path : kChildPaths) {
        if (doc.FindChildElem(path))
            ReadElement(doc, doc.GetChildElem());
        doc.GetChildData(path);
    }
    doc.ResetPos();
    doc.FindElem(extra);
    doc.FindChildElem(extra);
    doc.Select(extra);
    if (!thorough)
        return;
    // Paths built from what the document holds: its own names, its own attributes.
    const uint32_t count = doc.GetElemCount();
    for (HVXMLDocument::Elem e = 1; e <= count && e <= 8; ++e) {
        const HVString name = doc.GetElemTagName(e);
        doc.Select((u"//" + name + u"[2]").view());
        const HVString attrib = doc.GetElemAttribName(e, 0);
        if (!attrib.IsEmpty())
            doc.Select((u"//" + name + u"[@" + attrib + u"='" + doc.GetElemAttrib(e, attrib.view()) + u"']").view());
    }
}

void Exercise(const HVString& text, std::u16string_view extra)
{
    HVXMLDocument doc;
    const bool wellFormed = doc.SetDoc(text);
    Check(wellFormed == doc.IsWellFormed());
    Check(wellFormed == doc.GetError().IsEmpty());   // every problem is told, and only problems
    WalkNodes(doc);
    WalkRecords(doc);
    Query(doc, extra, true);
    doc.SetIgnoreCase(true);
    Query(doc, extra, false);
    HVXMLDocument::DecodeText(text.c_str(), text.GetLength());
}
}   // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);

    // The last bytes, one character each, as a path to query with.
    const size_t tail = size < 24 ? size : 24;
    HVString extra = HVTextDecoder::DecodeLatin1(bytes.substr(size - tail));

    // Pairs of bytes as UTF-16 units, exactly as given.
    HVString utf16;
    if (size >= 2) {
        char16_t* units = utf16.GetBuffer(static_cast<int32_t>(size / 2));
        for (size_t i = 0; i + 1 < size; i += 2)
            units[i / 2] = static_cast<char16_t>(data[i] | (data[i + 1] << 8));
        utf16.ReleaseBuffer(static_cast<int32_t>(size / 2));
    }
    Exercise(utf16, extra.view());

    // As Load reads a file: byte-order mark, UTF-8, or the fallback.
    Exercise(HVTextDecoder::Decode(bytes), extra.view());
    return 0;
}

#include "foundation/HVFilenameWithProperties.h"

#include "foundation/HVXMLDocument.h"
#include "foundation/HVXMLEscape.h"
#include "foundation/HVXMLTokenizer.h"

namespace
{
constexpr std::u16string_view kRoot = u"XMLFN";
constexpr std::u16string_view kItem = u"Item";
constexpr std::u16string_view kFilenameItem = u"Filename";
}   // namespace

HVString HVFilenameWithProperties::Write(const HVString& path, const HVPropertyMap* properties)
{
    if (!properties || properties->IsEmpty())
        return path;
    HVString text(u"<XMLFN version=\"1.0\"><Item Name=\"Filename\">");
    text += HVXMLEscape::Escape(path);
    text += u"</Item>";
    for (int32_t i = 0; i < properties->GetCount(); ++i) {
        text += u"<Item Name=\"";
        text += HVXMLEscape::Escape(properties->GetNameAt(i));
        text += u"\">";
        text += HVXMLEscape::Escape(properties->GetValueAt(i));
        text += u"</Item>";
    }
    text += u"</XMLFN>";
    return text;
}

bool HVFilenameWithProperties::IsXMLFN(std::u16string_view text)
{
    return text.size() > kRoot.size() + 1 && text[0] == u'<' && text.substr(1, kRoot.size()) == kRoot &&
           HVXMLTokenizer::IsTagNameEnd(text[kRoot.size() + 1]);
}

HVFilenameWithProperties HVFilenameWithProperties::Read(const HVString& text)
{
    HVFilenameWithProperties bare(text);
    if (!IsXMLFN(text.view()))
        return bare;
    HVXMLDocument doc;
    if (!doc.SetDoc(text))
        return bare;
    const HVXMLDocument::Elem root = doc.Select(u"/XMLFN");
    HVString version;
    if (root == 0 || !doc.GetElemAttrib(root, u"version", version))
        return bare;

    HVFilenameWithProperties result;
    bool havePath = false;
    HVString name;
    for (HVXMLDocument::Elem item = doc.GetFirstChild(root); item != 0; item = doc.GetNextSibling(item)) {
        if (doc.GetElemTagName(item) != kItem || !doc.GetElemAttrib(item, u"Name", name))
            continue;
        // The first "Filename" item is the path; a later one is a property of that name, so
        // that a map holding "Filename" still comes back whole.
        if (!havePath && name == kFilenameItem) {
            result.path_ = doc.GetElemData(item);
            havePath = true;
        } else {
            result.properties_.Set(name, doc.GetElemData(item));
        }
    }
    return result;
}

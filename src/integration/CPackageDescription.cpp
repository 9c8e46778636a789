#include "integration/CPackageDescription.h"

#include "foundation/HVXMLDocument.h"

#include <unordered_map>

namespace
{
using Elem = HVXMLDocument::Elem;

HVString Upper(HVString text)
{
    text.Trim();
    text.MakeUpper();
    return text;
}

void ReplaceNoCase(HVString& text, std::u16string_view macro, const HVString& value)
{
    for (int32_t at = text.FindNoCase(macro); at >= 0; at = text.FindNoCase(macro, at + value.GetLength()))
        text = text.Left(at) + value + text.Mid(at + static_cast<int32_t>(macro.size()));
}
}   // namespace

bool CPackageDescription::FileEntry::Has(std::u16string_view word) const
{
    for (const Command& command : commands) {
        if (command.word == word)
            return true;
    }
    return false;
}

uint32_t CPackageDescription::ActionBit(std::u16string_view word)
{
    static const struct
    {
        const char16_t* word;
        uint32_t bit;
    } kWords[] = {
        {u"UNZIPDIR", kUnzipDir},           {u"INSTALLSKIN", kInstallSkin},   {u"INSTALLMINISKIN", kInstallMiniSkin},
        {u"INSTALLTRACKINFO", kInstallTrackInfo}, {u"INSTALLMEDIA", kInstallMedia}, {u"PREVIEWMEDIA", kPreviewMedia},
        {u"NONE", kNone},                   {u"DONT_CLEANUP", kDontCleanup},  {u"SAVE_DIR_STRUCT", kSaveDirStruct},
    };
    const HVString upper = Upper(HVString(word));
    for (const auto& entry : kWords) {
        if (upper == entry.word)
            return entry.bit;
    }
    return 0;
}

void CPackageDescription::AddActionWords(const HVString& text)
{
    int32_t start = 0;
    const int32_t length = text.GetLength();
    for (int32_t i = 0; i <= length; ++i) {
        if (i == length || HVString(u";, |\t\r\n").Find(text[i]) >= 0) {
            actions |= ActionBit(text.Mid(start, i - start).view());
            start = i + 1;
        }
    }
}

bool CPackageDescription::HasActions() const
{
    if (hasActionsKey_ || actions != 0)
        return true;
    for (const FileEntry& entry : files) {
        if (!entry.commands.empty())
            return true;
    }
    return false;
}

void CPackageDescription::ReadFlatLayout(const HVXMLDocument& doc, HVXMLDocument::Elem package)
{
    // The first element of each name, by its name in lower case.
    std::unordered_map<HVString, Elem> keys;
    for (Elem c = doc.GetFirstChild(package); c; c = doc.GetNextSibling(c))
        keys.emplace(HVString(doc.GetElemTagName(c)).MakeLower(), c);
    const auto text = [&](const HVString& key) {
        const auto found = keys.find(HVString(key).MakeLower());
        return found == keys.end() ? HVString() : HVString(doc.GetElemData(found->second)).Trim();
    };
    name = text(u"Name");
    version = text(u"Version");
    const HVString hasActions = text(u"HasActions");
    hasActionsKey_ = !hasActions.IsEmpty() && hasActions != u"0" && !hasActions.EqualsNoCase(u"false");
    AddActionWords(text(u"ActionOpt"));
    // "File1", "File2", ... up to the first missing one; each with "File1Action1", ...
    for (int32_t n = 1;; ++n) {
        const HVString key = HVString::Format(u"File%d", n);
        FileEntry entry;
        entry.file = text(key);
        if (entry.file.IsEmpty())
            break;
        for (int32_t k = 1;; ++k) {
            const auto found = keys.find(HVString::Format(u"%sAction%d", key, k).MakeLower());
            if (found == keys.end())
                break;
            entry.commands.push_back(
                {Upper(doc.GetElemData(found->second)), doc.GetElemAttrib(found->second, u"Param")});
        }
        files.push_back(std::move(entry));
    }
}

bool CPackageDescription::Parse(const HVString& text)
{
    *this = CPackageDescription();
    HVXMLDocument doc;
    if (!doc.SetDoc(text))
        return false;
    // The root element: the document's first child element.
    const Elem root = doc.GetFirstChild(0);
    if (!root || !doc.GetElemTagName(root).EqualsNoCase(u"LWPF"))
        return false;

    for (Elem e = doc.GetFirstChild(root); e; e = doc.GetNextSibling(e)) {
        const HVString tag = doc.GetElemTagName(e);
        if (tag.EqualsNoCase(u"Actions")) {
            bool children = false;
            for (Elem a = doc.GetFirstChild(e); a; a = doc.GetNextSibling(a)) {
                children = true;
                AddActionWords(doc.GetElemData(a));
            }
            if (!children)
                AddActionWords(doc.GetElemData(e));
        } else if (tag.EqualsNoCase(u"FileEntry")) {
            FileEntry entry;
            for (Elem c = doc.GetFirstChild(e); c; c = doc.GetNextSibling(c)) {
                const HVString childTag = doc.GetElemTagName(c);
                if (childTag.EqualsNoCase(u"File"))
                    entry.file = doc.GetElemData(c).Trim();
                else if (childTag.EqualsNoCase(u"FileType"))
                    entry.fileType = doc.GetElemData(c).Trim();
                else if (childTag.EqualsNoCase(u"Action"))
                    entry.commands.push_back({Upper(doc.GetElemAttrib(c, u"Command")), doc.GetElemAttrib(c, u"Param")});
            }
            if (!entry.file.IsEmpty())
                files.push_back(std::move(entry));
        } else if (tag.EqualsNoCase(u"Package")) {
            ReadFlatLayout(doc, e);
        }
    }
    return true;
}

HVString CPackageDescription::ExpandMacros(const HVString& text, const HVString& nameWithVersion,
                                           const HVString& programPath)
{
    HVString result = text;
    ReplaceNoCase(result, u"[NameWithVersion]", nameWithVersion);
    ReplaceNoCase(result, u"[PROGRAMPATH]", programPath);
    ReplaceNoCase(result, u"<PROGRAMPATH>", programPath);
    return result;
}

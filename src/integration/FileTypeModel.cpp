#include "integration/FileTypeModel.h"

#include "foundation/HVLog.h"
#include "foundation/HVTranslator.h"
#include "foundation/HVXMLDocument.h"

#include <unordered_set>

namespace
{
const char16_t* const kListElements[FileTypeModel::kListCount] = {
    u"DescriptionTypes/Audio", u"DescriptionTypes/Image", u"DescriptionTypes/Video", u"DescriptionTypes/Data",
    u"DescriptionTypes/Playlist", u"DescriptionTypes/Unknown", u"DefaultFileTypes", u"DefaultAssocFileTypes",
    u"LWTypes", u"IMGTypes", u"DXTypes", u"RPTypes", u"QTTypes", u"OTTypes",
};
const char16_t* const kMediaTypes[] = {u"Audio", u"Image", u"Video", u"Data", u"Playlist", u"Unknown"};

std::u16string Lower(const HVString& text)
{
    HVString lower = text;
    lower.MakeLower();
    return std::u16string(lower.view());
}

// A registry key name is at most 255 characters and holds no backslash; a control character
// in a file type is a broken file, not a type.
bool CanBeKeyName(const HVString& extension)
{
    if (extension.GetLength() < 2 || extension.GetLength() > 255)
        return false;
    for (int32_t i = 0; i < extension.GetLength(); ++i)
        if (extension[i] == u'\\' || extension[i] < 0x20)
            return false;
    return true;
}
}

std::vector<FileTypeModel::MimeAssociation> FileTypeModel::ReadMime(const HVXMLDocument& document)
{
    std::vector<FileTypeModel::MimeAssociation> mime;
    const auto parent = document.Select(u"/*/MimeAssociations");
    for (auto child = parent ? document.GetFirstChild(parent) : 0; child; child = document.GetNextSibling(child)) {
        FileTypeModel::MimeAssociation pair{document.GetElemAttrib(child, u"Type").Trim(),
                                            document.GetElemAttrib(child, u"Extension").Trim()};
        if (pair.type.IsEmpty())
            continue;
        if (!pair.extension.IsEmpty() && pair.extension[0] != u'.')
            pair.extension.Insert(0, u".");
        mime.push_back(pair);
    }
    return mime;
}

const char16_t* FileTypeModel::ListElement(List list) { return kListElements[list]; }

const char16_t* FileTypeModel::MediaTypeWord(List mediaType) { return kMediaTypes[mediaType <= Unknown ? mediaType : Unknown]; }

FileTypeModel::LoadResult FileTypeModel::Load(HVXMLDocument& document, const Overrides& overrides,
                                              const std::vector<InputPlugin>& plugins)
{
    if (!document.IsWellFormed())
        return LoadResult::NotParsed;
    const auto root = document.Select(u"/*");
    version_ = root ? document.GetElemAttrib(root, u"version") : HVString();
    if (!root || document.GetElemTagName(root) != u"LWFA")
        return LoadResult::WrongRoot;
    if (!IsSupportedVersion(version_))
        return LoadResult::OldVersion;

    for (int list = 0; list < kListCount; ++list) {
        const auto element = document.Select(HVString(u"/*/") + kListElements[list]);
        lists_[list] = SplitList(element ? document.GetElemData(element) : HVString());
        if (list != LWTypes)
            continue;
        for (const InputPlugin& plugin : plugins)
            for (const HVString& extension : SplitList(plugin.extensions)) {
                pluginOf_.emplace(Lower(extension), plugin.name);
                if (!ContainsNoCase(lists_[LWTypes], extension))
                    lists_[LWTypes].push_back(extension);
            }
    }
    if (!overrides.defaultFileTypes.IsEmpty())
        lists_[DefaultFileTypes] = SplitList(overrides.defaultFileTypes);
    if (!overrides.defaultAssocFileTypes.IsEmpty())
        lists_[DefaultAssocFileTypes] = SplitList(overrides.defaultAssocFileTypes);
    mime_ = overrides.mime.empty() ? ReadMime(document) : overrides.mime;
    const auto protocols = document.Select(u"/*/Protocols");
    for (const HVString& name : SplitList(protocols ? document.GetElemData(protocols) : HVString()))
        protocols_.push_back(name.Mid(1));  // the list's items come with a "." in front
    return LoadResult::Loaded;
}

HVString FileTypeModel::MediaType(const HVString& extension) const
{
    for (int list = Audio; list <= Unknown; ++list)
        if (ContainsNoCase(lists_[list], extension))
            return kMediaTypes[list];
    return kMediaTypes[Unknown];
}

HVString FileTypeModel::Description(const HVString& extension) const
{
    HVString name = extension.Mid(1);
    name.MakeUpper();
    const HVString description = HVString::Format(HVTranslator::Translate(u"%s %s file").c_str(), name,
                                                  HVTranslator::Translate(MediaType(extension)));
    const auto plugin = pluginOf_.find(Lower(extension));
    return plugin == pluginOf_.end() ? description : HVString::Format(u"%s (%s)", description, plugin->second);
}

std::vector<HVString> FileTypeModel::KnownExtensions() const
{
    std::vector<HVString> all;
    std::unordered_set<std::u16string> seen;
    for (const std::vector<HVString>& list : lists_)
        for (const HVString& extension : list)
            if (seen.insert(Lower(extension)).second)
                all.push_back(extension);
    return all;
}

HVString FileTypeModel::SelectedMediaTypes(const std::vector<HVString>& chosen) const
{
    bool selected[Unknown + 1] = {};
    for (const HVString& extension : chosen)
        for (int list = Audio; list <= Unknown; ++list)
            selected[list] |= MediaType(extension) == kMediaTypes[list];
    std::vector<HVString> words;
    for (int list = Audio; list <= Unknown; ++list)
        if (selected[list])
            words.emplace_back(kMediaTypes[list]);
    return words.empty() ? HVString(u"NONE") : JoinList(words);
}

std::vector<HVString> FileTypeModel::SplitList(const HVString& text)
{
    std::vector<HVString> items;
    std::unordered_set<std::u16string> seen;
    for (int32_t start = 0; start <= text.GetLength();) {
        int32_t end = text.Find(u';', start);
        if (end == HVString::npos)
            end = text.GetLength();
        HVString item = text.Mid(start, end - start).Trim();
        start = end + 1;
        if (item.IsEmpty())
            continue;
        if (item[0] != u'.')
            item.Insert(0, u".");
        if (!CanBeKeyName(item)) {
            HVLog::Write(HVLog::kWarning, "FileTypeModel::SplitList", u"File type \"%s\" left out: not a registry key name",
                         item.Left(64));
            continue;
        }
        if (!seen.insert(Lower(item)).second) {
            HVLog::Write(HVLog::kDetail, "FileTypeModel::SplitList", u"File type %s listed twice", item);
            continue;
        }
        items.push_back(item);
    }
    return items;
}

HVString FileTypeModel::JoinList(const std::vector<HVString>& extensions)
{
    HVString text;
    for (const HVString& extension : extensions) {
        if (!text.IsEmpty())
            text += u';';
        text += extension;
    }
    return text;
}

bool FileTypeModel::ContainsNoCase(const std::vector<HVString>& list, const HVString& extension)
{
    for (const HVString& item : list)
        if (item.EqualsNoCase(extension))
            return true;
    return false;
}

HVString FileTypeModel::ProgIdFor(const HVString& extension, const HVString& productWithVersion,
                                  const HVString& mimeExtension)
{
    if (extension.EqualsNoCase(u".mpl"))
        return productWithVersion + u".Playlist";
    if (extension.EqualsNoCase(u".wsz"))
        return productWithVersion + u".Pack";
    for (const char16_t* feed : {u".feed", u".itpc", u".opml", u".pcast", u".podcast", u".rss", u".xml"})
        if (extension.EqualsNoCase(feed))
            return productWithVersion + u".Subscribe";
    if (!mimeExtension.IsEmpty() && extension.EqualsNoCase(mimeExtension))
        return productWithVersion + u".Mime";
    return productWithVersion + u".File";
}

HVString FileTypeModel::BackupValueName(const HVString& productWithVersion, const HVString& valueName)
{
    HVString name = productWithVersion + u"." + (valueName.IsEmpty() ? HVString(u"Default") : valueName) + u".BAK";
    name.Replace(u" ", u"");
    return name;
}

bool FileTypeModel::IsForeign(const HVString& progId, const HVString& productWithVersion)
{
    const int32_t dot = progId.Find(u'.');
    const HVString owner = dot == HVString::npos ? progId : progId.Left(dot);
    return owner != productWithVersion;
}

bool FileTypeModel::IsSupportedVersion(const HVString& version)
{
    // Whole and fraction digits by hand: the decimal separator is always ".", whatever the locale.
    const HVString text = HVString(version).Trim();
    int64_t whole = 0;
    int32_t at = 0;
    for (; at < text.GetLength() && text[at] >= u'0' && text[at] <= u'9'; ++at)
        whole = whole < 1000000 ? whole * 10 + (text[at] - u'0') : whole;
    if (at == 0)
        return false;
    if (at < text.GetLength() && text[at] != u'.')
        return false;
    for (int32_t i = at + 1; i < text.GetLength(); ++i)
        if (text[i] < u'0' || text[i] > u'9')
            return false;
    return whole >= 1;
}

#pragma once

#include "foundation/HVString.h"

#include <cstdint>
#include <unordered_map>
#include <vector>

class HVXMLDocument;

// The media file types the product knows, from "FileAssociations.xml": fourteen lists of
// extensions, the media type and description of each extension, and the MIME associations.
// Extensions are kept with their leading "." as written; lists are compared without case.
class FileTypeModel
{
public:
    enum List
    {
        Audio, Image, Video, Data, Playlist, Unknown,  // DescriptionTypes/..., the media types
        DefaultFileTypes, DefaultAssocFileTypes,
        LWTypes, IMGTypes, DXTypes, RPTypes, QTTypes, OTTypes,
        kListCount
    };
    // "DescriptionTypes/Audio", ..., "OTTypes": the element under the root.
    static const char16_t* ListElement(List list);
    // "Audio", ..., "Unknown".
    static const char16_t* MediaTypeWord(List mediaType);

    struct MimeAssociation
    {
        HVString type;       // "audio/mpeg"
        HVString extension;  // ".mp3"
    };
    struct InputPlugin
    {
        HVString name;
        HVString extensions;  // ";"-separated, as the plug-in reports them
    };
    // What the install description says over the file (empty: the file's own).
    struct Overrides
    {
        HVString defaultFileTypes;
        HVString defaultAssocFileTypes;
        std::vector<MimeAssociation> mime;
    };

    enum class LoadResult { Loaded, NotParsed, WrongRoot, OldVersion };
    // The document as parsed from the file; plug-in extensions join LWTypes.
    LoadResult Load(HVXMLDocument& document, const Overrides& overrides, const std::vector<InputPlugin>& plugins);

    const std::vector<HVString>& Get(List list) const { return lists_[list]; }
    // The media type word of the first DescriptionTypes list that holds it; "Unknown" otherwise.
    HVString MediaType(const HVString& extension) const;
    HVString Description(const HVString& extension) const;
    const std::vector<MimeAssociation>& MimeAssociations() const { return mime_; }
    const HVString& Version() const { return version_; }
    // URL protocols the product opens ("Protocols": ";"-separated names such as "itpc").
    const std::vector<HVString>& Protocols() const { return protocols_; }
    // Every extension of every list, once, in list order: the rows the user chooses from.
    std::vector<HVString> KnownExtensions() const;
    // The media types of the chosen extensions, ";"-separated in media-type order; "NONE"
    // when nothing is chosen.
    HVString SelectedMediaTypes(const std::vector<HVString>& chosen) const;

    // Items of a ";"-separated list: blanks trimmed, a "." put in front where missing; empty
    // items, duplicates and names that can't be a registry key are left out (and logged).
    static std::vector<HVString> SplitList(const HVString& text);
    static HVString JoinList(const std::vector<HVString>& extensions);
    // The pairs under "/*/MimeAssociations" (<Mime Type=".." Extension=".."/>), an extension
    // given a "." where it has none; a pair without a type is left out.
    static std::vector<MimeAssociation> ReadMime(const HVXMLDocument& document);
    static bool ContainsNoCase(const std::vector<HVString>& list, const HVString& extension);
    // The ProgID of this product for an extension.
    static HVString ProgIdFor(const HVString& extension, const HVString& productWithVersion, const HVString& mimeExtension);
    // Where another program's value is kept: "<pwv>.<name>.BAK" without blanks, "Default" for "".
    static HVString BackupValueName(const HVString& productWithVersion, const HVString& valueName);
    // A ProgID whose owner (the text before its first ".") is not this product version.
    static bool IsForeign(const HVString& progId, const HVString& productWithVersion);
    // "version" of the root: a decimal number of at least 1.0.
    static bool IsSupportedVersion(const HVString& version);

private:
    std::vector<HVString> lists_[kListCount];
    std::vector<MimeAssociation> mime_;
    std::unordered_map<std::u16string, HVString> pluginOf_;  // lower-case extension -> plug-in name
    std::vector<HVString> protocols_;
    HVString version_;
};

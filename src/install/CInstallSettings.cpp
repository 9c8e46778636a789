#include "install/CInstallSettings.h"

#include "foundation/HVLog.h"

#include <vector>

namespace
{
bool IsPathSeparator(char16_t c) { return c == u'\\' || c == u'/'; }
bool IsAsciiSpace(char16_t c) { return c == u' ' || c == u'\t' || c == u'\r' || c == u'\n'; }

std::u16string_view Trim(std::u16string_view t)
{
    while (!t.empty() && IsAsciiSpace(t.front()))
        t.remove_prefix(1);
    while (!t.empty() && IsAsciiSpace(t.back()))
        t.remove_suffix(1);
    return t;
}

bool HasDrive(std::u16string_view p)
{
    return p.size() >= 2 && p[1] == u':' && ((p[0] >= u'A' && p[0] <= u'Z') || (p[0] >= u'a' && p[0] <= u'z'));
}

bool IsAbsolute(std::u16string_view p) { return HasDrive(p) || (p.size() >= 2 && IsPathSeparator(p[0]) && IsPathSeparator(p[1])); }

// Length of the part of a path that ".." never climbs above, and its normalised text.
size_t RootOf(std::u16string_view p, HVString& root)
{
    auto component = [&](size_t from) {
        size_t end = from;
        while (end < p.size() && !IsPathSeparator(p[end]))
            ++end;
        return end;
    };
    if (p.size() >= 4 && IsPathSeparator(p[0]) && IsPathSeparator(p[1]) && (p[2] == u'?' || p[2] == u'.') &&
        IsPathSeparator(p[3])) {
        // "\\?\C:\..." or "\\?\UNC\server\share\..."
        const std::u16string_view rest = p.substr(4);
        root = u"\\\\";
        root += p[2];
        root += u'\\';
        if (HasDrive(rest)) {
            root += rest.substr(0, 2);
            root += u'\\';
            return 6;
        }
        if (rest.size() >= 3 && (rest.substr(0, 3) == u"UNC" || rest.substr(0, 3) == u"unc") &&
            (rest.size() == 3 || IsPathSeparator(rest[3]))) {
            const size_t server = component(8);
            const size_t share = component(server + 1);
            root += u"UNC\\";
            root += p.substr(8, server - 8);
            root += u'\\';
            if (server < p.size()) {
                root += p.substr(server + 1, share - server - 1);
                root += u'\\';
            }
            return share;
        }
        return 4;
    }
    if (p.size() >= 2 && IsPathSeparator(p[0]) && IsPathSeparator(p[1])) {
        const size_t server = component(2);
        const size_t share = server < p.size() ? component(server + 1) : server;
        root = u"\\\\";
        root += p.substr(2, server - 2);
        root += u'\\';
        if (server < p.size()) {
            root += p.substr(server + 1, share - server - 1);
            root += u'\\';
        }
        return share;
    }
    if (HasDrive(p)) {
        root = p.substr(0, 2);
        root += u'\\';
        return 2;
    }
    if (!p.empty() && IsPathSeparator(p[0])) {
        root = u"\\";
        return 1;
    }
    root.Empty();
    return 0;
}
}   // namespace

CInstallSettings CInstallSettings::Read(const HVInstallDescription& description, const HVString& installXmlPath,
                                        const FolderExists& folderExists)
{
    CInstallSettings settings;
    const HVXMLDocument& doc = description.GetDocument();
    const HVXMLDocument::Elem root = doc.Select(u"/*");
    HVString version;
    if (root == 0 || doc.GetElemTagName(root) != u"HVIC" || !doc.GetElemAttrib(root, u"version", version) ||
        !IsSupportedVersion(version.view()))
        return settings;
    settings.applies_ = true;

    const HVXMLDocument::Elem element = doc.Select(u"Settings", root);
    if (element == 0)
        return settings;
    auto existingFolder = [&](std::u16string_view attribute) {
        const HVString folder = ResolveFolder(installXmlPath, doc.GetElemAttrib(element, attribute).view());
        if (folder.IsEmpty())
            return HVString();
        if (!folderExists || !folderExists(folder)) {
            HVLog::Write(HVLog::kWarning, "CInstallSettings::Read", u"%s folder %s does not exist; not used",
                         attribute, folder);
            return HVString();
        }
        return folder;
    };
    settings.supportFolder_ = existingFolder(u"SupportFiles");
    int32_t allow = 0;
    settings.allowDowngrade_ =
        HVInstallDescription::ParseInteger(doc.GetElemAttrib(element, u"AllowDowngrade").view(), allow) && allow != 0;
    settings.bundledMediaFolder_ = existingFolder(u"BundledMedia");
    return settings;
}

HVString CInstallSettings::ResolveFolder(const HVString& installXmlPath, std::u16string_view value)
{
    value = Trim(value);
    if (value.empty())
        return HVString();
    if (IsAbsolute(value))
        return NormalizeFolder(value);
    const std::u16string_view xml = installXmlPath.view();
    size_t cut = xml.size();
    while (cut > 0 && !IsPathSeparator(xml[cut - 1]))
        --cut;
    HVString joined(xml.substr(0, cut));
    if (!joined.IsEmpty())
        joined += u'\\';
    joined += value;
    return NormalizeFolder(joined.view());
}

HVString CInstallSettings::NormalizeFolder(std::u16string_view path)
{
    HVString result;
    const size_t rootLength = RootOf(path, result);
    const bool absolute = !result.IsEmpty();
    std::vector<std::u16string_view> parts;
    size_t i = rootLength;
    while (i < path.size()) {
        size_t end = i;
        while (end < path.size() && !IsPathSeparator(path[end]))
            ++end;
        const std::u16string_view part = path.substr(i, end - i);
        if (part == u"..") {
            if (!parts.empty() && parts.back() != u"..")
                parts.pop_back();
            else if (!absolute)
                parts.push_back(part);   // a relative path may climb; a root can't be left
        } else if (!part.empty() && part != u".") {
            parts.push_back(part);
        }
        i = end + 1;
    }
    for (const std::u16string_view part : parts) {
        result += part;
        result += u'\\';
    }
    if (result.IsEmpty())
        result = u".\\";
    return result;
}

bool CInstallSettings::IsSupportedVersion(std::u16string_view version)
{
    version = Trim(version);
    if (!version.empty() && version[0] == u'+')
        version.remove_prefix(1);
    bool wholeAboveZero = false;
    bool digits = false;
    size_t i = 0;
    for (; i < version.size() && version[i] >= u'0' && version[i] <= u'9'; ++i) {
        digits = true;
        wholeAboveZero = wholeAboveZero || version[i] != u'0';
    }
    if (i < version.size() && version[i] == u'.') {
        for (++i; i < version.size() && version[i] >= u'0' && version[i] <= u'9'; ++i)
            digits = true;
    }
    return digits && i == version.size() && wholeAboveZero;
}

CInstallSettings CInstallSettings::Read(const HVString& installXmlPath, const FolderExists& folderExists)
{
    HVInstallDescription description;
    if (!description.Load(installXmlPath))
        return CInstallSettings();
    return Read(description, installXmlPath, folderExists);
}

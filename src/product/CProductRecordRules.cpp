#include "product/CProductRecordRules.h"

#include "foundation/HVDigitValue.h"

#include <algorithm>

namespace
{
constexpr uint32_t kRegSz = 1;
constexpr uint32_t kRegDword = 4;
constexpr const char16_t* kAppDataPath = u"[App Data Path]";

// FNV-1a over the folder's case-folded code units: stable across runs and builds.
uint32_t FolderHash(const HVString& folder)
{
    uint32_t hash = 2166136261u;
    for (char16_t ch : folder.view()) {
        const char16_t folded = HVString::ToUpper(ch);
        hash = (hash ^ static_cast<uint32_t>(folded & 0xFF)) * 16777619u;
        hash = (hash ^ static_cast<uint32_t>(folded >> 8)) * 16777619u;
    }
    return hash;
}

bool ContainsNoCase(const std::vector<HVString>& list, const HVString& name)
{
    return std::any_of(list.begin(), list.end(), [&](const HVString& item) { return item.EqualsNoCase(name.view()); });
}
}

HVString CProductRecordRules::InstallationKeyName(const HVString& majorVersionName, bool portable,
                                                  const HVString& installFolder)
{
    if (!portable)
        return majorVersionName;
    HVString folder = installFolder;
    folder.TrimRight(u"\\");
    return HVString::Format(u"%s Portable %08X", majorVersionName, FolderHash(folder));
}

std::vector<HVString> CProductRecordRules::EarlierVersionRoots(const HVString& displayName, int32_t currentMajorVersion)
{
    std::vector<HVString> roots;
    for (int32_t version = currentMajorVersion - 1; version >= 1; --version)
        roots.push_back(HVString::Format(u"Software\\Halvard\\%s %d", displayName, version));
    return roots;
}

bool CProductRecordRules::IsLibraryPathSetting(const HVString& name)
{
    return name.EqualsNoCase(u"LibraryPath") || name.EqualsNoCase(u"File Location - Image File Location");
}

const std::vector<HVString>& CProductRecordRules::DataFolders()
{
    static const std::vector<HVString> folders = {u"Data",          u"Custom Resources", u"Custom Art",
                                                  u"Custom Skin Items", u"Custom Webpages", u"Skins",
                                                  u"Visualizations", u"Settings",      u"Cover Art",
                                                  u"Thumbnails"};
    return folders;
}

HVString CProductRecordRules::RewriteLibraryPath(const HVString& path, const HVString& earlierInstallFolder)
{
    HVString folder = earlierInstallFolder;
    folder.TrimRight(u"\\");
    if (folder.IsEmpty())
        return path;
    folder += u'\\';
    if (!path.StartsWithNoCase(folder.view()))
        return path;
    const HVString rest = path.Mid(folder.GetLength());
    for (const HVString& data : DataFolders()) {
        if (rest.StartsWithNoCase(data.view()) &&
            (rest.GetLength() == data.GetLength() || rest[data.GetLength()] == u'\\'))
            return kAppDataPath + rest;
    }
    return path;
}

const std::vector<HVString>& CProductRecordRules::RetiredKeys()
{
    static const std::vector<HVString> keys = {u"Plugins\\RemoteControl", u"Plugins\\Interface",
                                               u"Portable Devices\\Conversion", u"Plugins\\UPnP Server",
                                               u"Plugins\\Library Server", u"Plugins\\last.fm"};
    return keys;
}

const std::vector<HVString>& CProductRecordRules::RetiredSettings()
{
    static const std::vector<HVString> settings = {u"Install - Start Version", u"Install - Create Start Menu"};
    return settings;
}

bool CProductRecordRules::IsRetiredSetting(const HVString& name) { return ContainsNoCase(RetiredSettings(), name); }

HVString CProductRecordRules::DescribeData(uint32_t type, const std::vector<uint8_t>& data)
{
    if (type == kRegDword && data.size() == 4) {
        const uint32_t value = data[0] | (data[1] << 8) | (data[2] << 16) | (static_cast<uint32_t>(data[3]) << 24);
        return HVString::Format(u"dword:%08x", value);
    }
    if (type == kRegSz && data.size() % 2 == 0) {
        HVString text(u"\"");
        for (size_t i = 0; i + 1 < data.size(); i += 2) {
            const char16_t ch = static_cast<char16_t>(data[i] | (data[i + 1] << 8));
            if (ch == 0)
                break;
            if (ch == u'\\' || ch == u'"')
                text += u'\\';
            text += ch;
        }
        return text + u'"';
    }
    HVString text = HVString::Format(u"hex(%x):", type);
    for (size_t i = 0; i < data.size(); ++i)
        text.AppendFormat(i ? u",%02x" : u"%02x", data[i]);
    return text;
}

bool CProductRecordRules::ReadData(const HVString& text, uint32_t& type, std::vector<uint8_t>& data)
{
    const std::u16string_view view = text.view();
    data.clear();
    auto readHex = [&](std::u16string_view digits, uint32_t& value) {
        value = 0;
        if (digits.empty() || digits.size() > 8)
            return false;
        for (char16_t ch : digits) {
            const int digit = HVDigitValue(ch);
            if (digit < 0)
                return false;
            value = value << 4 | static_cast<uint32_t>(digit);
        }
        return true;
    };
    if (view.size() >= 2 && view.front() == u'"' && view.back() == u'"') {
        type = kRegSz;
        for (size_t i = 1; i + 1 < view.size(); ++i) {
            char16_t ch = view[i];
            if (ch == u'\\') {
                if (i + 2 >= view.size())
                    return false;
                ch = view[++i];
            }
            data.push_back(static_cast<uint8_t>(ch & 0xFF));
            data.push_back(static_cast<uint8_t>(ch >> 8));
        }
        data.push_back(0);
        data.push_back(0);
        return true;
    }
    if (view.starts_with(u"dword:")) {
        uint32_t value = 0;
        if (view.size() != 14 || !readHex(view.substr(6), value))
            return false;
        type = kRegDword;
        for (int shift = 0; shift < 32; shift += 8)
            data.push_back(static_cast<uint8_t>(value >> shift));
        return true;
    }
    const size_t close = view.find(u"):");
    if (!view.starts_with(u"hex(") || close == std::u16string_view::npos || !readHex(view.substr(4, close - 4), type))
        return false;
    std::u16string_view bytes = view.substr(close + 2);
    while (!bytes.empty()) {
        uint32_t value = 0;
        const size_t comma = bytes.find(u',');
        if (!readHex(bytes.substr(0, comma), value) || value > 0xFF || (comma != bytes.npos && comma + 1 == bytes.size()))
            return false;
        data.push_back(static_cast<uint8_t>(value));
        bytes = comma == bytes.npos ? std::u16string_view() : bytes.substr(comma + 1);
    }
    return true;
}

HVString CProductRecordRules::DateText(int32_t year, int32_t month, int32_t day)
{
    return HVString::Format(u"%04d%02d%02d", year, month, day);
}

uint32_t CProductRecordRules::SizeInKilobytes(uint64_t bytes)
{
    const uint64_t kilobytes = bytes / 1024 + (bytes % 1024 ? 1 : 0);
    return static_cast<uint32_t>(std::min<uint64_t>(kilobytes, 0xFFFFFFFFu));
}

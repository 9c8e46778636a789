#include "foundation/HVFileSystemPath.h"

#include "foundation/HVTranslator.h"

#include <vector>

namespace
{
constexpr std::u16string_view kLongPrefix = u"\\\\?\\";
constexpr std::u16string_view kLongUncPrefix = u"\\\\?\\UNC\\";
constexpr std::u16string_view kDevicePrefix = u"\\\\.\\";

bool IsAsciiLetter(char16_t ch) { return (ch >= u'a' && ch <= u'z') || (ch >= u'A' && ch <= u'Z'); }
bool IsAsciiDigit(char16_t ch) { return ch >= u'0' && ch <= u'9'; }
bool IsSeparator(char16_t ch) { return ch == u'\\' || ch == u'/'; }

bool StartsWith(std::u16string_view text, std::u16string_view prefix)
{
    return text.substr(0, prefix.size()) == prefix;
}

bool StartsWithNoCase(std::u16string_view text, std::u16string_view prefix)
{
    if (text.size() < prefix.size())
        return false;
    for (size_t i = 0; i < prefix.size(); ++i)
        if (HVString::ToUpper(text[i]) != HVString::ToUpper(prefix[i]))
            return false;
    return true;
}

// "X:\" with a real drive letter.
bool IsDriveAbsolute(std::u16string_view path)
{
    return path.size() >= 3 && IsAsciiLetter(path[0]) && path[1] == u':' && IsSeparator(path[2]);
}

// Length of "server\share\" (or "server\share" at the end) at the start of `rest`.
size_t ServerShareLength(std::u16string_view rest)
{
    size_t server = rest.find_first_of(u"\\/");
    if (server == std::u16string_view::npos)
        return rest.size();
    size_t share = rest.find_first_of(u"\\/", server + 1);
    return share == std::u16string_view::npos ? rest.size() : share + 1;
}
}

bool HVFileSystemPath::HasLongPathPrefix(std::u16string_view path) { return StartsWith(path, kLongPrefix); }

bool HVFileSystemPath::IsNetworkPath(std::u16string_view path)
{
    if (StartsWithNoCase(path, kLongUncPrefix))
        return true;
    if (HasLongPathPrefix(path))
        return false;
    return path.size() >= 3 && path[0] == u'\\' && path[1] == u'\\' &&
           (IsAsciiLetter(path[2]) || IsAsciiDigit(path[2]));
}

bool HVFileSystemPath::IsAbsolute(std::u16string_view path)
{
    if (StartsWithNoCase(path, kLongUncPrefix))
        return path.size() > kLongUncPrefix.size();
    if (HasLongPathPrefix(path))
        path.remove_prefix(kLongPrefix.size());
    if (path.size() >= 3 && IsAsciiLetter(path[0]) && path[1] == u':' && path[2] == u'\\')
        return true;
    return IsNetworkPath(path);
}

int32_t HVFileSystemPath::RootLength(std::u16string_view path)
{
    if (StartsWithNoCase(path, kLongUncPrefix))
        return static_cast<int32_t>(kLongUncPrefix.size() + ServerShareLength(path.substr(kLongUncPrefix.size())));
    if (HasLongPathPrefix(path))
        return static_cast<int32_t>(kLongPrefix.size()) + RootLength(path.substr(kLongPrefix.size()));
    if (IsDriveAbsolute(path))
        return 3;
    if (path.size() >= 2 && IsAsciiLetter(path[0]) && path[1] == u':')
        return 2;
    if (path.size() >= 2 && IsSeparator(path[0]) && IsSeparator(path[1]))
        return static_cast<int32_t>(2 + ServerShareLength(path.substr(2)));
    if (!path.empty() && IsSeparator(path[0]))
        return 1;
    return 0;
}

HVString HVFileSystemPath::ResolveDots(const HVString& path)
{
    if (HasLongPathPrefix(path.view()))
        return ToLongPath(ResolveDots(FromLongPath(path)));

    HVString text = path;
    text.Replace(u'/', u'\\');
    const int32_t rootLength = RootLength(text.view());
    HVString root = text.Left(rootLength);
    const std::u16string_view rest = text.view().substr(static_cast<size_t>(rootLength));

    std::vector<std::u16string_view> parts;
    bool trailing = !rest.empty() && rest.back() == u'\\';
    size_t start = 0;
    while (start <= rest.size()) {
        size_t end = rest.find(u'\\', start);
        if (end == std::u16string_view::npos)
            end = rest.size();
        std::u16string_view part = rest.substr(start, end - start);
        if (part == u"..") {
            if (!parts.empty() && parts.back() != u"..")
                parts.pop_back();
            else if (root.IsEmpty())
                parts.push_back(part);   // a relative path can't resolve it; keep it
            trailing = true;
        } else if (part == u".") {
            trailing = true;
        } else if (!part.empty()) {
            parts.push_back(part);
            trailing = end < rest.size();
        }
        start = end + 1;
    }

    HVString result = root;
    if (!parts.empty() && !result.IsEmpty() && !result.EndsWith(u"\\") && !(result.GetLength() == 2 && result[1] == u':'))
        result += u'\\';
    for (size_t i = 0; i < parts.size(); ++i) {
        if (i > 0)
            result += u'\\';
        result += parts[i];
    }
    if (trailing && !parts.empty())
        result += u'\\';
    return result;
}

HVString HVFileSystemPath::NormalizeFolderPath(const HVString& path)
{
    HVString trimmed = path;
    trimmed.Trim();
    if (trimmed.IsEmpty())
        return trimmed;
    return AddBackslash(ResolveDots(trimmed));
}

HVString HVFileSystemPath::ToLongPath(const HVString& path)
{
    const std::u16string_view view = path.view();
    if (view.empty() || HasLongPathPrefix(view) || StartsWith(view, kDevicePrefix))
        return path;
    if (IsDriveAbsolute(view))
        return kLongPrefix + ResolveDots(path);
    if (view.size() >= 3 && IsSeparator(view[0]) && IsSeparator(view[1]) && view[2] != u'?' && view[2] != u'.')
        return kLongUncPrefix + ResolveDots(path).Mid(2);
    return path;
}

HVString HVFileSystemPath::FromLongPath(const HVString& path)
{
    if (StartsWithNoCase(path.view(), kLongUncPrefix))
        return u"\\\\" + path.Mid(static_cast<int32_t>(kLongUncPrefix.size()));
    if (HasLongPathPrefix(path.view()))
        return path.Mid(static_cast<int32_t>(kLongPrefix.size()));
    return path;
}

HVString HVFileSystemPath::AddBackslash(const HVString& path)
{
    if (path.IsEmpty() || path.EndsWith(u"\\"))
        return path;
    return path + u'\\';
}

HVString HVFileSystemPath::RemoveBackslash(const HVString& path)
{
    HVString result = path;
    const int32_t keep = RootLength(result.view()) == 3 && IsDriveAbsolute(result.view()) ? 3 : 0;
    int32_t length = result.GetLength();
    while (length > keep && result[length - 1] == u'\\')
        --length;
    result.Truncate(length);
    return result;
}

HVString HVFileSystemPath::GetFolder(const HVString& path)
{
    const int32_t slash = path.ReverseFind(u'\\');
    return slash < 0 ? HVString() : path.Left(slash + 1);
}

HVString HVFileSystemPath::GetFileName(const HVString& path)
{
    HVString trimmed = path;
    int32_t length = trimmed.GetLength();
    while (length > 0 && trimmed[length - 1] == u'\\')
        --length;
    trimmed.Truncate(length);
    const int32_t slash = trimmed.ReverseFind(u'\\');
    return slash < 0 ? trimmed : trimmed.Mid(slash + 1);
}

bool HVFileSystemPath::IsInvalidPathChar(char16_t ch)
{
    return std::u16string_view(u":/*?\"<>|").find(ch) != std::u16string_view::npos;
}

void HVFileSystemPath::CleanPath(HVString& path)
{
    // The prefix holds a "?", which the character rule below would otherwise replace.
    HVString prefix;
    if (HasLongPathPrefix(path.view())) {
        prefix = path.Left(static_cast<int32_t>(kLongPrefix.size()));
        path = path.Mid(static_cast<int32_t>(kLongPrefix.size()));
    }

    // Windows drops trailing spaces and points of a component when it opens a file, so a
    // folder made as "Music \" would be found under another name afterwards.
    while (path.Replace(u" \\", u"\\") + path.Replace(u".\\", u"\\") + path.Replace(u"\\ ", u"\\") > 0) {
    }

    int32_t leading = 0;
    while (leading < path.GetLength() && path[leading] == u'\\')
        ++leading;
    const int32_t keep = leading >= 2 ? 2 : leading;
    HVString rest = path.Mid(leading);
    while (rest.Replace(u"\\\\", u"\\") > 0) {
    }
    path = HVString(std::u16string_view(u"\\\\").substr(0, static_cast<size_t>(keep))) + rest;

    for (int32_t i = 0; i < path.GetLength(); ++i) {
        const char16_t ch = path[i];
        if (ch < 32)
            path.SetAt(i, u' ');
        else if (ch == u':' && i == 1 && IsAsciiLetter(path[0]))
            continue;
        else if (IsInvalidPathChar(ch))
            path.SetAt(i, u'_');
    }
    if (!prefix.IsEmpty())
        path = prefix + path;
}

HVString HVFileSystemPath::NextUniqueName(const HVString& path)
{
    HVString body = path;
    const bool folder = body.EndsWith(u"\\");
    int32_t length = body.GetLength();
    while (length > 0 && body[length - 1] == u'\\')
        --length;
    body.Truncate(length);

    const int32_t nameStart = body.ReverseFind(u'\\') + 1;
    int32_t extension = body.ReverseFind(u'.');
    if (folder || extension <= nameStart)
        extension = body.GetLength();
    HVString base = body.Left(extension);
    const HVString tail = body.Mid(extension);

    // Count up a number this rule put there before, so that "a - 1" is followed by "a - 2"
    // rather than "a - 1 - 1".
    int64_t number = 1;
    int32_t digits = 0;
    while (digits < 9 && digits < base.GetLength() && IsAsciiDigit(base[base.GetLength() - 1 - digits]))
        ++digits;
    const int32_t markerAt = base.GetLength() - digits - 3;
    if (digits > 0 && markerAt >= nameStart && base.Mid(markerAt, 3) == u" - ") {
        number = 0;
        for (int32_t i = base.GetLength() - digits; i < base.GetLength(); ++i)
            number = number * 10 + (base[i] - u'0');
        ++number;
        base.Truncate(markerAt);
    }
    HVString result = base + HVString::Format(u" - %d", number) + tail;
    if (folder)
        result += u'\\';
    return result;
}

HVString HVFileSystemPath::FileSizeText(uint64_t bytes)
{
    if (bytes < 1024)
        return HVString::Format(HVTranslator::Translate(u"%d bytes").c_str(), bytes);

    static const char16_t* const kUnits[] = {u"KB", u"MB", u"GB", u"TB", u"PB"};
    int unit = 0;
    int shift = 10;
    while (unit < 4 && bytes >= (uint64_t(1) << (shift + 10))) {
        ++unit;
        shift += 10;
    }
    const uint64_t whole = bytes >> shift;
    const uint64_t remainder = bytes & ((uint64_t(1) << shift) - 1);   // below 2^50, so *100 fits
    if (whole < 10)
        return HVString::Format(u"%d.%02d %s", whole, (remainder * 100) >> shift, kUnits[unit]);
    if (whole < 100)
        return HVString::Format(u"%d.%d %s", whole, (remainder * 10) >> shift, kUnits[unit]);
    return HVString::Format(u"%d %s", whole, kUnits[unit]);
}

bool HVFileSystemPath::IsThumbsDb(std::u16string_view name)
{
    return name.size() == 9 && StartsWithNoCase(name, u"Thumbs.db");
}

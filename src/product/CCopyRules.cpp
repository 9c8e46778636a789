#include "product/CCopyRules.h"

#include "foundation/HVFileSystemPath.h"

namespace
{
constexpr std::u16string_view kVersionCheckedExtensions[] = {u".dll", u".exe", u".ocx", u".ax"};
constexpr std::u16string_view kRegisteredExtensions[] = {u".dll", u".ocx"};

template <size_t N>
bool EndsWithAny(const HVString& path, const std::u16string_view (&suffixes)[N])
{
    for (std::u16string_view suffix : suffixes)
        if (path.EndsWithNoCase(suffix))
            return true;
    return false;
}
}

bool CCopyRules::IsVersionChecked(const HVString& path)
{
    return EndsWithAny(path, kVersionCheckedExtensions);
}

bool CCopyRules::ShouldCopy(int32_t mode, const HVString& destinationPath, const CVersionInfo& source,
                            const CVersionInfo& destination)
{
    if (mode != kCopyVersionCheck || !IsVersionChecked(destinationPath))
        return true;
    return destination < source;
}

bool CCopyRules::IsInFontsFolder(const HVString& path)
{
    return path.FindNoCase(u"\\Windows\\Fonts\\") >= 0;
}

HVString CCopyRules::FontTableName(const HVString& path)
{
    HVString name = path.Mid(path.ReverseFind(u'\\') + 1);
    const int32_t dot = name.ReverseFind(u'.');
    if (dot <= 0)
        return name;
    const HVString extension = name.Mid(dot);
    name.Truncate(dot);
    if (extension.EqualsNoCase(u".ttf") || extension.EqualsNoCase(u".ttc"))
        name += u" (TrueType)";
    else if (extension.EqualsNoCase(u".otf"))
        name += u" (OpenType)";
    return name;
}

bool CCopyRules::IsServerProgram(const HVString& path)
{
    // At the end of the path only, so "OldDynamoServer.exe" matches as the original rule did.
    return path.EndsWithNoCase(u"DynamoServer.exe");
}

bool CCopyRules::IsShellExtension(const HVString& path)
{
    return HVFileSystemPath::GetFileName(path).EqualsNoCase(u"HVShellExt.dll");
}

bool CCopyRules::MayRegister(const HVString& path)
{
    return EndsWithAny(path, kRegisteredExtensions);
}

bool CCopyRules::IsInputPlugin(const HVString& path)
{
    return HVFileSystemPath::GetFileName(path).StartsWithNoCase(u"in_");
}

bool CCopyRules::MentionsServer(const HVString& path)
{
    return path.FindNoCase(u"Dynamo") >= 0;
}

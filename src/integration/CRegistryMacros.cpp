#include "integration/CRegistryMacros.h"

HVString CRegistryMacros::Expand(const HVString& line) const
{
    HVString out = line;
    const std::pair<const char16_t*, const HVString*> values[] = {
        {u"[INSTALLDIR]", &installDir},     {u"[SYSTEMDIR]", &systemDir},
        {u"[CURRENTDIR]", &currentDir},     {u"[PRODUCTNAME]", &productName},
        {u"[PRODUCTWITHVERSION]", &productWithVersion}, {u"[EXEPATH]", &exePath},
        {u"[LAUNCHERPATH]", &launcherPath}, {u"[LAUNCHERNAME]", &launcherName},
    };
    out.Replace(u"[AUTOPLAYKEY]", kAutoplayKey);
    for (const auto& [macro, value] : values)
        out.Replace(macro, value->view());

    constexpr std::u16string_view kArt = u"[CUSTOMART]";
    const int32_t at = out.Find(kArt);
    if (at == HVString::npos)
        return out;
    const int32_t nameStart = at + static_cast<int32_t>(kArt.size());
    const int32_t quote = out.Find(u'"', nameStart);
    const int32_t nameEnd = quote == HVString::npos ? out.GetLength() : quote;
    const HVString name = out.Mid(nameStart, nameEnd - nameStart);
    const HVString path = findArt ? findArt(name) : name;
    return out.Left(at) + path + out.Mid(nameEnd);
}

bool CRegistryMacros::NeedsBothViews(const HVString& line)
{
    return line.Find(u"[AUTOPLAYKEY]") != HVString::npos;
}

#include "changes/CComponentRules.h"

#include "foundation/CVersionInfo.h"

namespace
{
constexpr int32_t kWindows10 = 1012;

std::u16string_view Trimmed(std::u16string_view text)
{
    while (!text.empty() && (text.front() == u' ' || text.front() == u'\t'))
        text.remove_prefix(1);
    while (!text.empty() && (text.back() == u' ' || text.back() == u'\t' || text.back() == u'\r'))
        text.remove_suffix(1);
    return text;
}

bool EqualsNoCase(std::u16string_view a, std::u16string_view b)
{
    if (a.size() != b.size())
        return false;
    for (size_t i = 0; i < a.size(); ++i) {
        const auto lower = [](char16_t c) { return c >= u'A' && c <= u'Z' ? char16_t(c + 32) : c; };
        if (lower(a[i]) != lower(b[i]))
            return false;
    }
    return true;
}
}

HVString CComponentRules::DriverDescription(int32_t windowsCode)
{
    return windowsCode >= kWindows10 ? u"Drivers\\WDM\\Win10\\HalvardWDMDriver.inf"
                                     : u"Drivers\\WDM\\Win8\\HalvardWDMDriver.inf";
}

HVString CComponentRules::DriverVersion(std::u16string_view infText)
{
    bool inVersion = false;
    while (!infText.empty()) {
        const size_t end = infText.find(u'\n');
        std::u16string_view line = Trimmed(infText.substr(0, end));
        infText = end == std::u16string_view::npos ? std::u16string_view() : infText.substr(end + 1);
        if (const size_t comment = line.find(u';'); comment != std::u16string_view::npos)
            line = Trimmed(line.substr(0, comment));
        if (line.starts_with(u"[")) {
            inVersion = EqualsNoCase(line, u"[Version]");
            continue;
        }
        const size_t equals = line.find(u'=');
        if (!inVersion || equals == std::u16string_view::npos || !EqualsNoCase(Trimmed(line.substr(0, equals)), u"DriverVer"))
            continue;
        const std::u16string_view value = line.substr(equals + 1);
        const size_t comma = value.find(u',');
        CVersionInfo version;
        if (comma == std::u16string_view::npos || !CVersionInfo::Parse(Trimmed(value.substr(comma + 1)), version))
            return HVString();
        return version.GetText();
    }
    return HVString();
}

bool CComponentRules::DriverNeedsInstall(const HVString& setupVersion, const HVString& installedVersion)
{
    CVersionInfo setup;
    CVersionInfo installed;
    if (!CVersionInfo::Parse(setupVersion, setup))
        return false;
    return !CVersionInfo::Parse(installedVersion, installed) || installed.IsZero() || installed < setup;
}

HVString CComponentRules::RegSvr32Parameters(const HVString& dllPath, const HVString& extraSwitch)
{
    const HVString extra = extraSwitch.IsEmpty() ? HVString() : extraSwitch + u" ";
    return HVString::Format(u"/s %s\"%s\"", extra, dllPath);
}

#include "product/CProductIdentityRules.h"

#include <algorithm>

bool CProductIdentityRules::IsServerEdition(std::u16string_view launcherName)
{
    // A distributor may spell the launcher "DYNAMO.EXE" or "dynamo.exe": it is the same edition.
    constexpr std::u16string_view kWord = u"dynamo";
    const auto lower = [](char16_t ch) { return ch >= u'A' && ch <= u'Z' ? char16_t(ch - u'A' + u'a') : ch; };
    return std::search(launcherName.begin(), launcherName.end(), kWord.begin(), kWord.end(),
                       [&](char16_t a, char16_t b) { return lower(a) == b; }) != launcherName.end();
}

std::vector<int32_t> CProductIdentityRules::DefaultFeatures(std::u16string_view launcherName)
{
    std::vector<int32_t> features = {kFeatureToolShortcut, kFeaturePortableInstall, kFeatureFileAssociations};
    if (IsServerEdition(launcherName))
        features.push_back(kFeatureServer);
    std::sort(features.begin(), features.end());
    return features;
}

std::vector<int32_t> CProductIdentityRules::ParseFeatures(std::u16string_view text, std::u16string_view launcherName)
{
    std::vector<int32_t> features;
    size_t start = 0;
    while (start <= text.size()) {
        size_t end = text.find(u';', start);
        if (end == std::u16string_view::npos)
            end = text.size();
        std::u16string_view entry = text.substr(start, end - start);
        while (!entry.empty() && (entry.front() == u' ' || entry.front() == u'\t'))
            entry.remove_prefix(1);
        while (!entry.empty() && (entry.back() == u' ' || entry.back() == u'\t'))
            entry.remove_suffix(1);
        bool usable = !entry.empty() && entry.size() <= 9;
        int32_t number = 0;
        for (char16_t ch : usable ? entry : std::u16string_view()) {
            if (ch < u'0' || ch > u'9') {
                usable = false;
                break;
            }
            number = number * 10 + (ch - u'0');
        }
        if (usable)
            features.push_back(number);
        start = end + 1;
    }
    if (features.empty())
        return DefaultFeatures(launcherName);
    std::sort(features.begin(), features.end());
    features.erase(std::unique(features.begin(), features.end()), features.end());
    return features;
}

int32_t CProductIdentityRules::VersionInteger(const CVersionInfo& version)
{
    const uint32_t major = std::min<uint32_t>(version.GetMajor(), 0x7F);
    const uint32_t minor = std::min<uint32_t>(version.GetMinor(), 0xFF);
    return static_cast<int32_t>((major << 24) | (minor << 16) | version.GetBuild());
}

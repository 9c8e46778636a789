#include "engine/CDependencyRules.h"

bool CDependencyRules::ParseVersion(std::u16string_view text, int32_t (&parts)[4])
{
    size_t at = 0;
    for (int i = 0; i < 4; ++i) {
        if (i > 0) {
            if (at >= text.size() || text[at] != u'.')
                return false;
            ++at;
        }
        const size_t start = at;
        int64_t value = 0;
        while (at < text.size() && text[at] >= u'0' && text[at] <= u'9' && at - start < 9)
            value = value * 10 + (text[at++] - u'0');
        if (at == start || (at < text.size() && text[at] >= u'0' && text[at] <= u'9'))
            return false;
        parts[i] = static_cast<int32_t>(value);
    }
    return at == text.size();
}

bool CDependencyRules::EdgeRuntimePresent(std::u16string_view pv)
{
    int32_t v[4] = {};
    if (!ParseVersion(pv, v))
        return false;
    const auto [a, b, c, d] = v;
    return a > 119 || (a == 119 && b >= 1) || (a == 119 && b == 0 && c >= 2152) ||
           (a == 119 && b == 0 && c == 2151 && d >= 40);
}

HVString CDependencyRules::DownloadAddress(const HVString& base, const HVString& fileName)
{
    HVString address = base;
    address.Trim();
    if (!address.IsEmpty() && address[address.GetLength() - 1] != u'/')
        address += u"/";
    return address + fileName;
}

HVString CDependencyRules::TemporaryDownloadPath(const HVString& temporaryFolder, int32_t number)
{
    return HVString::Format(u"%sHV Download (%d).dat", temporaryFolder, number);
}

HVString CDependencyRules::DescribeBytes(uint64_t received, uint64_t announced)
{
    const auto text = [](uint64_t bytes) {
        if (bytes < 1024 * 1024)
            return HVString::Format(u"%d KB", static_cast<int64_t>((bytes + 1023) / 1024));
        return HVString::Format(u"%.1f MB", static_cast<double>(bytes) / (1024.0 * 1024.0));
    };
    return announced == 0 ? text(received) : text(received) + u" of " + text(announced);
}

#include "foundation/CVersionInfo.h"

bool CVersionInfo::Parse(std::u16string_view text, CVersionInfo& out)
{
    while (!text.empty() && (text.front() == u' ' || text.front() == u'\t'))
        text.remove_prefix(1);
    while (!text.empty() && (text.back() == u' ' || text.back() == u'\t'))
        text.remove_suffix(1);
    if (text.empty())
        return false;

    uint32_t parts[4] = {0, 0, 0, 0};
    size_t count = 0;
    size_t start = 0;
    while (true) {
        if (count == 4)
            return false;
        size_t end = text.find(u'.', start);
        if (end == std::u16string_view::npos)
            end = text.size();
        if (end == start)
            return false;
        uint32_t value = 0;
        for (size_t i = start; i < end; ++i) {
            const char16_t ch = text[i];
            if (ch < u'0' || ch > u'9')
                return false;
            value = value * 10 + static_cast<uint32_t>(ch - u'0');
            if (value > 0xFFFF)
                return false;
        }
        parts[count++] = value;
        if (end == text.size())
            break;
        start = end + 1;
    }
    out = CVersionInfo(static_cast<uint16_t>(parts[0]), static_cast<uint16_t>(parts[1]),
                       static_cast<uint16_t>(parts[2]), static_cast<uint16_t>(parts[3]));
    return true;
}

HVString CVersionInfo::GetText() const
{
    return HVString::Format(u"%d.%d.%d.%d", major_, minor_, build_, revision_);
}

HVString CVersionInfo::GetShortText() const { return HVString::Format(u"%d.%d.%d", major_, minor_, build_); }

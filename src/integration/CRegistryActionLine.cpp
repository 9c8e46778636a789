#include "integration/CRegistryActionLine.h"

#include <vector>

std::optional<CRegistryActionLine::Root> CRegistryActionLine::RootMarker(const HVString& line)
{
    if (line == u"HKEY_CLASSES_ROOT")
        return Root::ClassesRoot;
    if (line == u"HKEY_CURRENT_USER")
        return Root::CurrentUser;
    if (line == u"HKEY_LOCAL_MACHINE")
        return Root::LocalMachine;
    return std::nullopt;
}

std::optional<CRegistryActionLine> CRegistryActionLine::Parse(const HVString& line)
{
    std::vector<HVString> fields;
    int32_t start = 0;
    for (;;) {
        const int32_t bar = line.Find(u'|', start);
        fields.push_back(line.Mid(start, bar == HVString::npos ? HVString::npos : bar - start));
        if (bar == HVString::npos || fields.size() > 5)
            break;
        start = bar + 1;
    }
    if (fields.size() != 5)
        return std::nullopt;
    CRegistryActionLine parsed;
    parsed.keyPath = fields[0];
    // Only the capitalised word is the unnamed value; "default" is a value of that name.
    parsed.valueName = fields[1] == u"Default" ? HVString() : fields[1];
    parsed.data = fields[2];
    parsed.isString = fields[3] == u"STRING";
    parsed.action = fields[4] == u"DELETE" ? Action::Delete : fields[4] == u"CREATE" ? Action::Create : Action::Set;
    return parsed;
}

int32_t CRegistryActionLine::Number(const HVString& data)
{
    int32_t at = 0;
    const int32_t length = data.GetLength();
    while (at < length && (data[at] == u' ' || data[at] == u'\t'))
        ++at;
    bool negative = false;
    if (at < length && (data[at] == u'-' || data[at] == u'+'))
        negative = data[at++] == u'-';
    int64_t value = 0;
    for (; at < length && data[at] >= u'0' && data[at] <= u'9'; ++at) {
        value = value * 10 + (data[at] - u'0');
        if (value > 0xFFFFFFFFll)
            break;
    }
    // Wraps like the 32-bit conversion the registry's DWORD receives.
    return static_cast<int32_t>(static_cast<uint32_t>(negative ? -value : value));
}

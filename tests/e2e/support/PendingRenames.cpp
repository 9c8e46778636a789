#include "PendingRenames.h"

#include "foundation/win/HVRegKey.h"

#include <algorithm>

namespace e2e
{
namespace
{
constexpr const char16_t* kValue = u"PendingFileRenameOperations";

HVRegKey SessionManager()
{
    HVRegKey key;
    key.Open(HKEY_LOCAL_MACHINE, u"System\\CurrentControlSet\\Control\\Session Manager", KEY_READ | KEY_WRITE);
    return key;
}
}

PendingRenames::PendingRenames()
{
    SessionManager().QueryMultiString(kValue, before_);
}

PendingRenames::~PendingRenames()
{
    HVRegKey key = SessionManager();
    if (before_.empty())
        key.DeleteValue(kValue);
    else
        key.SetMultiString(kValue, before_);
}

bool PendingRenames::Names(const HVString& destination) { return Count(destination) > 0; }

size_t PendingRenames::Count(const HVString& destination)
{
    std::vector<HVString> entries;
    SessionManager().QueryMultiString(kValue, entries);
    return static_cast<size_t>(std::count_if(entries.begin(), entries.end(),
                                             [&](const HVString& entry) { return entry.EndsWithNoCase(destination.view()); }));
}
}

#include "PendingRenames.h"

#include "foundation/win/HVRegKey.h"

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

bool PendingRenames::Names(const HVString& destination)
{
    std::vector<HVString> entries;
    SessionManager().QueryMultiString(kValue, entries);
    for (const HVString& entry : entries)
        if (entry.EndsWithNoCase(destination.view()))
            return true;
    return false;
}
}

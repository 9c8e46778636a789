#include "engine/CSharedFileRules.h"

#include <limits>

bool CSharedFileRules::IsShared(const HVString& path, const std::vector<HVString>& systemFolders)
{
    for (HVString folder : systemFolders) {
        if (folder.IsEmpty())
            continue;
        if (!folder.EndsWith(u"\\"))
            folder += u'\\';
        if (path.GetLength() > folder.GetLength() && path.StartsWithNoCase(folder))
            return true;
    }
    return false;
}

uint32_t CSharedFileRules::RaisedCount(std::optional<uint32_t> before, bool fileExistedBefore)
{
    const uint32_t count = before ? *before : fileExistedBefore ? 1 : 0;
    // A count at its limit stays there: the file is never removed, which is the safe side.
    return count == std::numeric_limits<uint32_t>::max() ? count : count + 1;
}

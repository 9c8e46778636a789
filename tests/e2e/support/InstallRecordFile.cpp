#include "InstallRecordFile.h"

#include "FolderTree.h"

#include <algorithm>

namespace e2e
{
CInstallRecord::Contents ReadInstallRecord(const std::wstring& installFolder)
{
    return CInstallRecord::Parse(ReadFileText(installFolder + HVString(CInstallRecord::kFileName).w()));
}

const InstallChange* FindChange(const CInstallRecord::Contents& record, InstallChange::Kind kind, const std::wstring& path)
{
    const auto found = std::find_if(record.changes.begin(), record.changes.end(), [&](const InstallChange& change) {
        return change.kind == kind && change.path.StartsWithNoCase(HVString(path.c_str()));
    });
    return found == record.changes.end() ? nullptr : &*found;
}
}

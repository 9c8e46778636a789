#include "changes/win/CInstallRun.h"

#include "foundation/HVLog.h"
#include "foundation/win/HVFileSystem.h"

#include <vector>

CInstallRun::CInstallRun() : deferred_(HVString(), &changes_) {}

bool CInstallRun::StartRecord(const HVString& installFolder)
{
    if (record_.IsOpen())
        return true;
    const HVString folder = HVFileSystem::NormalizeFolderPath(installFolder);
    // The folders that are missing, outermost first, so that the record names each one made.
    std::vector<HVString> missing;
    for (HVString at = folder; !at.IsEmpty() && !HVFileSystem::FolderExists(at);) {
        missing.insert(missing.begin(), at);
        const HVString parent = at.Left(at.GetLength() - 1);
        at = parent.Left(parent.ReverseFind(u'\\') + 1);
    }
    if (!missing.empty() && !HVFileSystem::MakeDirectoryTree(folder)) {
        HVLog::Write(HVLog::kError, "CInstallRun::StartRecord", u"Could not make %s", folder);
        return false;
    }
    for (const HVString& folder : missing)
        changes_.Note(InstallChange::Kind::FolderCreated, folder);
    if (!record_.Open(folder, changes_.Changes()))
        return false;
    changes_.SetSink(&record_);
    return true;
}

void CInstallRun::EndRecord(int exitCode)
{
    if (!record_.IsOpen())
        return;
    changes_.Note(InstallChange::Kind::InstallEnded, HVString::Format(u"%d", exitCode));
    changes_.SetSink(nullptr);
    record_.Finish();
}

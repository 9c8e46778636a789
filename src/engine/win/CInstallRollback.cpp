#include "engine/win/CInstallRollback.h"

#include "changes/win/CInstallRecordFile.h"
#include "engine/win/CUninstaller.h"
#include "foundation/HVLog.h"

CInstallRollback::Outcome CInstallRollback::Run(const std::vector<InstallChange>& changes,
                                                const CUninstallPlan::Places& places, uint64_t recordLengthBefore,
                                                const HVString& ownPath)
{
    const CUninstallPlan plan = CUninstallPlan::Rollback(changes, places);
    if (plan.Refused()) {
        HVLog::Write(HVLog::kError, "CInstallRollback::Run", u"Nothing undone: %s", plan.Reason());
        return {};
    }
    HVLog::Write(HVLog::kInfo, "CInstallRollback::Run", u"Undoing %d change(s) in %d step(s)",
                 static_cast<int32_t>(changes.size()), static_cast<int32_t>(plan.Steps().size()));
    CUninstaller undo(places.installFolder, ownPath);
    undo.Run(plan);
    const Outcome outcome{.complete = undo.Failures() == 0, .restartNeeded = undo.RestartNeeded()};
    // The record keeps the run's lines while anything of it may be left; once all is undone they
    // go, and the folders they kept from being empty with them.
    if (outcome.complete && CInstallRecordFile::CutBack(places.installFolder, recordLengthBefore) && recordLengthBefore == 0)
        undo.RemoveFoldersOf(plan);
    HVLog::Write(outcome.complete ? HVLog::kInfo : HVLog::kError, "CInstallRollback::Run", u"The run was %s",
                 outcome.complete ? u"undone" : u"not undone completely");
    return outcome;
}

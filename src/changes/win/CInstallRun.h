#pragma once

#include "changes/CInstallChangeLog.h"
#include "changes/win/CDeferredOperations.h"
#include "changes/win/CInstallRecordFile.h"
#include "foundation/HVString.h"

// One run of the installer as the machine sees it: every change noted as it is made, the file
// operations left for the next restart or logon, and the record on disk that the uninstaller
// reads. The wizard owns it for the whole run, so the pages after the copy and the end of the
// run read what the copy step noted.
class CInstallRun
{
public:
    CInstallRun();

    CInstallChangeLog& Changes() { return changes_; }
    const CInstallChangeLog& Changes() const { return changes_; }
    CDeferredOperations& Deferred() { return deferred_; }
    const CDeferredOperations& Deferred() const { return deferred_; }

    // From here on every change is also appended to the install record in `installFolder`,
    // which is made first when missing (each folder made noted); the changes noted before (the
    // dependencies) are written at once. False when there is no record to write to.
    bool StartRecord(const HVString& installFolder);
    // The end of the run with its exit code, as the record's last line; the record is closed.
    void EndRecord(int exitCode);

private:
    CInstallChangeLog changes_;
    CDeferredOperations deferred_;
    CInstallRecordFile record_;
};

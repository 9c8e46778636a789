#pragma once

#include "changes/CInstallChangeLog.h"
#include "changes/win/CDeferredOperations.h"
#include "changes/win/CInstallRecordFile.h"
#include "foundation/HVString.h"

#include <vector>

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
    // dependencies) are written at once. The record found there is read first: its changes are
    // the installation's earlier runs; one that can't be read is never written over but kept
    // beside the new one, renamed (DamagedRecordName). False when there is no record to write to.
    bool StartRecord(const HVString& installFolder);
    // The record as it was before this run (its length in bytes; 0: there was none), to which a
    // rollback of this run cuts it back.
    uint64_t RecordLengthBefore() const { return recordLengthBefore_; }
    const HVString& InstallFolder() const { return installFolder_; }
    // Makes a folder (the destination page's check of the user's choice) before there is a
    // record to note it in. Those on the way to the install folder are noted as the install's
    // when the record starts; RemoveFoldersMadeEarly takes the rest (a choice the user went back
    // on, or a run that ended before its install) away while they are empty.
    bool MakeFolderEarly(const HVString& folder);
    void RemoveFoldersMadeEarly();
    // Closes the record without an end: the run is being undone.
    void AbandonRecord();
    // The install itself begins (the wizard's pages only noted the user's choices so far): from
    // here on a failure or a cancel undoes what the run changed.
    void BeginInstall() { installStart_ = changes_.Changes().size(); }
    bool InstallBegun() const { return installStart_ != kNotBegun; }
    // What the install changed since it began, in order.
    std::vector<InstallChange> InstallChanges() const;
    // The name a damaged record is kept under, in the install folder ("Install Record
    // (damaged).txt", numbered when taken).
    static constexpr const char16_t* kDamagedRecordName = u"Install Record (damaged).txt";
    // The user's own folders the shortcuts may go to (desktop, Start menu, Quick Launch), which
    // the record's header names for an uninstall run by another account.
    static std::vector<HVString> UserShortcutFolders();
    // The end of the run with its exit code, as the record's last line; the record is closed.
    // An install that ended well lets go of what it kept for a rollback.
    // Files that appeared in the install folder while the run went on and that no change names
    // (what the product's helper programs wrote there) are noted first: they are the install's.
    void EndRecord(int exitCode);

private:
    // The install ended well: what it replaced or removed, kept for a rollback until now, goes.
    void DropWhatWasKept();

    CInstallChangeLog changes_;
    CDeferredOperations deferred_;
    CInstallRecordFile record_;
    HVString installFolder_;
    std::vector<HVString> filesAtStart_;
    std::vector<HVString> madeEarly_;
    uint64_t recordLengthBefore_ = 0;
    static constexpr size_t kNotBegun = static_cast<size_t>(-1);
    size_t installStart_ = kNotBegun;
};

#pragma once

#include "foundation/HVString.h"

#include <windows.h>

#include <vector>

class CInstallChangeLog;

// File operations that can't be done while the setup runs, because another program holds the
// file. Windows is first asked to replace the file at the next restart; where it can't, the new
// file is staged in the install folder's "Setup\" folder and the operation goes into the
// journal, which the product's companion program completes at the next logon. One object per
// run, owned by the wizard: the copy step fills the lists, the finish page writes them.
class CDeferredOperations
{
public:
    // installFolder ends in a backslash. changes (optional) notes what is deferred.
    explicit CDeferredOperations(const HVString& installFolder = HVString(), CInstallChangeLog* changes = nullptr);

    void SetInstallFolder(const HVString& installFolder);
    const HVString& InstallFolder() const { return installFolder_; }
    // "Setup\" in the install folder.
    HVString StagingFolder() const;

    // MoveFileExW looked up in kernel32 at run time (flags 5: replace existing, delay until
    // reboot) on a staged copy of `source`. False when the function is missing, the staging
    // copy fails or Windows refuses.
    bool ReplaceAtRestart(const HVString& source, const HVString& destination);
    // Stages the file and appends the install entry; nothing is recorded when staging fails.
    bool DeferInstall(const HVString& source, const HVString& destination);
    // After copying over `destination` failed: replace at restart, else defer install; marks
    // the shell extension unregistered and sets the restart flag (not for fonts). Returns
    // whether either mechanism took the file.
    bool DeferCopy(const HVString& source, const HVString& destination);
    // Deletes now when it can (read-only cleared first); otherwise a delete entry. A missing
    // file is nothing to do.
    void DeferDelete(const HVString& path);
    // Appends the register entry.
    void DeferRegistration(const HVString& path);

    // Off: behave as on a Windows without MoveFileExW, so everything deferred goes to the
    // journal (how the journal path is exercised on systems that have it).
    void SetReplaceAtRestartAvailable(bool available) { replaceAtRestartAvailable_ = available; }

    bool RestartNeeded() const { return restartNeeded_; }
    void SetRestartNeeded() { restartNeeded_ = true; }
    // False once "HVShellExt.dll" was deferred: the journal registers it at the next logon.
    bool ShellExtensionRegistered() const { return shellExtensionRegistered_; }
    const std::vector<HVString>& PendingFiles() const { return pendingFiles_; }
    const std::vector<HVString>& PendingRegistrations() const { return pendingRegistrations_; }
    bool HasPending() const { return !pendingFiles_.empty() || !pendingRegistrations_.empty(); }

    // "Installer\Finalize" under the product's registry root (HKEY_CURRENT_USER) and the
    // RunOnce "Install Wizard Completion" command; nothing is written when both lists are
    // empty. False when a key could not be opened or a value not written.
    bool WriteJournal(const HVString& productRegistryRoot) const;
    // "Finish.txt" in the setup folder naming the installed launcher; nothing when the
    // launcher is not installed. The text is UTF-16LE with a byte-order mark.
    static bool WriteFinishFile(const HVString& setupFolder, const HVString& installFolder, const HVString& launcherName);

private:
    // "Setup\<n>\<source's name>": n numbers the destination folders staged for in this run.
    HVString StagedPath(const HVString& source, const HVString& destination);
    // A whole copy of `source` at the staged path of `destination`, made under a temporary
    // name and renamed when whole; empty when that can't be made (nothing partial is left).
    HVString Stage(const HVString& source, const HVString& destination);

    HVString installFolder_;
    CInstallChangeLog* changes_ = nullptr;
    std::vector<HVString> pendingFiles_;
    std::vector<HVString> pendingRegistrations_;
    std::vector<HVString> stagedFor_;  // destination folders, in the order of their staging folders
    bool restartNeeded_ = false;
    bool shellExtensionRegistered_ = true;
    bool replaceAtRestartAvailable_ = true;
};

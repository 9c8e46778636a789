#pragma once

#include "engine/CUninstallPlan.h"
#include "foundation/HVString.h"

#include <windows.h>

#include <functional>
#include <vector>

// Carries out an uninstall plan on this machine, or the plan that rolls back an install that did
// not end well: the one undo of each kind of change. A step at a time, each one in the log. A step
// that finds nothing left to do has done it; a file in use is deleted at the next restart. The
// records (the uninstall entry and the install record) stay when a step failed, so that the
// uninstall can be run again; the uninstaller's own file, and the folders it keeps from being
// empty, are left to a copy of the program that waits for this one to end.
class CUninstaller
{
public:
    // Called before each step: steps done, steps in all, what comes now.
    using Progress = std::function<void(size_t done, size_t total, const HVString& what)>;

    // installFolder ends in a backslash; ownPath is the running uninstaller's file.
    CUninstaller(const HVString& installFolder, const HVString& ownPath);

    void Run(const CUninstallPlan& plan, const Progress& progress = {});

    // The plan's empty folders once more: a rollback runs them again after the record is gone.
    void RemoveFoldersOf(const CUninstallPlan& plan);

    bool RestartNeeded() const { return restartNeeded_; }
    size_t Failures() const { return failures_; }

    // Starts a copy of the uninstaller from the temporary folder that waits for this process to
    // end, then deletes its file and the folders left to it. False when there was nothing to
    // leave, a step failed (the uninstaller stays for the next try) or the copy could not be
    // started.
    bool LeaveTheRestToACopy();
    // The copy's part: waits (a bounded time) for `processId` to end, deletes `file`, removes
    // each of `folders` that is empty, and has its own file deleted at the next restart.
    static void FinishAfterExit(DWORD processId, const HVString& file, const std::vector<HVString>& folders);

    // "HKLM\..." to its root key; null for a root this program does not know.
    static HKEY SplitKey(const HVString& path, HVString& subKey);

private:
    bool Do(const UninstallStep& step);
    bool RemoveFile(const HVString& path);
    bool DeleteKey(const HVString& path, const HVString& keep);
    bool ReleaseSharedFile(const UninstallStep& step);
    bool RemoveFont(const UninstallStep& step);
    bool RemoveShortcut(const UninstallStep& step);
    bool RestoreFile(const UninstallStep& step);
    // Registers (undo false) or unregisters a module the way the record says it was registered.
    bool Register(const UninstallStep& step, bool undo);
    // Files that appeared in the install folder while the uninstall ran (a helper's log):
    // they would keep the folder from going.
    void RemoveWhatTheStepsLeft();

    HVString installFolder_;
    HVString ownPath_;
    bool ownFileLeft_ = false;
    std::vector<HVString> foldersLeft_;
    std::vector<HVString> filesAtStart_;
    bool restartNeeded_ = false;
    size_t failures_ = 0;
};

#pragma once

#include "changes/CInstallChangeLog.h"
#include "changes/CInstallRecord.h"
#include "foundation/HVString.h"

#include <utility>
#include <vector>

// One thing the uninstall does, in the order the plan gives.
struct UninstallStep
{
    enum class Action
    {
        Leave,             // path (and name): not the uninstall's to touch; data: why (for the log)
        Unregister,        // path: the module; name: how it was registered
        RestoreValue,      // path: the key; name: the value; data: its old data in the ".reg" form
        DeleteValue,       // path: the key; name: the value the install made
        DeleteKey,         // path: a key of the product's own, with everything below it
        DeleteShortcut,    // path: the ".lnk" file; data: the link it replaced, kept, to put back
        RemoveFont,        // path: the font file; name: its value in the font table; created: the file is ours
        ReleaseSharedFile, // path: a file of a shared system folder; created: the install made it
        RemoveFile,        // path
        RestoreFile,       // path: a file or folder the install replaced or removed; data: where it was kept
        Reregister,        // path: a module the install replaced, registered again once it is back; name: how
        CancelRestart,     // path: a file the install left to the next restart: that restart's move is taken back
        RemoveSettings,    // path: the user's settings key; name: the library data folder
        DeleteRecordKey,   // path: the uninstall entry or the installation's record, gone last
        RemoveEmptyKey,    // path: a key the install made, removed only when nothing is left in it
        PruneKey,          // path: a key an older install made: it and the keys below it that are empty
        DeleteRecordFile,  // path: the install record itself
        RemoveFolder,      // path: a folder the install made, removed only when empty
    };

    Action action = Action::RemoveFile;
    HVString path;
    HVString name;
    HVString data;
    bool created = false;
    // What the install left there: a value in the ".reg" form (empty: no value), or a file's
    // digest. The step is done only while the machine still holds it; checked only when
    // `check` is set (the record knew what the install wrote).
    HVString expect;
    bool check = false;
};

// What an uninstall does, decided from the install record alone: it undoes exactly the changes
// the record names and nothing else, and only while they are still the install's. It trusts
// nothing in the record: a damaged record, or one that names a place the install never writes
// to, gives no steps at all and a reason, because a guess could only remove something that
// isn't ours.
//
// Ownership: a key the install made goes only when nothing is left in it once the install's own
// values and keys are gone, so a parent that another product shares stays; only the product's
// own records (its uninstall entry and installation record) go as whole trees. A value, or a file
// outside the install folder, is given back or removed only while it holds what the install put
// there; one that changed since is left. A record of the first format, which kept no "after",
// has its values and outside files undone only in the product's own places.
//
// "Library and settings" are the user's part of the product: its registry root under
// HKEY_CURRENT_USER (the "Properties" settings, the library's paths, the last choices of the
// installer) and the library's data folder under the user's application data. Kept, nothing
// below them is touched but the installer's notes of what exists (`forgetValues`, such as the
// shortcuts made), not even a key or folder the install made there; removed, both go as a whole,
// whoever made what inside them.
class CUninstallPlan
{
public:
    struct Places
    {
        // Ends in a backslash; the folder the record and the uninstaller are in.
        HVString installFolder = {};
        // Other folders the install writes into (the Windows system folders, the fonts folder,
        // the Start menu and desktop folders), each ending in a backslash. Files in the first
        // `sharedFolderCount` of them are shared and go by their reference counts.
        std::vector<HVString> folders = {};
        size_t sharedFolderCount = 0;
        HVString fontsFolder = {};
        // "HKLM\..." keys below which the install makes keys and values; a key ending in a
        // backslash is a place only below it, never itself.
        std::vector<HVString> registry = {};
        // The product's own records, each a key that goes whole at the end.
        std::vector<HVString> recordKeys = {};
        // The product's own keys (the key and what is below it), where a record of the first
        // format is still trusted.
        std::vector<HVString> ownKeys = {};
        HVString settingsKey = {};
        HVString dataFolder = {};
        // Values below the settings key that only say what the install made: they go even
        // when the settings are kept (key, value name).
        std::vector<std::pair<HVString, HVString>> forgetValues = {};
    };

    static CUninstallPlan Make(const CInstallRecord::Contents& record, const Places& places, bool keepSettings);
    // The undoing of one run that did not end well (`run`: its changes, in order), by the same
    // rules: what it replaced or removed comes back from where it was kept, what it made goes,
    // values go back while they hold what it wrote. Unlike an uninstall it touches no record
    // or setting as a whole: an earlier installation's stay as they were.
    static CUninstallPlan Rollback(const std::vector<InstallChange>& run, const Places& places);

    bool Refused() const { return !reason_.IsEmpty(); }
    // Why nothing may be removed (for the log and the user); empty when the plan stands.
    const HVString& Reason() const { return reason_; }
    const std::vector<UninstallStep>& Steps() const { return steps_; }

    // `path` lies below `folder` (which ends in a backslash), compared without regard to case.
    static bool IsBelow(const HVString& path, const HVString& folder);
    // `key` is `parent` or lies below it (registry keys have no closing backslash).
    static bool IsKeyBelowOrEqual(const HVString& key, const HVString& parent);

private:
    static CUninstallPlan Plan(const CInstallRecord::Contents& record, const Places& places, bool keepSettings,
                               bool rollback);

    HVString reason_;
    std::vector<UninstallStep> steps_;
};

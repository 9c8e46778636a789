#pragma once

#include "changes/CInstallChangeLog.h"
#include "changes/CInstallRecord.h"
#include "foundation/HVString.h"

#include <vector>

// One thing the uninstall does, in the order the plan gives.
struct UninstallStep
{
    enum class Action
    {
        Unregister,        // path: the module; name: how it was registered
        RestoreValue,      // path: the key; name: the value; data: its old data in the ".reg" form
        DeleteValue,       // path: the key; name: the value the install made
        DeleteKey,         // path: a key the install made, with everything below it except `keep`
        PruneKey,          // path: a key the install made above a shared place: its empty keys only
        DeleteShortcut,    // path: the ".lnk" file
        RemoveFont,        // path: the font file; name: its value in the font table; created: the file is ours
        ReleaseSharedFile, // path: a file of a shared system folder; created: the install made it
        RemoveFile,        // path
        RemoveSettings,    // path: the user's settings key; name: the library data folder
        DeleteRecordKey,   // path: the uninstall entry or the installation's record, gone last
        DeleteRecordFile,  // path: the install record itself
        RemoveFolder,      // path: a folder the install made, removed only when empty
    };

    Action action = Action::RemoveFile;
    HVString path;
    HVString name;
    HVString data;
    HVString keep;
    bool created = false;
};

// What an uninstall does, decided from the install record alone: it undoes exactly the changes
// the record names and nothing else. It trusts nothing in the record: a damaged record, or one
// that names a place the install never writes to, gives no steps at all and a reason, because
// a guess could only remove something that isn't ours.
//
// "Library and settings" are the user's part of the product: its registry root under
// HKEY_CURRENT_USER (the "Properties" settings, the library's paths, the last choices of the
// installer) and the library's data folder under the user's application data. Kept, nothing
// below them is touched, not even a key or folder the install made there; removed, both go as a
// whole, whoever made what inside them.
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
        HVString settingsKey = {};
        HVString dataFolder = {};
    };

    // The registry places of this product: its own roots, the shell's keys for file types,
    // Default Programs, AutoPlay and the uninstall list, the fonts and shared-file tables.
    static std::vector<HVString> ProductRegistryPlaces(const HVString& productRoot);

    static CUninstallPlan Make(const CInstallRecord::Contents& record, const Places& places, bool keepSettings);

    bool Refused() const { return !reason_.IsEmpty(); }
    // Why nothing may be removed (for the log and the user); empty when the plan stands.
    const HVString& Reason() const { return reason_; }
    const std::vector<UninstallStep>& Steps() const { return steps_; }

    // `path` lies below `folder` (which ends in a backslash), compared without regard to case.
    static bool IsBelow(const HVString& path, const HVString& folder);

private:
    HVString reason_;
    std::vector<UninstallStep> steps_;
};

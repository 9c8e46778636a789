#pragma once

#include "foundation/HVString.h"

#include <vector>

// The deferred-operation journal as text: its entries, the registry values they become, the
// RunOnce command that completes them at the next logon, and the "Finish.txt" hand-over
// text. The product's companion program reads exactly these forms.
class CJournalFormat
{
public:
    static constexpr const char16_t* kDeleteMarker = u"_DELETEFILE";
    static constexpr const char16_t* kRegisterMarker = u"_REGISTERFILE";
    static constexpr const char16_t* kJournalKey = u"Installer\\Finalize";    // under the product root
    static constexpr const char16_t* kRunOnceKey = u"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\RunOnce";
    static constexpr const char16_t* kRunOnceValue = u"Install Wizard Completion";
    static constexpr const char16_t* kFinishFileName = u"Finish.txt";
    static constexpr const char16_t* kFinishTag = u"HVFI0001";

    // "%s|%s": staged copy and final path; path and "_DELETEFILE"; path and "_REGISTERFILE".
    static HVString InstallEntry(const HVString& stagedPath, const HVString& destinationPath);
    static HVString DeleteEntry(const HVString& path);
    static HVString RegisterEntry(const HVString& path);
    // An entry of the pending file list holding "_DELETEFILE" anywhere is a delete entry.
    static bool IsDeleteEntry(const HVString& entry);

    struct Value
    {
        HVString name;
        HVString data;
    };
    // "Delete File (%d)" and "Install File (%d)", each with its own counter from 0, in list order.
    static std::vector<Value> FileValues(const std::vector<HVString>& pendingFiles);
    // "Register File (%d)" from 0.
    static std::vector<Value> RegisterValues(const std::vector<HVString>& pendingRegistrations);
    // "\"<install folder>PackageInstaller.exe\" \"/FinishInstall\"" (folder with its backslash).
    static HVString RunOnceCommand(const HVString& installFolder);
    // "HVFI0001\r\n" and the launcher's path, no line break after it.
    static HVString FinishText(const HVString& launcherPath);
};

#pragma once

#include "engine/win/CInstallContext.h"
#include "foundation/HVString.h"

#include <vector>

class CRegistryWriter;
class HVRegKey;

// Carries the settings of the newest earlier major version ("Software\Halvard\Sonora 31",
// then 30, ... down to 1; the first that can be read) over to this one:
//
// - "Properties": each value this version doesn't hold yet is copied as it is (type and data),
//   except the retired settings. A value this version already held before the install began
//   is the user's own and wins; a first-run default that this run has just written yields to
//   the earlier version's value. "LibraryPath" and "File Location - Image File Location"
//   pointing into the earlier installation's data folders are rewritten into the
//   "[App Data Path]" form (CProductRecordRules::RewriteLibraryPath).
// - "Dependencies": the whole record with its subkeys, by the same rule.
// - The start with Windows: when the earlier version had its Run entry (value "Sonora 31" of
//   HKCU "SOFTWARE\Microsoft\Windows\CurrentVersion\Run"), it is replaced by this version's
//   ("Sonora 32", "\"<install folder><launcher>\" /Boot"). Not for a portable copy.
//
// A version whose key exists but can't be read is skipped with a log line.
class CEarlierVersionUpgrade
{
public:
    static constexpr const char16_t* kRunKey = u"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Run";

    explicit CEarlierVersionUpgrade(const CInstallContext& context) : context_(context) {}

    // defaultsJustWritten: the setting names this run wrote as first-run defaults.
    // Returns the earlier version's root that was carried over, or "" when there was none.
    HVString Run(const std::vector<HVString>& defaultsJustWritten);

private:
    void CopyProperties(const HVString& from, const HVString& earlierFolder,
                        const std::vector<HVString>& defaultsJustWritten);
    void CopyTree(const HVString& from, const HVString& to);
    void MoveRunEntry(const HVString& earlierName);

    const CInstallContext& context_;
};

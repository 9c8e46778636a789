#pragma once

#include "engine/win/CInstallContext.h"
#include "foundation/HVString.h"

// The two records through which the machine knows the installation: the product family's
// installations record (with the product's "Installer" key), where the product's other
// programs and later setups find it, and the uninstall entry of Windows' Apps list. Both live
// in the 64-bit view of HKEY_LOCAL_MACHINE; the "Installer" key under the product's own root.
class CInstallationRecords
{
public:
    static constexpr const char16_t* kUninstallKey = u"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Uninstall";

    explicit CInstallationRecords(const CInstallContext& context);

    // The subkey of this installation under the installations record and under the uninstall
    // list (CProductRecordRules::InstallationKeyName).
    const HVString& KeyName() const { return keyName_; }

    // "Path", "Version", "OS Version", "Launcher Name", "Uninstall Key" (empty for a portable
    // copy, which has no uninstall entry) and "GUID" (kept when there is one), then the
    // "Installer" key's "Distributor ID" and "Install Directory" (not for a portable copy).
    // False when a key can't be made or a value not written.
    bool Record();
    // Nothing for a portable copy. A key that can't be made leaves the entry out (logged).
    void WriteUninstallEntry();

private:
    // What the install folder holds, in bytes.
    static uint64_t FolderSize(const HVString& folder);
    static HVString NewGuid();

    const CInstallContext& context_;
    HVString keyName_;
};

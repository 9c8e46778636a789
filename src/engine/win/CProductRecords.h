#pragma once

#include "engine/IProductRecords.h"
#include "engine/win/CInstallContext.h"
#include "foundation/HVString.h"

#include <vector>

// The product's registry records around the copy step: the cleaning of retired records, the
// first-run settings (CSettingsHelper), the carry-over from an earlier major version
// (CEarlierVersionUpgrade), the installations record and the uninstall entry
// (CInstallationRecords). Every change is noted in the run's change log.
class CProductRecords : public IProductRecords
{
public:
    explicit CProductRecords(const CInstallContext& context) : context_(context) {}

    void RemoveRetiredRecords() override;
    void LoadDefaultSettings() override;
    void UpgradeFromPreviousVersion() override;
    bool RecordInstallation() override;
    void WriteUninstallEntry() override;

private:
    const CInstallContext& context_;
    // What LoadDefaultSettings wrote: the upgrade lets an earlier version's value replace these.
    std::vector<HVString> defaultsWritten_;
};

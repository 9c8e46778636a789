#pragma once

#include "engine/IProductRecords.h"
#include "engine/win/CInstallContext.h"

// The product's registry records. This version of Install Wizard does not write them yet: each
// step says so in the log, so that a run shows what it left out.
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
};

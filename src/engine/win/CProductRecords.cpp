#include "engine/win/CProductRecords.h"

#include "changes/win/CRegistryWriter.h"
#include "engine/IInstallProgress.h"
#include "engine/win/CEarlierVersionUpgrade.h"
#include "engine/win/CInstallationRecords.h"
#include "engine/win/CSettingsHelper.h"
#include "foundation/HVLog.h"
#include "product/CProductRecordRules.h"
#include "product/InstallOptions.h"
#include "product/win/CProductIdentity.h"

void CProductRecords::RemoveRetiredRecords()
{
    const CProductIdentity& product = context_.product;
    CRegistryWriter root(context_.changes, product.GetRegistryHive(), product.GetRegistryRoot());
    if (root.OpenExisting())
        for (const HVString& key : CProductRecordRules::RetiredKeys())
            root.DeleteSubKeyTree(key);
    CRegistryWriter properties(context_.changes, product.GetRegistryHive(), product.GetSettingsKey());
    if (properties.OpenExisting())
        for (const HVString& name : CProductRecordRules::RetiredSettings())
            properties.DeleteValue(name);
}

void CProductRecords::LoadDefaultSettings()
{
    defaultsWritten_ = CSettingsHelper(context_).WriteDefaults();
    HVLog::Write(HVLog::kInfo, "CProductRecords::LoadDefaultSettings", u"%d first-run settings written",
                 static_cast<int32_t>(defaultsWritten_.size()));
}

void CProductRecords::UpgradeFromPreviousVersion()
{
    context_.progress.SetProgressRange(0, 1);
    context_.progress.SetProgressPosition(0);
    if (context_.options.noUpgrade)
        HVLog::Write(HVLog::kInfo, "CProductRecords::UpgradeFromPreviousVersion", u"Skipped (/NoUpgrade)");
    else
        CEarlierVersionUpgrade(context_).Run(defaultsWritten_);
    context_.progress.SetProgressPosition(1);
}

bool CProductRecords::RecordInstallation() { return CInstallationRecords(context_).Record(); }

void CProductRecords::WriteUninstallEntry() { CInstallationRecords(context_).WriteUninstallEntry(); }

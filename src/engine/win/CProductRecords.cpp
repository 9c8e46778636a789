#include "engine/win/CProductRecords.h"

#include "foundation/HVLog.h"

namespace
{
void NotYet(const char* source)
{
    HVLog::Write(HVLog::kInfo, source, u"Nothing done: not part of this version of Install Wizard");
}
}

void CProductRecords::RemoveRetiredRecords() { NotYet("CProductRecords::RemoveRetiredRecords"); }
void CProductRecords::LoadDefaultSettings() { NotYet("CProductRecords::LoadDefaultSettings"); }
void CProductRecords::UpgradeFromPreviousVersion() { NotYet("CProductRecords::UpgradeFromPreviousVersion"); }
void CProductRecords::WriteUninstallEntry() { NotYet("CProductRecords::WriteUninstallEntry"); }

bool CProductRecords::RecordInstallation()
{
    NotYet("CProductRecords::RecordInstallation");
    return true;
}

#include "integration/win/CShellIntegration.h"

#include "foundation/HVLog.h"

void CShellIntegration::ApplyRegistryActions()
{
    HVLog::Write(HVLog::kInfo, "CShellIntegration::ApplyRegistryActions",
                 u"Nothing done: not part of this version of Install Wizard");
}

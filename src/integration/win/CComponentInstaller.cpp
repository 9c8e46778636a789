#include "integration/win/CComponentInstaller.h"

#include "foundation/HVLog.h"
#include "integration/win/CComponentRegistration.h"

bool CComponentInstaller::RegisterServer(const HVString& path)
{
    return CComponentRegistration::RegisterServer(path);
}

bool CComponentInstaller::InstallInputPlugin(const HVString& path)
{
    HVLog::Write(HVLog::kInfo, "CComponentInstaller::InstallInputPlugin",
                 u"%s: not handed over, not part of this version of Install Wizard", path);
    return true;
}

void CComponentInstaller::RunPluginStep(IInstallProgress&)
{
    HVLog::Write(HVLog::kInfo, "CComponentInstaller::RunPluginStep",
                 u"Nothing done: not part of this version of Install Wizard");
}

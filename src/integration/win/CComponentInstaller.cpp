#include "integration/win/CComponentInstaller.h"

#include "foundation/HVLog.h"
#include "integration/win/CComponentRegistration.h"
#include "integration/win/CInstallPackage.h"
#include "integration/win/CInstallWAPlugin.h"
#include "install/InstallOptions.h"

bool CComponentInstaller::RegisterServer(const HVString& path)
{
    return CComponentRegistration::RegisterServer(path);
}

bool CComponentInstaller::InstallInputPlugin(const HVString& path)
{
    return CInstallWAPlugin(context_.changes, context_.installFolder, context_.owner, context_.options.silent)
        .Install(path, CInstallWAPlugin::Kind::Input);
}

void CComponentInstaller::RunPluginStep(IInstallProgress&)
{
    CInstallPackage::InstallListed(context_);
}

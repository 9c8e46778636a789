#pragma once

#include "engine/IComponentInstaller.h"
#include "engine/win/CInstallContext.h"

// Registers the copied modules directly, hands "in_" modules over as input plug-ins
// (CInstallWAPlugin), and runs the plug-in step: the packages the install description names
// (CInstallPackage).
class CComponentInstaller : public IComponentInstaller
{
public:
    explicit CComponentInstaller(const CInstallContext& context) : context_(context) {}

    bool RegisterServer(const HVString& path) override;
    bool InstallInputPlugin(const HVString& path) override;
    void RunPluginStep(IInstallProgress& progress) override;

private:
    const CInstallContext& context_;
};

#pragma once

#include "engine/IComponentInstaller.h"
#include "engine/win/CInstallContext.h"

// Registers the copied modules directly. Input plug-ins and the plug-in step (shell
// extensions, plug-ins, packages, the driver, the service) are not part of this version of
// Install Wizard yet: they say so in the log.
class CComponentInstaller : public IComponentInstaller
{
public:
    explicit CComponentInstaller(const CInstallContext& context) : context_(context) {}

    bool RegisterServer(const HVString& path) override;
    bool InstallInputPlugin(const HVString& path) override;
    void RunPluginStep(IInstallProgress& progress) override;

private:
    [[maybe_unused]] const CInstallContext& context_;
};

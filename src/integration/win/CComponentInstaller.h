#pragma once

#include "engine/IComponentInstaller.h"
#include "engine/win/CInstallContext.h"

// Registers what the copy step put in place: the copied modules directly, "in_" modules handed
// over as input plug-ins (CInstallWAPlugin); and in the plug-in step the shell extension and the
// "Plugins\System" plug-ins through the product's package installer, the packages the install
// description names (CInstallPackage), the audio driver for this Windows and, in the server
// edition, the server service. A registration that fails is logged, marked and passed by: the
// install goes on.
class CComponentInstaller : public IComponentInstaller
{
public:
    explicit CComponentInstaller(const CInstallContext& context) : context_(context) {}

    bool RegisterServer(const HVString& path) override;
    bool InstallInputPlugin(const HVString& path) override;
    void RunPluginStep(IInstallProgress& progress) override;

    // "InstallPackageError" in the product's settings names what failed last, so that the
    // product can tell the user; a later success doesn't clear it.
    void MarkPackageError(const HVString& name);

    static constexpr const char16_t* kDriverVersionSetting = u"WDM Driver Installed Version";

private:
    void InstallShellIntegration(IInstallProgress& progress);
    void InstallSystemPlugins(IInstallProgress& progress);
    // Third-party plug-ins and the packages the install description names.
    void InstallPluginsAndPackages(IInstallProgress& progress);
    void InstallDriver(IInstallProgress& progress);
    void InstallServerService(IInstallProgress& progress);
    bool SetSetting(const HVString& name, const HVString& value);
    HVString GetSetting(const HVString& name) const;

    const CInstallContext& context_;
};

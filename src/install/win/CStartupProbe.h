#pragma once

#include "install/IEnvironmentProbe.h"
#include "product/InstallOptions.h"

class CProductIdentity;
class HVInstallDescription;

// Answers the start-up checks from the running system: the registry write test, the product's
// running copy (asking the user), its service, the browser engine's version, the processor
// and the Windows version.
class CStartupProbe : public IEnvironmentProbe
{
public:
    CStartupProbe(const CProductIdentity& product, const HVInstallDescription& description,
                  const InstallOptions& options);

    bool HasWriteRights() override;
    bool EnsureProductNotRunning() override;
    void StopProductService() override;
    HVString InstalledBrowserVersion() override;
    HVString MinimumBrowserVersion() override;
    uint32_t ProcessorFeatures() override;
    int32_t WindowsVersionCode() override;

    // After EnsureProductNotRunning failed: whether the user said No (rather than the copy
    // refusing to stop).
    bool ProductDeclined() const { return productDeclined_; }

    // The product's close operation as the check uses it: ask the copy to close, then give it
    // up to five seconds to go, so that a copy that closes promptly needs no second question.
    static void CloseAndWait();

private:
    const CProductIdentity& product_;
    const HVInstallDescription& description_;
    const InstallOptions& options_;
    bool productDeclined_ = false;
};

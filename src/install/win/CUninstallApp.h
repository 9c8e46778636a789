#pragma once

#include "engine/CUninstallPlan.h"
#include "product/CUninstallOptions.h"

#include "foundation/win/HVDebugLogger.h"
#include "foundation/win/HVExecutableApp.h"
#include "foundation/win/HVFileLogger.h"

// The uninstaller, "HVMediaUninstall.exe" in the install folder: the uninstall entry and the
// Start menu's "Uninstall" shortcut start it. It asks (unless silent), closes a running copy of
// the product, reads the install record beside itself and removes exactly what that names,
// then tells how it went. The exit codes are the installer's: 0, 3010 when a file waits for a
// restart, 1602 cancelled, 1603 failed or refused, 1618 the product kept running.
class CUninstallApp : public HVExecutableApp
{
public:
    static constexpr const char16_t* kProgramName = u"HVMediaUninstall.exe";

protected:
    bool InitInstance() override;
    bool Startup() override;

private:
    int Uninstall();
    bool Confirm(bool& keepSettings);
    bool EnsureProductStopped();
    CUninstallPlan::Places Places(const CInstallRecord::Contents& record) const;
    // The run ends without removing anything: why, in the log and (unless silent) a box.
    int Refuse(const HVString& reason);
    int Report(size_t failures, bool restartNeeded);
    HVString Text(const char16_t* english) const;
    int ShowBox(const HVString& text, UINT type) const;

    CUninstallOptions options_;
    HVFileLogger fileLogger_;
    HVDebugLogger debugLogger_;
};

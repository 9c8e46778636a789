#include "engine/win/CInstallDirectX.h"

#include "foundation/HVLog.h"

bool CInstallDirectX::Install()
{
    (void)runner_;
    HVLog::Write(HVLog::kInfo, "CInstallDirectX::Install", u"Nothing done: not part of this version of Install Wizard");
    return true;
}

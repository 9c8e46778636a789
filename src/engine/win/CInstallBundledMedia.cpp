#include "engine/win/CInstallBundledMedia.h"

#include "foundation/HVLog.h"

bool CInstallBundledMedia::Install()
{
    (void)runner_;
    HVLog::Write(HVLog::kInfo, "CInstallBundledMedia::Install", u"Nothing done: not part of this version of Install Wizard");
    return true;
}

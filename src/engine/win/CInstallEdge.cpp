#include "engine/win/CInstallEdge.h"

#include "foundation/HVLog.h"

bool CInstallEdge::Install()
{
    (void)runner_;
    HVLog::Write(HVLog::kInfo, "CInstallEdge::Install", u"Nothing done: not part of this version of Install Wizard");
    return true;
}

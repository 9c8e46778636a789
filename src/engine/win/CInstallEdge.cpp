#include "engine/win/CInstallEdge.h"

#include "engine/CDependencyRules.h"
#include "engine/win/CDownloadAndRun.h"
#include "foundation/HVLog.h"
#include "foundation/HVSystemIdentity.h"
#include "foundation/win/HVRegKey.h"

bool CInstallEdge::Install()
{
    if (!CDependencyRules::EdgeConsidered(HVSystemIdentity::Current().GetCode()))
        return true;
    HVRegKey client;
    HVString pv;
    if (client.Open(HKEY_LOCAL_MACHINE, kClientKey, KEY_READ, HVRegView::Key32))
        client.QueryString(u"pv", pv);
    const bool present = CDependencyRules::EdgeRuntimePresent(pv);
    HVLog::Write(HVLog::kInfo, "CInstallEdge::Install", u"WebView2 runtime \"%s\": %s", pv, present ? u"present" : u"missing");
    if (present)
        return true;
    return CDownloadAndRun(runner_).Run(u"Edge WebView", u"MicrosoftEdgeWebview2Setup.exe", u"/silent /install");
}

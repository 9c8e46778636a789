#include "install/CEnvironmentChecks.h"

#include "foundation/CVersionInfo.h"
#include "foundation/HVLog.h"

namespace
{
CVersionInfo VersionOr(const HVString& text, const char16_t* fallback)
{
    CVersionInfo version;
    if (!CVersionInfo::Parse(text.view(), version))
    {
        if (!text.IsEmpty())
            HVLog::Write(HVLog::kWarning, "CEnvironmentChecks::BrowserNewEnough",
                         u"Version \"%s\" can't be read; taking %s", text, fallback);
        CVersionInfo::Parse(fallback, version);
    }
    return version;
}
}

CEnvironmentChecks::Result CEnvironmentChecks::Run(IEnvironmentProbe& probe)
{
    if (!probe.HasWriteRights())
        return Result::NoRights;
    if (!probe.EnsureProductNotRunning())
        return Result::ProductRunning;
    probe.StopProductService();
    if (!BrowserNewEnough(probe.InstalledBrowserVersion(), probe.MinimumBrowserVersion()))
        return Result::BrowserTooOld;
    if (!ProcessorSupported(probe.ProcessorFeatures()))
        return Result::NoSSE2;
    if (!WindowsSupported(probe.WindowsVersionCode()))
        return Result::WindowsNotSupported;
    return Result::Passed;
}

bool CEnvironmentChecks::BrowserNewEnough(const HVString& installed, const HVString& minimum)
{
    return VersionOr(installed, u"1.0.0.0") >= VersionOr(minimum, u"5.0.0.0");
}

const char* CEnvironmentChecks::Name(Result result)
{
    switch (result)
    {
    case Result::Passed: return "passed";
    case Result::NoRights: return "no rights";
    case Result::ProductRunning: return "product running";
    case Result::BrowserTooOld: return "browser engine too old";
    case Result::NoSSE2: return "no SSE2";
    case Result::WindowsNotSupported: return "Windows version not supported";
    }
    return "?";
}

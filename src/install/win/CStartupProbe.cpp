#include "install/win/CStartupProbe.h"

#include "install/CEnvironmentChecks.h"
#include "install/win/CRunningCopyCheck.h"
#include "product/HVInstallDescription.h"
#include "product/win/CProductIdentity.h"

#include "changes/win/RunProgram.h"
#include "foundation/HVLog.h"
#include "foundation/HVSystemIdentity.h"
#include "foundation/win/HVRegKey.h"
#include "integration/win/RegistryWriteTest.h"

#include <intrin.h>

#include <chrono>
#include <cstdlib>

namespace
{
const char* const kStartupProbeSource = "CStartupProbe";
}

CStartupProbe::CStartupProbe(const CProductIdentity& product, const HVInstallDescription& description,
                             const InstallOptions& options)
    : product_(product), description_(description), options_(options)
{
}

bool CStartupProbe::HasWriteRights()
{
    const bool rights = RegistryWriteTest();
    HVLog::Write(HVLog::kInfo, kStartupProbeSource, u"Registry write test: %s", rights ? u"passed" : u"failed");
    return rights;
}

bool CStartupProbe::EnsureProductNotRunning()
{
    CRunningCopyCheck::Product product;
    product.displayName = product_.GetDisplayName();
    product.isRunning = [] { return CProductIdentity::IsRunning(); };
    product.mainWindow = [] { return CProductIdentity::GetMainWindow(); };
    product.closeRunningCopy = [] { CloseAndWait(); };
    CRunningCopyCheck check(std::move(product), options_.silent);
    const bool closed = check.Run();
    productDeclined_ = check.Declined();
    return closed;
}

void CStartupProbe::CloseAndWait()
{
    if (!CProductIdentity::CloseRunningCopy())
        return;
    const auto start = std::chrono::steady_clock::now();
    while (CProductIdentity::IsRunning() &&
           std::chrono::steady_clock::now() - start < std::chrono::milliseconds(CRunningCopyCheck::kPollMilliseconds))
        ::Sleep(20);
}

void CStartupProbe::StopProductService()
{
    const HVString folder = product_.GetEarlierInstallationFolder();
    if (folder.IsEmpty())
    {
        HVLog::Write(HVLog::kInfo, kStartupProbeSource, u"No earlier installation: no service to stop");
        return;
    }
    int exitCode = -1;
    const bool ran = RunProgram(folder + u"HVService.exe", u"/Stop", SW_HIDE, true, true, &exitCode);
    HVLog::Write(HVLog::kInfo, kStartupProbeSource, u"Service stop in %s: %s (exit code %d)", folder,
                 ran ? u"done" : u"failed", exitCode);
}

HVString CStartupProbe::InstalledBrowserVersion()
{
    HVString version = u"1.0.0.0";
    HVRegKey key;
    if (key.Open(HKEY_LOCAL_MACHINE, u"Software\\Microsoft\\Internet Explorer", KEY_READ))
        key.QueryString(u"Version", version);
    HVLog::Write(HVLog::kInfo, kStartupProbeSource, u"Internet Explorer version: %s", version);
    return version;
}

HVString CStartupProbe::MinimumBrowserVersion()
{
    return description_.GetText(u"/*/SpecialFeatures/MinIEVersion", u"5.0.0.0");
}

uint32_t CStartupProbe::ProcessorFeatures()
{
    // Worked out once; the static's initialisation is the lock.
    static const uint32_t features = [] {
        int registers[4] = {};
        __cpuid(registers, 1);
        uint32_t edx = static_cast<uint32_t>(registers[3]);
        // Test-only: IW_TEST_ONLY_NO_SSE2=1 clears the SSE2 bit, so that end-to-end tests can
        // reach the refusal that no machine they run on would give. Unset, the CPU decides.
        if (const wchar_t* value = ::_wgetenv(L"IW_TEST_ONLY_NO_SSE2"); value && *value == L'1')
            edx &= ~CEnvironmentChecks::kSSE2Bit;
        return edx;
    }();
    HVLog::Write(HVLog::kInfo, kStartupProbeSource, u"CPUID 1 EDX: 0x%08X", features);
    return features;
}

int32_t CStartupProbe::WindowsVersionCode()
{
    const HVSystemIdentity& system = HVSystemIdentity::Current();
    HVLog::Write(HVLog::kInfo, kStartupProbeSource, u"Windows: %s (%d.%d.%d), code %d", system.GetName(), system.GetMajor(),
                 system.GetMinor(), system.GetBuild(), system.GetCode());
    return system.GetCode();
}

#include "engine/win/CInstallDirectX.h"

#include "engine/CDependencyRules.h"
#include "engine/win/CDownloadAndRun.h"
#include "foundation/HVLog.h"
#include "foundation/HVSystemIdentity.h"
#include "foundation/win/HVFileSystem.h"

bool CInstallDirectX::Install()
{
    if (!CDependencyRules::DirectXConsidered(HVSystemIdentity::Current().GetCode()))
        return true;
    wchar_t system[MAX_PATH + 1] = {};
    const UINT length = ::GetSystemDirectoryW(system, MAX_PATH + 1);
    if (length > 0 && length <= MAX_PATH &&
        HVFileSystem::Exists(HVFileSystem::NormalizeFolderPath(HVString(system, static_cast<int32_t>(length))) +
                                 u"d3dx9_43.dll",
                             false)) {
        HVLog::Write(HVLog::kInfo, "CInstallDirectX::Install", u"d3dx9_43.dll is there");
        return true;
    }
    // Whatever came of it: the product runs without the helpers, only some visualisations don't.
    CDownloadAndRun(runner_).Run(u"DirectX components", u"d3dx943.exe", HVString());
    return true;
}

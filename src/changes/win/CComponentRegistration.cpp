#include "changes/win/CComponentRegistration.h"

#include "changes/CComponentRules.h"
#include "changes/win/RunProgram.h"
#include "foundation/HVLog.h"
#include "foundation/win/HVFileSystem.h"
#include "foundation/win/HVLoadLibrary.h"
#include "foundation/win/HVUniqueResource.h"
#include "product/CCopyRules.h"

#include <windows.h>

namespace
{
using RegisterFunction = HRESULT(__stdcall*)();
}

bool CComponentRegistration::IsSelfRegistering(const HVString& path)
{
    if (path.IsEmpty())
        return false;
    // Mapped without its imports and without DllMain: asking must not run the module.
    HVModule module(::LoadLibraryExW(path.w(), nullptr, DONT_RESOLVE_DLL_REFERENCES));
    return module && ::GetProcAddress(module.Get(), "DllRegisterServer") != nullptr;
}

bool CComponentRegistration::RegisterServer(const HVString& path) { return CallServerExport(path, "DllRegisterServer"); }

bool CComponentRegistration::UnregisterServer(const HVString& path)
{
    return CallServerExport(path, "DllUnregisterServer");
}

bool CComponentRegistration::CallServerExport(const HVString& path, const char* exportName)
{
    if (!CCopyRules::MayRegister(path))
        return false;
    DWORD error = 0;
    HVModule module = HVLoadLibrary::Load(path, &error);
    if (!module)
        return false;
    const HVString name = HVString::FromUtf8(exportName);
    const auto serverFunction =
        reinterpret_cast<RegisterFunction>(reinterpret_cast<void*>(::GetProcAddress(module.Get(), exportName)));
    if (!serverFunction) {
        HVLog::Write(HVLog::kError, "CComponentRegistration::CallServerExport", u"No %s in %s", name, path);
        return false;
    }
    const HRESULT result = serverFunction();
    if (FAILED(result)) {
        HVLog::Write(HVLog::kError, "CComponentRegistration::CallServerExport", u"%s of %s failed (0x%08X)", name, path,
                     static_cast<uint32_t>(result));
        return false;
    }
    return true;
}

namespace
{
bool RunHelper(const HVString& program, const HVString& parameters)
{
    int exitCode = -1;
    const bool ran = RunProgram(program, parameters, SW_HIDE, true, true, &exitCode,
                                CComponentRegistration::kHelperTimeoutMs);
    if (ran && exitCode != 0)
        HVLog::Write(HVLog::kError, "CComponentRegistration", u"%s %s ended with %d", program, parameters, exitCode);
    return ran && exitCode == 0;
}
}

bool CComponentRegistration::RunServiceControl(const HVString& control, bool uninstall)
{
    return RunHelper(control, uninstall ? u"/Uninstall" : u"/Install");
}

bool CComponentRegistration::RunPackageInstaller(const HVString& installFolder, const HVString& switchText,
                                                 const HVString& path)
{
    const HVString installer = installFolder + u"PackageInstaller.exe";
    if (!HVFileSystem::Exists(installer, false)) {
        HVLog::Write(HVLog::kError, "CComponentRegistration::RunPackageInstaller", u"%s is missing", installer);
        return false;
    }
    return RunHelper(installer, HVString::Format(u"%s \"%s\"", switchText, path));
}

bool CComponentRegistration::RegisterWithRegSvr32(const HVString& dllPath, const HVString& extraSwitch)
{
    wchar_t windows[MAX_PATH + 1] = {};
    const UINT length = ::GetWindowsDirectoryW(windows, MAX_PATH + 1);
    if (length == 0 || length > MAX_PATH)
        return false;
    const HVString program = HVFileSystem::NormalizeFolderPath(HVString(windows, static_cast<int32_t>(length))) +
                             u"system32\\RegSvr32.exe";
    return RunHelper(program, CComponentRules::RegSvr32Parameters(dllPath, extraSwitch));
}

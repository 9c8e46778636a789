#include "integration/win/CComponentRegistration.h"

#include "engine/CCopyRules.h"
#include "foundation/HVLog.h"
#include "foundation/win/HVLoadLibrary.h"
#include "foundation/win/HVUniqueResource.h"

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

bool CComponentRegistration::RegisterServer(const HVString& path)
{
    if (!CCopyRules::MayRegister(path))
        return false;
    DWORD error = 0;
    HVModule module = HVLoadLibrary::Load(path, &error);
    if (!module)
        return false;
    const auto registerServer =
        reinterpret_cast<RegisterFunction>(reinterpret_cast<void*>(::GetProcAddress(module.Get(), "DllRegisterServer")));
    if (!registerServer) {
        HVLog::Write(HVLog::kError, "CComponentRegistration::RegisterServer", u"No DllRegisterServer in %s", path);
        return false;
    }
    const HRESULT result = registerServer();
    if (FAILED(result)) {
        HVLog::Write(HVLog::kError, "CComponentRegistration::RegisterServer", u"DllRegisterServer of %s failed (0x%08X)",
                     path, static_cast<uint32_t>(result));
        return false;
    }
    return true;
}

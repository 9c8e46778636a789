#include "foundation/CVersionInfo.h"

#include "foundation/HVFileSystemPath.h"
#include "foundation/HVLog.h"
#include "foundation/win/HVUniqueResource.h"

#include <windows.h>

#include <mutex>
#include <vector>

namespace
{
using GetFileVersionInfoSizeFn = DWORD(WINAPI*)(LPCWSTR, LPDWORD);
using GetFileVersionInfoFn = BOOL(WINAPI*)(LPCWSTR, DWORD, DWORD, LPVOID);
using VerQueryValueFn = BOOL(WINAPI*)(LPCVOID, LPCWSTR, LPVOID*, PUINT);

// Version.dll is loaded only when a version is first asked for, and then kept: the copy rules
// ask for hundreds of files in a row.
struct VersionApi
{
    HVModule module;
    GetFileVersionInfoSizeFn getSize = nullptr;
    GetFileVersionInfoFn getInfo = nullptr;
    VerQueryValueFn query = nullptr;

    bool IsReady() const { return getSize && getInfo && query; }
};

template <class Fn>
Fn Lookup(HMODULE module, const char* name)
{
    return reinterpret_cast<Fn>(reinterpret_cast<void*>(::GetProcAddress(module, name)));
}

const VersionApi& Api()
{
    static std::once_flag once;
    static VersionApi api;
    std::call_once(once, [] {
        api.module.Reset(::LoadLibraryExW(L"Version.dll", nullptr, LOAD_LIBRARY_SEARCH_SYSTEM32));
        if (!api.module)
            api.module.Reset(::LoadLibraryW(L"Version.dll"));
        if (!api.module) {
            HVLog::Write(HVLog::kError, "CVersionInfo::Read", u"Loading %s failed, error: %d", u"Version.dll",
                         ::GetLastError());
            return;
        }
        api.getSize = Lookup<GetFileVersionInfoSizeFn>(api.module.Get(), "GetFileVersionInfoSizeW");
        api.getInfo = Lookup<GetFileVersionInfoFn>(api.module.Get(), "GetFileVersionInfoW");
        api.query = Lookup<VerQueryValueFn>(api.module.Get(), "VerQueryValueW");
    });
    return api;
}
}

CVersionInfo::CVersionInfo(const HVString& filePath) { Read(filePath); }

bool CVersionInfo::Read(const HVString& filePath)
{
    *this = CVersionInfo();
    const VersionApi& api = Api();
    if (filePath.IsEmpty() || !api.IsReady())
        return false;

    const HVString path = HVFileSystemPath::ToLongPath(filePath);
    DWORD ignored = 0;
    const DWORD size = api.getSize(path.w(), &ignored);
    if (size == 0)
        return false;
    std::vector<uint8_t> block(size);
    if (!api.getInfo(path.w(), 0, size, block.data()))
        return false;
    VS_FIXEDFILEINFO* fixed = nullptr;
    UINT length = 0;
    if (!api.query(block.data(), L"\\", reinterpret_cast<void**>(&fixed), &length) || !fixed ||
        length < sizeof(VS_FIXEDFILEINFO) || fixed->dwSignature != VS_FFI_SIGNATURE)
        return false;

    major_ = HIWORD(fixed->dwFileVersionMS);
    minor_ = LOWORD(fixed->dwFileVersionMS);
    build_ = HIWORD(fixed->dwFileVersionLS);
    revision_ = LOWORD(fixed->dwFileVersionLS);
    hasResource_ = true;
    return true;
}

#include "foundation/HVSystemIdentity.h"

#include <windows.h>

#include <mutex>

namespace
{
// GetVersionExW answers what the manifest declares; RtlGetVersion answers the truth, which is
// what the installation record must say.
using RtlGetVersionFn = LONG(WINAPI*)(OSVERSIONINFOEXW*);

HVSystemIdentity ReadCurrent()
{
    HMODULE ntdll = ::GetModuleHandleW(L"ntdll.dll");
    auto rtlGetVersion =
        ntdll ? reinterpret_cast<RtlGetVersionFn>(reinterpret_cast<void*>(::GetProcAddress(ntdll, "RtlGetVersion")))
              : nullptr;
    OSVERSIONINFOEXW info = {};
    info.dwOSVersionInfoSize = sizeof info;
    // Every NT system has it; a 64-bit program never meets the 9x family, whose branch of the
    // table stays for the record's sake.
    if (!rtlGetVersion || rtlGetVersion(&info) != 0)
        return HVSystemIdentity::Unknown();
    return HVSystemIdentity::FromVersion(static_cast<HVSystemIdentity::Platform>(info.dwPlatformId),
                                         info.dwMajorVersion, info.dwMinorVersion, info.dwBuildNumber & 0xFFFF,
                                         HVString(info.szCSDVersion));
}
}

const HVSystemIdentity& HVSystemIdentity::Current()
{
    static std::once_flag once;
    static HVSystemIdentity current;
    std::call_once(once, [] { current = ReadCurrent(); });
    return current;
}

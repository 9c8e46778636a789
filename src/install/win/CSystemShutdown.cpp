#include "install/win/CSystemShutdown.h"

#include "foundation/HVLog.h"
#include "foundation/win/HVUniqueResource.h"

#include <windows.h>

#include <cstdlib>

namespace
{
constexpr const char* kShutdownSource = "CSystemShutdown::Shutdown";

using OpenProcessTokenFn = BOOL(WINAPI*)(HANDLE, DWORD, PHANDLE);
using LookupPrivilegeValueFn = BOOL(WINAPI*)(LPCWSTR, LPCWSTR, PLUID);
using AdjustTokenPrivilegesFn = BOOL(WINAPI*)(HANDLE, BOOL, PTOKEN_PRIVILEGES, DWORD, PTOKEN_PRIVILEGES, PDWORD);
using SetSuspendStateFn = BOOLEAN(WINAPI*)(BOOLEAN, BOOLEAN, BOOLEAN);

template <class Fn>
Fn LookupInModule(const HVModule& module, const char* name)
{
    return module ? reinterpret_cast<Fn>(reinterpret_cast<void*>(::GetProcAddress(module.Get(), name))) : nullptr;
}

// Test-only: with IW_TEST_ONLY_NO_EXIT_WINDOWS set to 1 every step runs but the last call
// that would end the session, so that end-to-end tests can press "Restart" without ending
// the test machine's session. Unset on every user's machine.
bool SessionEndSuppressed()
{
    const wchar_t* value = ::_wgetenv(L"IW_TEST_ONLY_NO_EXIT_WINDOWS");
    return value && *value == L'1';
}

// The shutdown privilege for as long as the object lives.
class ShutdownPrivilege
{
public:
    ShutdownPrivilege() : advapi_(::LoadLibraryW(L"Advapi32.dll"))
    {
        const auto open = LookupInModule<OpenProcessTokenFn>(advapi_, "OpenProcessToken");
        const auto lookup = LookupInModule<LookupPrivilegeValueFn>(advapi_, "LookupPrivilegeValueW");
        adjust_ = LookupInModule<AdjustTokenPrivilegesFn>(advapi_, "AdjustTokenPrivileges");
        HANDLE token = nullptr;
        if (!open || !lookup || !adjust_ || !open(::GetCurrentProcess(), TOKEN_ADJUST_PRIVILEGES | TOKEN_QUERY, &token))
            return;
        token_.Reset(token);
        TOKEN_PRIVILEGES privileges = {};
        privileges.PrivilegeCount = 1;
        privileges.Privileges[0].Attributes = SE_PRIVILEGE_ENABLED;
        const bool enabled = lookup(nullptr, L"SeShutdownPrivilege", &privileges.Privileges[0].Luid) &&
                             adjust_(token_.Get(), FALSE, &privileges, 0, nullptr, nullptr) &&
                             ::GetLastError() == ERROR_SUCCESS;
        HVLog::Write(HVLog::kInfo, kShutdownSource, u"Shutdown privilege %s", enabled ? u"enabled" : u"not enabled");
    }
    ~ShutdownPrivilege()
    {
        if (token_)
            adjust_(token_.Get(), TRUE, nullptr, 0, nullptr, nullptr);
    }
    ShutdownPrivilege(const ShutdownPrivilege&) = delete;
    ShutdownPrivilege& operator=(const ShutdownPrivilege&) = delete;

private:
    HVModule advapi_;
    AdjustTokenPrivilegesFn adjust_ = nullptr;
    HVHandle token_;
};

bool EndSession(UINT flags)
{
    if (SessionEndSuppressed()) {
        HVLog::Write(HVLog::kInfo, kShutdownSource, u"ExitWindowsEx(0x%x) left out (test run)", flags);
        return true;
    }
    const bool accepted = ::ExitWindowsEx(flags, SHTDN_REASON_MAJOR_APPLICATION | SHTDN_REASON_MINOR_INSTALLATION |
                                                     SHTDN_REASON_FLAG_PLANNED) != FALSE;
    HVLog::Write(accepted ? HVLog::kInfo : HVLog::kWarning, kShutdownSource, u"ExitWindowsEx(0x%x): %s (error %d)", flags,
                 accepted ? u"accepted" : u"refused", accepted ? 0 : static_cast<int>(::GetLastError()));
    return accepted;
}
}

bool CSystemShutdown::Shutdown(Mode mode)
{
    HVLog::Write(HVLog::kInfo, kShutdownSource, u"mode: %s",
                 mode == Mode::Restart ? u"Restart" : mode == Mode::PowerOff ? u"Power Off" : u"Suspend");
    if (mode == Mode::Suspend) {
        const HVModule powrprof(::LoadLibraryW(L"PowrProf.dll"));
        const auto suspend = LookupInModule<SetSuspendStateFn>(powrprof, "SetSuspendState");
        if (!suspend || SessionEndSuppressed())
            return suspend != nullptr;
        return suspend(FALSE, FALSE, FALSE) != FALSE;
    }
    const ShutdownPrivilege privilege;
    return EndSession(mode == Mode::Restart ? EWX_REBOOT | EWX_FORCEIFHUNG : EWX_SHUTDOWN | EWX_POWEROFF | EWX_FORCEIFHUNG);
}

#include "RunningSetup.h"

namespace e2e
{
RunningSetup::RunningSetup(const std::wstring& setupFolder, const std::wstring& arguments)
{
    std::wstring commandLine = L"\"" + setupFolder + L"InstallWizard.exe\" " + arguments;
    STARTUPINFOW startup = {};
    startup.cb = sizeof(startup);
    PROCESS_INFORMATION started = {};
    if (!::CreateProcessW(nullptr, commandLine.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup, &started))
        return;
    ::CloseHandle(started.hThread);
    process_ = HVHandle(started.hProcess);
    processId_ = started.dwProcessId;
}

RunningSetup::~RunningSetup()
{
    if (process_ && ::WaitForSingleObject(process_.Get(), 0) == WAIT_TIMEOUT) {
        ::TerminateProcess(process_.Get(), 1);
        ::WaitForSingleObject(process_.Get(), 5000);
    }
}

std::optional<DWORD> RunningSetup::WaitForExit(DWORD timeoutMs) const
{
    DWORD exitCode = 0;
    if (!process_ || ::WaitForSingleObject(process_.Get(), timeoutMs) != WAIT_OBJECT_0 ||
        !::GetExitCodeProcess(process_.Get(), &exitCode))
        return std::nullopt;
    return exitCode;
}

HVHandle UnopenableMutex(const std::wstring& name)
{
    SECURITY_DESCRIPTOR descriptor;
    ACL acl;
    if (!::InitializeSecurityDescriptor(&descriptor, SECURITY_DESCRIPTOR_REVISION) ||
        !::InitializeAcl(&acl, sizeof(acl), ACL_REVISION) || !::SetSecurityDescriptorDacl(&descriptor, TRUE, &acl, FALSE))
        return HVHandle();
    SECURITY_ATTRIBUTES attributes = {sizeof(attributes), &descriptor, FALSE};
    return HVHandle(::CreateMutexW(&attributes, FALSE, name.c_str()));
}
}

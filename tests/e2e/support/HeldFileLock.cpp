#include "HeldFileLock.h"

#include "TestPaths.h"

#include <windows.h>

#include <atomic>

namespace e2e
{
namespace
{
constexpr DWORD kReadyWaitMs = 30000;
constexpr DWORD kEndWaitMs = 10000;

std::wstring UniqueEventName()
{
    static std::atomic<unsigned> counter{0};
    return L"IWHoldLock-" + std::to_wstring(GetCurrentProcessId()) + L"-" + std::to_wstring(++counter) + L"-" +
           std::to_wstring(GetTickCount64());
}
}

HeldFileLock::HeldFileLock(std::wstring path) : path_(std::move(path))
{
    const std::wstring eventName = UniqueEventName();
    // Made here before the holder starts, so neither side can miss the other's signal.
    release_.Reset(CreateEventW(nullptr, TRUE, FALSE, eventName.c_str()));
    ready_.Reset(CreateEventW(nullptr, TRUE, FALSE, (eventName + L"-ready").c_str()));
    if (!release_ || !ready_)
    {
        error_ = L"cannot create the events " + eventName;
        return;
    }

    const std::wstring tool = ToolPath(L"HoldLock.exe");
    std::wstring commandLine = L"\"" + tool + L"\" \"" + path_ + L"\" " + eventName;
    STARTUPINFOW startup = {};
    startup.cb = sizeof(startup);
    PROCESS_INFORMATION info = {};
    if (!CreateProcessW(tool.c_str(), commandLine.data(), nullptr, nullptr, FALSE, CREATE_NO_WINDOW, nullptr, nullptr,
                        &startup, &info))
    {
        error_ = L"cannot start " + tool + L" (error " + std::to_wstring(GetLastError()) + L")";
        return;
    }
    process_.Reset(info.hProcess);
    HVHandle thread(info.hThread);

    // The holder either signals readiness or ends (it could not open the file).
    const HANDLE waitOn[] = {ready_.Get(), process_.Get()};
    const DWORD waited = WaitForMultipleObjects(2, waitOn, FALSE, kReadyWaitMs);
    if (waited == WAIT_OBJECT_0)
    {
        held_ = true;
        return;
    }
    if (waited == WAIT_OBJECT_0 + 1)
    {
        DWORD code = 0;
        GetExitCodeProcess(process_.Get(), &code);
        error_ = L"HoldLock.exe could not hold " + path_ + L" (exit code " + std::to_wstring(code) + L")";
    }
    else
    {
        error_ = L"HoldLock.exe did not report readiness for " + path_;
    }
    Release();
}

HeldFileLock::~HeldFileLock()
{
    Release();
}

void HeldFileLock::Release()
{
    if (release_)
        SetEvent(release_.Get());
    if (process_)
    {
        if (WaitForSingleObject(process_.Get(), kEndWaitMs) != WAIT_OBJECT_0)
            TerminateProcess(process_.Get(), 1);
        process_.Reset();
    }
    held_ = false;
}
}

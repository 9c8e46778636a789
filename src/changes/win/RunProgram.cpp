#include "changes/win/RunProgram.h"

#include "foundation/HVLog.h"
#include "foundation/HVLogTimer.h"
#include "foundation/win/HVApp.h"
#include "foundation/win/HVUniqueResource.h"

#include <shellapi.h>

#include <chrono>
#include <optional>

namespace
{
const char* const kRunProgramSource = "RunProgram";

bool Start(const HVString& path, const HVString& parameters, int showMode, bool useShell, HVHandle& process,
           HVHandle& thread)
{
    if (!useShell)
    {
        // CreateProcessW may write into the command line, so it gets a copy of its own.
        HVString commandLine = HVString::Format(u"\"%s\" %s", path, parameters);
        STARTUPINFOW startup = {};
        startup.cb = sizeof(startup);
        startup.dwFlags = STARTF_USESHOWWINDOW;
        startup.wShowWindow = static_cast<WORD>(showMode);
        PROCESS_INFORMATION info = {};
        if (!::CreateProcessW(nullptr, commandLine.GetWBuffer(commandLine.GetLength() + 1), nullptr, nullptr, FALSE,
                              NORMAL_PRIORITY_CLASS, nullptr, nullptr, &startup, &info))
            return false;
        process.Reset(info.hProcess);
        thread.Reset(info.hThread);
        return true;
    }

    HVLog::Write(HVLog::kInfo, kRunProgramSource, u"Performing ShellExecute...");
    SHELLEXECUTEINFOW info = {};
    info.cbSize = sizeof(info);
    info.fMask = SEE_MASK_NOCLOSEPROCESS | SEE_MASK_FLAG_NO_UI | SEE_MASK_NOASYNC;
    info.lpFile = path.w();
    info.lpParameters = parameters.IsEmpty() ? nullptr : parameters.w();
    info.nShow = showMode;
    const BOOL ok = ::ShellExecuteExW(&info);
    process.Reset(info.hProcess);
    if (!ok || reinterpret_cast<INT_PTR>(info.hInstApp) <= 32)
    {
        if (::GetLastError() == ERROR_SUCCESS)
            ::SetLastError(static_cast<DWORD>(reinterpret_cast<INT_PTR>(info.hInstApp)));
        return false;
    }
    return true;
}

void EndProcess(HANDLE process)
{
    ::TerminateProcess(process, static_cast<UINT>(-1));
    // TerminateProcess only starts the ending; waiting makes it a fact before we return.
    ::WaitForSingleObject(process, 5000);
}
}

bool RunProgram(const HVString& path, const HVString& parameters, int showMode, bool wait, bool pumpMessages,
                int* exitCode, int timeoutMs, bool useShell, HANDLE cancelEvent)
{
    if (exitCode)
        *exitCode = -1;
    HVLog::Write(HVLog::kInfo, kRunProgramSource, u"Filename: %s / Parameters: %s", path, parameters);

    HVHandle process;
    HVHandle thread;
    if (!Start(path, parameters, showMode, useShell, process, thread))
    {
        HVLog::Write(HVLog::kError, kRunProgramSource, u"Failed to start (error %d)", ::GetLastError());
        return false;
    }
    HVLog::Write(HVLog::kInfo, kRunProgramSource, u"Running process...");
    if (!wait)
        return true;
    if (!process)
    {
        // The shell handed the file to a program that was already running (a document
        // opened in an existing window): there is nothing of ours to wait for.
        HVLog::Write(HVLog::kInfo, kRunProgramSource, u"No process to wait for");
        return true;
    }

    HVLog::Write(HVLog::kInfo, kRunProgramSource, u"Waiting for completion");
    HVLogTimer timer(kRunProgramSource, HVLog::kInfo);
    const DWORD slice = pumpMessages ? 10 : 500;
    const auto start = std::chrono::steady_clock::now();
    HANDLE handles[2] = {process.Get(), cancelEvent};
    const DWORD count = cancelEvent ? 2 : 1;
    for (;;)
    {
        const DWORD result = ::WaitForMultipleObjects(count, handles, FALSE, slice);
        if (result == WAIT_OBJECT_0)
            break;
        if (result == WAIT_OBJECT_0 + 1)
        {
            HVLog::Write(HVLog::kWarning, kRunProgramSource, u"Cancel");
            EndProcess(process.Get());
            return false;
        }
        if (result != WAIT_TIMEOUT)
        {
            HVLog::Write(HVLog::kError, kRunProgramSource, u"Unknown wait code (%d)", result);
            EndProcess(process.Get());
            return false;
        }
        if (pumpMessages)
            HVApp::PumpWaitingMessages();
        const auto elapsed =
            std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::steady_clock::now() - start).count();
        if (timeoutMs > 0 && elapsed > timeoutMs)
        {
            HVLog::Write(HVLog::kWarning, kRunProgramSource, u"Timeout");
            EndProcess(process.Get());
            return false;
        }
    }

    HVLog::Write(HVLog::kInfo, kRunProgramSource, u"Done waiting");
    HVLog::Write(HVLog::kInfo, kRunProgramSource, u"Finished");
    if (exitCode)
    {
        DWORD code = 0;
        if (::GetExitCodeProcess(process.Get(), &code))
            *exitCode = static_cast<int>(code);
        timer.SetResult(*exitCode);
    }
    return true;
}

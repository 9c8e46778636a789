#include "foundation/win/HVCrashHandler.h"

#include "foundation/HVLog.h"
#include "foundation/IHVLogger.h"
#include "foundation/win/HVApp.h"
#include "foundation/win/HVUniqueResource.h"

#include <atomic>
#include <cstdio>
#include <cstring>
#include <exception>
#include <intrin.h>

#ifdef _MSC_VER
#include <stdlib.h>
#endif

namespace
{
const char* const kSource = "TopLevelExceptionFilter";

// Process-wide state. Nothing here may allocate once a crash has begun: the heap may be the
// thing that broke, so the name lives in a fixed buffer and the log lines are the only
// formatting done.
HVApp* g_crashingApp = nullptr;
wchar_t g_blockName[32] = L"";
HVHandle g_mapping;
HVMappedView g_view;
std::atomic<bool> g_crashing{false};

struct CommandPair
{
    int code;
    int param;
};

LONG WINAPI SystemFilter(EXCEPTION_POINTERS* pointers)
{
    HVCrashHandler::TopLevelExceptionFilter(pointers);
    // The system's own crash handling follows once the handler program has looked.
    return EXCEPTION_CONTINUE_SEARCH;
}

[[noreturn]] void NoExceptionInformation()
{
    HVCrashHandler::TopLevelExceptionFilter(nullptr);
    std::abort();
}

#ifdef _MSC_VER
void __cdecl PureCallHandler() { NoExceptionInformation(); }
#endif

void StartHandlerProgram()
{
    wchar_t path[MAX_PATH + 32];
    const DWORD length = ::GetModuleFileNameW(nullptr, path, MAX_PATH);
    if (length == 0 || length >= MAX_PATH)
        return;
    wchar_t* slash = wcsrchr(path, L'\\');
    if (!slash)
        return;
    wcscpy(slash + 1, L"HVCrashHandler.exe");

    wchar_t commandLine[64];
    wcscpy(commandLine, g_blockName);
    STARTUPINFOW startup = {};
    startup.cb = sizeof(startup);
    PROCESS_INFORMATION process = {};
    if (!::CreateProcessW(path, commandLine, nullptr, nullptr, FALSE, NORMAL_PRIORITY_CLASS, nullptr, nullptr,
                          &startup, &process))
    {
        HVLog::Write(HVLog::kError, kSource, u"Unable to start %s (error %d)", path, ::GetLastError());
        return;
    }
    HVHandle processHandle(process.hProcess);
    HVHandle threadHandle(process.hThread);
    ::WaitForSingleObject(processHandle.Get(), INFINITE);
}
}

void HVCrashHandler::Install(HVApp* app)
{
    g_crashingApp = app;
    swprintf(g_blockName, sizeof(g_blockName) / sizeof(g_blockName[0]), L"HVCrashInfo%lu",
             static_cast<unsigned long>(::GetCurrentProcessId()));
    g_view.Reset();
    g_mapping.Reset();
    if (g_blockName[0])
    {
        g_mapping.Reset(::CreateFileMappingW(INVALID_HANDLE_VALUE, nullptr, PAGE_READWRITE, 0, sizeof(CrashInfo),
                                             g_blockName));
        if (g_mapping)
        {
            g_view.Reset(::MapViewOfFile(g_mapping.Get(), FILE_MAP_READ | FILE_MAP_WRITE, 0, 0, sizeof(CrashInfo)));
            if (!g_view)
                g_mapping.Reset();
        }
    }
    ::SetUnhandledExceptionFilter(SystemFilter);
#ifdef _MSC_VER
    _set_purecall_handler(PureCallHandler);
#else
    // GCC's runtime reports a pure virtual call by calling std::terminate (after printing a
    // line to a console that a GUI program doesn't have): the terminate handler is its only
    // hook, and it serves for an escaped exception just as well.
    std::set_terminate(NoExceptionInformation);
#endif
}

void HVCrashHandler::TopLevelExceptionFilter(EXCEPTION_POINTERS* pointers)
{
    CONTEXT capturedContext;
    EXCEPTION_RECORD capturedRecord;
    EXCEPTION_POINTERS captured;
    if (!pointers)
    {
        std::memset(&capturedContext, 0, sizeof(capturedContext));
        ::RtlCaptureContext(&capturedContext);
        std::memset(&capturedRecord, 0, sizeof(capturedRecord));
#ifdef _MSC_VER
        capturedRecord.ExceptionAddress = _ReturnAddress();
#else
        capturedRecord.ExceptionAddress = __builtin_return_address(0);
#endif
        captured.ExceptionRecord = &capturedRecord;
        captured.ContextRecord = &capturedContext;
        pointers = &captured;
    }

    ::AllowSetForegroundWindow(ASFW_ANY);

    if (g_crashing.exchange(true))
        return;

    // An application object that has gone since Install is no longer there to ask.
    if (!g_crashingApp || g_crashingApp != HVApp::Get() || !g_crashingApp->GetLogger())
        return;

    HVLog::Write(HVLog::kError, kSource, u"Unhandled exception -- program crashing");
    const UINT message = g_crashingApp->GetCurrentMessage();
    const WPARAM wParam = g_crashingApp->GetCurrentWParam();
    HVLog::Write(HVLog::kError, kSource, u"Message: %d, wParam: %d, lParam: %d", message, wParam,
                 g_crashingApp->GetCurrentLParam());
    if (message == kCommandMessage && wParam)
    {
        const auto* pair = reinterpret_cast<const CommandPair*>(wParam);
        HVLog::Write(HVLog::kError, kSource, u"MCC: %d, Param: %d", pair->code, pair->param);
    }

    auto* info = static_cast<CrashInfo*>(g_view.Get());
    if (!info)
    {
        HVLog::Write(HVLog::kError, kSource, u"Unable to call crash handler, crash info struct not available");
        return;
    }
    info->processId = ::GetCurrentProcessId();
    info->threadId = ::GetCurrentThreadId();
    info->exceptionPointers = reinterpret_cast<uintptr_t>(pointers);
    StartHandlerProgram();
}

const wchar_t* HVCrashHandler::BlockName() { return g_blockName; }

// CrashOnPurpose.exe <mode> <log-file>
//
// Dies on purpose, with the crash handler installed and a logger writing to <log-file>, so
// that tests can follow a crash end to end: the log lines, the crash-info block and the start
// of HVCrashHandler.exe from this program's folder. Modes:
//   access       writes through a null pointer
//   purevirtual  enters the runtime's pure-virtual-call entry (no exception information)
//   twothreads   two threads crash at the same moment
//   nologger     crashes with no logger: the handler must do nothing
#include "foundation/win/HVApp.h"
#include "foundation/win/HVCrashHandler.h"
#include "foundation/win/HVFileLogger.h"
#include "foundation/HVString.h"

#include <windows.h>

#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <cwchar>
#include <thread>

// What a call of a pure virtual function compiles to: a call of the runtime's pure-call entry
// from the vtable slot. Called directly, because a real pure virtual call is undefined
// behaviour that the optimiser is free to turn into anything else.
#ifdef _MSC_VER
extern "C" int __cdecl _purecall();
[[noreturn]] void CallPure() { _purecall(); std::abort(); }
#else
extern "C" void __cxa_pure_virtual();
[[noreturn]] void CallPure() { __cxa_pure_virtual(); std::abort(); }
#endif

namespace
{
class CrashApp : public HVApp
{
};

[[gnu::noinline]] void WriteThroughNull()
{
    volatile int* volatile nowhere = nullptr;
    *nowhere = 1;
}

// The system calls the filter that Install set through this one, which notes what it
// returned and then ends the process itself: the system's own crash handling would start a
// debugger that the tests have no use for. In "twothreads" the thread whose filter returned
// at once also waits for the other, so that the process doesn't end under the handler
// program's feet.
bool g_twoThreads = false;
LPTOP_LEVEL_EXCEPTION_FILTER g_installedFilter = nullptr;
std::atomic<int> g_returned{0};
IHVLogger* g_logger = nullptr;

LONG WINAPI NoteAndExitFilter(EXCEPTION_POINTERS* pointers)
{
    const LONG result = g_installedFilter(pointers);
    if (g_logger)
        g_logger->Write(3, "CrashOnPurpose", HVString::Format(u"Filter returned %d", static_cast<int>(result)));
    ++g_returned;
    for (int i = 0; i < 3000 && g_returned < 2 && g_twoThreads; ++i)
        ::Sleep(10);
    ::ExitProcess(3);
}

void CrashTwoThreads()
{
    g_twoThreads = true;
    const HANDLE go = ::CreateEventW(nullptr, TRUE, FALSE, nullptr);
    auto crasher = [go] {
        ::WaitForSingleObject(go, INFINITE);
        WriteThroughNull();
    };
    std::thread first(crasher);
    std::thread second(crasher);
    ::Sleep(100);
    ::SetEvent(go);
    first.join();
    second.join();
}
}

int wmain(int argc, wchar_t** argv)
{
    if (argc != 3)
    {
        std::fwprintf(stderr, L"usage: CrashOnPurpose.exe <mode> <log-file>\n");
        return 1;
    }
    const std::wstring mode = argv[1];
    CrashApp app;
    HVFileLogger logger;
    if (mode != L"nologger")
    {
        if (!logger.Open(argv[2]))
            return 1;
        app.SetLogger(&logger);
    }
    HVCrashHandler::Install(&app);
    g_logger = app.GetLogger();
    g_installedFilter = ::SetUnhandledExceptionFilter(NoteAndExitFilter);
    // No "program has stopped working" box: the tests run without anyone to close it.
    ::SetErrorMode(SEM_NOGPFAULTERRORBOX | SEM_FAILCRITICALERRORS);

    if (mode == L"access" || mode == L"nologger")
        WriteThroughNull();
    else if (mode == L"purevirtual")
        CallPure();
    else if (mode == L"twothreads")
        CrashTwoThreads();
    else
        return 1;
    return 0;
}

#pragma once

#include <windows.h>

#include <cstddef>
#include <cstdint>

class HVApp;

// Hands a dying process to HVCrashHandler.exe (beside the program), which inspects it from
// outside: the dying process can no longer be trusted to write a report itself. The two meet
// through a 16-byte named block, "HVCrashInfo<pid>", that the dying thread fills in.
class HVCrashHandler
{
public:
#pragma pack(push, 4)
    struct CrashInfo
    {
        uint32_t processId;
        uint32_t threadId;
        uint64_t exceptionPointers;  // EXCEPTION_POINTERS* in the crashed process
    };
#pragma pack(pop)
    static_assert(sizeof(CrashInfo) == 16 && offsetof(CrashInfo, threadId) == 4 && offsetof(CrashInfo, exceptionPointers) == 8);

    static constexpr UINT kCommandMessage = 0x83E9;

    // Registers the application object, makes the crash-info block and installs the filter;
    // also catches calls of pure virtual functions. A second call replaces the block.
    static void Install(HVApp* app);

    // Runs once per process: logs, fills the block, starts the handler program and waits for
    // it. Null pointers: the caller had no exception information (a pure virtual call), so a
    // context of the caller is captured instead.
    static void TopLevelExceptionFilter(EXCEPTION_POINTERS* pointers);

    // The block's name ("HVCrashInfo<pid>"); empty before Install.
    static const wchar_t* BlockName();
};

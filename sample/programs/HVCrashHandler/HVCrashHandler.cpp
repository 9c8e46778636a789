// HVCrashHandler.exe: its command line is the block name
//
// A stand-in for the product's crash reporter. The dying process names its crash-info block
// ("HVCrashInfo<pid>": process id, thread id, address of its EXCEPTION_POINTERS) and waits
// while this program looks into it from outside. It writes what it found, one "name: value"
// line each, to "<block-name>.txt" beside itself, appending, so that a second start for the
// same crash would show as a second report.
#include <windows.h>

#include <cstdio>
#include <cstring>
#include <string>

namespace
{
struct CrashInfo
{
    unsigned int processId;
    unsigned int threadId;
    unsigned long long exceptionPointers;
};

std::wstring OwnFolder()
{
    wchar_t path[MAX_PATH];
    const DWORD length = ::GetModuleFileNameW(nullptr, path, MAX_PATH);
    std::wstring folder(path, length);
    return folder.substr(0, folder.find_last_of(L'\\') + 1);
}

template <class T>
bool ReadFrom(HANDLE process, unsigned long long address, T& value)
{
    SIZE_T read = 0;
    return address && ::ReadProcessMemory(process, reinterpret_cast<const void*>(address), &value, sizeof(value), &read) &&
           read == sizeof(value);
}
}

int wmain(int argc, wchar_t** argv)
{
    // The crashed program passes the block's name as the whole command line, so it arrives
    // as argv[0]; a name after a program path is taken too.
    if (argc < 1 || argc > 2)
        return 1;
    const std::wstring blockName = argv[argc - 1];
    FILE* report = _wfopen((OwnFolder() + blockName + L".txt").c_str(), L"a");
    if (!report)
        return 1;
    std::fprintf(report, "Block: %ls\n", blockName.c_str());

    const HANDLE mapping = ::OpenFileMappingW(FILE_MAP_READ, FALSE, blockName.c_str());
    const void* view = mapping ? ::MapViewOfFile(mapping, FILE_MAP_READ, 0, 0, sizeof(CrashInfo)) : nullptr;
    if (!view)
    {
        std::fprintf(report, "Error: block not found (%lu)\n", ::GetLastError());
        std::fclose(report);
        return 2;
    }
    CrashInfo info;
    std::memcpy(&info, view, sizeof(info));
    std::fprintf(report, "ProcessId: %u\nThreadId: %u\nExceptionPointers: 0x%llx\n", info.processId, info.threadId,
                 info.exceptionPointers);

    const HANDLE process = ::OpenProcess(PROCESS_VM_READ | PROCESS_QUERY_INFORMATION, FALSE, info.processId);
    EXCEPTION_POINTERS pointers = {};
    EXCEPTION_RECORD record = {};
    CONTEXT context = {};
    if (process && ReadFrom(process, info.exceptionPointers, pointers) &&
        ReadFrom(process, reinterpret_cast<unsigned long long>(pointers.ExceptionRecord), record) &&
        ReadFrom(process, reinterpret_cast<unsigned long long>(pointers.ContextRecord), context))
    {
        std::fprintf(report, "ExceptionCode: 0x%08lx\nExceptionAddress: 0x%llx\nInstructionPointer: 0x%llx\n",
                     record.ExceptionCode, reinterpret_cast<unsigned long long>(record.ExceptionAddress),
                     static_cast<unsigned long long>(context.Rip));
    }
    else
    {
        std::fprintf(report, "Error: process memory not readable (%lu)\n", ::GetLastError());
    }
    std::fprintf(report, "End\n");
    std::fclose(report);
    if (process)
        ::CloseHandle(process);
    ::UnmapViewOfFile(view);
    ::CloseHandle(mapping);
    return 0;
}

// HoldLock.exe <path> <event-name>
//
// Holds a file open with no sharing, from a process other than the test's, so that tests can
// see how the installer copes with a file that is in use. The file is created when missing.
// Readiness is signalled on the named event "<event-name>-ready" once the file is held; the
// lock is kept until the named event "<event-name>" is signalled, or for at most 120 seconds
// so that a test that dies never leaves a file locked for the rest of the run.
//
// Exit codes: 0 released by the event, 2 released by the time limit, 1 bad use or the file
// could not be opened (the reason goes to stderr).
#include "foundation/win/HVUniqueResource.h"

#include <windows.h>

#include <cstdio>
#include <string>

namespace
{
constexpr DWORD kMaximumHoldMs = 120 * 1000;
}

int wmain(int argc, wchar_t** argv)
{
    if (argc != 3 || !*argv[1] || !*argv[2])
    {
        std::fwprintf(stderr, L"usage: HoldLock.exe <path> <event-name>\n");
        return 1;
    }
    const std::wstring path = argv[1];
    const std::wstring eventName = argv[2];

    // Both events may already exist (the test makes them before starting us, so that neither
    // side can miss the other's signal); CreateEventW then opens them.
    HVHandle release(CreateEventW(nullptr, TRUE, FALSE, eventName.c_str()));
    HVHandle ready(CreateEventW(nullptr, TRUE, FALSE, (eventName + L"-ready").c_str()));
    if (!release || !ready)
    {
        std::fwprintf(stderr, L"HoldLock: cannot create the events '%ls' (error %lu)\n", eventName.c_str(),
                      GetLastError());
        return 1;
    }

    HVFileHandle file(CreateFileW(path.c_str(), GENERIC_READ | GENERIC_WRITE, 0, nullptr, OPEN_ALWAYS,
                                  FILE_ATTRIBUTE_NORMAL, nullptr));
    if (!file)
    {
        std::fwprintf(stderr, L"HoldLock: cannot open '%ls' (error %lu)\n", path.c_str(), GetLastError());
        return 1;
    }

    SetEvent(ready.Get());
    const DWORD waited = WaitForSingleObject(release.Get(), kMaximumHoldMs);
    return waited == WAIT_OBJECT_0 ? 0 : 2;
}

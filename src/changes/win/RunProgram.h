#pragma once

#include "foundation/HVString.h"

#include <windows.h>

// Starts a program, directly or through the shell, and optionally waits for it. Every program
// the installer starts goes through here, so that each start and its outcome is in the log.
//
// exitCode (optional) is set to -1 first and receives the exit code once the program ends.
// timeoutMs <= 0 waits without limit; a program still running after the time-out is ended.
// pumpMessages keeps the calling thread's windows alive while it waits (10 ms slices instead
// of 500 ms). cancelEvent (optional): when it is signalled the program is ended.
// Returns whether the program started and, when waiting, ended by itself.
bool RunProgram(const HVString& path, const HVString& parameters, int showMode, bool wait, bool pumpMessages,
                int* exitCode = nullptr, int timeoutMs = 0, bool useShell = false, HANDLE cancelEvent = nullptr);

#pragma once

#include "SetupRun.h"

#include <string>
#include <vector>

namespace e2e
{
// The uninstaller of an install ("<installFolder>HVMediaUninstall.exe") run with `arguments`
// and "/Log=<its log>" in front, watched like any program, its log read back. A run that ended
// with 0 or 3010 leaves its own file to a copy that waits for it: this waits (a bounded time)
// for that copy to have removed it, so that the machine is checked as a user would find it.
SetupRun RunUninstaller(const std::wstring& installFolder, const std::wstring& arguments,
                        std::vector<DialogRule> rules = {});

// What an install touches, one line each, sorted: the installer's traces (ReadTraces) and the
// shared-file counts, without the replacements pending for the next restart, which the
// uninstaller's own copy adds to and a test checks by itself, and without the notes the sample's
// stand-in programs keep beside themselves.
std::vector<std::wstring> MachineSnapshot();
}

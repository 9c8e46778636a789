#pragma once

#include "foundation/win/HVRegKey.h"

#include <windows.h>

#include <string>
#include <vector>

namespace e2e
{
// One thing the installer (or the product it installs) leaves on a machine. The list below is
// what ResetToFreshMachine removes; when the installer learns to write something new, add it
// there so that end-to-end tests keep starting from a clean machine.
struct MachineTrace
{
    enum class Kind
    {
        RegistryKey,        // `path` under `root`, with everything below it
        RegistryKeyPrefix,  // every subkey of `path` whose name starts with `name`
        RegistryValue,      // the value `name` of `path`
        Folder,             // `path`, with "%ProgramFiles%"-style variables expanded
        File,
        Process,            // every running process with the image name `name`
    };
    Kind kind;
    HKEY root = nullptr;
    std::wstring path{};
    std::wstring name{};
    bool bothViews = true;  // registry entries: in the 64-bit and in the 32-bit view
};

const std::vector<MachineTrace>& InstallerTraces();

// What the traces hold now, one line each, sorted: every registry value below a traced key
// ("HKLM\...\Sonora 32 [64] DisplayName = 1:<bytes in hex>"), every file of a traced folder and
// every traced file with its size and a hash of its bytes. Two runs that wrote the same things
// read the same; a value named `mask` keeps its name but not its data (one made new each time).
std::vector<std::wstring> ReadTraces(const std::vector<std::wstring>& mask = {});
// Removes every trace. Returns false when something could not be removed; `problems` (when
// given) then names each one.
bool ResetToFreshMachine(std::vector<std::wstring>* problems = nullptr);
}

#pragma once

#include "foundation/HVString.h"
#include "foundation/win/HVUniqueResource.h"

#include <windows.h>

// Loads a library the program can't run without; when that fails, shows the "Critical Error"
// box naming the module and the system's reason, and returns no module.
HVModule LoadCriticalLibrary(const HVString& path, HWND owner);

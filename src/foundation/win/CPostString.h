#pragma once

#include "foundation/HVString.h"

#include <windows.h>

#include <cstdint>

// Sends a string to another process's command target (HVCommandTarget): through the shared
// ring when it fits, else through a file in the temporary folder that the target reads and
// deletes. The result is whether the message could be posted; the target handles it later.
class CPostString
{
public:
    static bool Post(HWND target, int32_t type, const HVString& text);
};

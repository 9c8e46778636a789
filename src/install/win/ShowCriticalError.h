#pragma once

#include <windows.h>

// The "Install Error" box: the install can't go on (a file the product needs could not be
// copied). Returns when the box is closed; the caller then abandons the install.
void ShowCriticalError(HWND owner = nullptr);

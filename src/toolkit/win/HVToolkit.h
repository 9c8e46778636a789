#pragma once

#include "foundation/HVString.h"

// The toolkit as a whole: made ready once before the first window, and given its look.
class HVToolkit
{
public:
    // Registers the system's control classes (progress bars among them) and puts the
    // built-in theme in place. Safe to call again.
    static bool Initialize();

    // The look of a skin folder: its "Titlebar Icon" (.ico or .png) becomes the title-bar icon of every
    // pop-up. A folder without one leaves the program's own icon. Returns whether the skin
    // had an icon.
    static bool ApplySkin(const HVString& skinFolder);
};

#pragma once

#include "foundation/HVString.h"

// The toolkit as a whole: made ready once before the first window, and given its look.
class HVToolkit
{
public:
    // Registers the system's control classes (progress bars among them) and puts the
    // built-in theme in place. Safe to call again.
    static bool Initialize();

    // The look of a skin: the file its resource "Titlebar Icon" names (an .ico or a .png,
    // relative to the skin file's folder) becomes the title-bar icon of every pop-up.
    //   <Skin><Resource name="Titlebar Icon" file="Titlebar Icon.png" /></Skin>
    // A skin that can't be read, names no such resource or names a missing file leaves the
    // program's own icon. Returns whether the skin gave an icon.
    static bool ApplySkin(const HVString& skinFile);
};

#pragma once

#include "foundation/HVString.h"

#include <cstdint>

// Tells a running copy of the product (its main window of class "LWFrame") about what was just
// installed, through its command target. When the product isn't running there is no one to
// tell: it finds the new plug-ins, media and services when it next starts.
class CRunningProduct
{
public:
    // The command types the product's command target understands from the installer.
    enum Command : int32_t
    {
        kPluginInstalled = 1,   // text: the plug-in's installed path
        kAddMedia = 2,          // text: a media file to add to the library
        kPreviewMedia = 3,      // text: a media file to open for preview
        kUpdateServiceList = 4, // text: the package's name
    };

    // False when the product isn't running or has no command target, or the post failed.
    static bool Tell(Command command, const HVString& text);
};

#pragma once

#include "foundation/HVString.h"
#include "product/InstallOptions.h"

#include <cstdint>
#include <vector>

// The shortcut page's decisions that need no window: which boxes start checked, whether the
// Quick Launch box exists on this Windows, and which shortcuts the product's Start Menu
// folder holds.
class CShortcutRules
{
public:
    // "Start Menu Version" when the value is absent.
    static constexpr int32_t kNoStartMenuVersion = -1;

    struct Choice
    {
        bool startMenu = false;
        bool desktop = false;
        bool quickLaunch = false;
    };

    // The page's defaults. A first install (or a portable or express one) makes the Start Menu
    // folder unless this very version made it already; a reinstall over an earlier
    // installation leaves the user's shortcuts as they are. Quick Launch follows the desktop,
    // and only where that folder still means something (QuickLaunchOffered). An answer file's
    // shortcuts take the place of all that (Quick Launch still only where it is offered).
    static Choice Defaults(const InstallOptions& options, int32_t startMenuVersion, int32_t productVersion,
                           int32_t windowsCode);

    // Windows 7 and later pin programs to the taskbar instead of the Quick Launch bar: the box
    // exists below Vista's code 1008, or for codes outside the Windows range 1000-1999.
    static bool QuickLaunchOffered(int32_t windowsCode);

    // One shortcut of the Start Menu folder. `name` and `target` take the display name and
    // the launcher's file name for "%s" (target nullptr: the launcher itself).
    struct StartMenuEntry
    {
        const char16_t* name;
        const char16_t* target;   // file name in the install folder; nullptr: the launcher
        const char16_t* arguments;
        const char16_t* icon;     // looked up among the product's art files
        int32_t feature;          // 0: always; otherwise made only when the product has it
    };
    static const std::vector<StartMenuEntry>& StartMenuEntries();
};

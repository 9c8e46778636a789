#pragma once

#include "foundation/HVString.h"

#include <cstdint>
#include <string_view>

// The decisions of the plug-in step that need no system: which driver description fits the
// running Windows, the driver version a description declares, and the registration helpers'
// parameters.
class CComponentRules
{
public:
    // "Drivers\WDM\Win10\HalvardWDMDriver.inf" from Windows 10 on (and on what comes after),
    // "Drivers\WDM\Win8\HalvardWDMDriver.inf" before; relative to the setup folder.
    static HVString DriverDescription(int32_t windowsCode);
    // The version of "DriverVer = <date>,<version>" in the description's [Version] section;
    // empty when there is none that reads as a version.
    static HVString DriverVersion(std::u16string_view infText);
    // The setup's driver goes in when none is recorded, or the recorded one is older or
    // unreadable.
    static bool DriverNeedsInstall(const HVString& setupVersion, const HVString& installedVersion);

    // RegSvr32's parameters: "/s", the extra switch (such as "/u", or none), the quoted path.
    static HVString RegSvr32Parameters(const HVString& dllPath, const HVString& extraSwitch);
    // The product's mark for a plug-in of "Plugins\System", a value of "Properties".
    static HVString SystemPluginMark(const HVString& fileName) { return u"System Plugin - " + fileName; }
};

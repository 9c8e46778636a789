#pragma once

#include "foundation/HVString.h"

#include <functional>

// The macros of the registry action language and their values for one run of lines.
// Expansion replaces every occurrence of each macro in a fixed order, then the first
// "[CUSTOMART]<file name>" (up to the next double quote) by the art file's full path.
class CRegistryMacros
{
public:
    static constexpr const char16_t* kAutoplayKey = u"Software\\Microsoft\\Windows\\CurrentVersion\\Explorer\\AutoplayHandlers\\";

    HVString installDir;   // with a backslash
    HVString systemDir;
    HVString currentDir;
    HVString productName;
    HVString productWithVersion;
    HVString exePath;
    HVString launcherPath;
    HVString launcherName;
    // Full path of an art file by its name.
    std::function<HVString(const HVString&)> findArt;

    HVString Expand(const HVString& line) const;
    // AutoPlay handlers are read by 32-bit and 64-bit Explorer alike; the test is made on the
    // line as written, before expansion.
    static bool NeedsBothViews(const HVString& line);
};

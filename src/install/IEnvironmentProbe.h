#pragma once

#include "foundation/HVString.h"

#include <cstdint>

// What the start-up checks ask of the machine. The application answers from the system; tests
// answer from a table, so the order and the decisions of the checks are tested without one.
class IEnvironmentProbe
{
public:
    // Whether machine-wide settings can be written (the registry write test).
    virtual bool HasWriteRights() = 0;
    // Makes sure no copy of the product runs, asking and closing as needed; false: start-up
    // must end (the check has told the user why).
    virtual bool EnsureProductNotRunning() = 0;
    // Stops the product's service of an earlier installation, if there is one.
    virtual void StopProductService() = 0;
    // Dotted versions; unreadable texts count as the defaults ("1.0.0.0" installed, "5.0.0.0"
    // required).
    virtual HVString InstalledBrowserVersion() = 0;
    virtual HVString MinimumBrowserVersion() = 0;
    // EDX of CPUID leaf 1.
    virtual uint32_t ProcessorFeatures() = 0;
    // The Windows version code (1000 to 1014, 0 unknown).
    virtual int32_t WindowsVersionCode() = 0;

protected:
    ~IEnvironmentProbe() = default;
};

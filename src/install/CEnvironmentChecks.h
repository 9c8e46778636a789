#pragma once

#include "install/IEnvironmentProbe.h"

#include <cstdint>

// The machine checks that start-up runs before the wizard, in their fixed order: rights,
// running copy, service, browser engine, processor, Windows version. The first that fails
// ends the run; later checks are then not even asked, so a machine that fails two of them
// hears about the first one only.
class CEnvironmentChecks
{
public:
    enum class Result
    {
        Passed,
        NoRights,
        ProductRunning,
        BrowserTooOld,
        NoSSE2,
        WindowsNotSupported,
    };

    static constexpr uint32_t kSSEBit = 1u << 25;
    static constexpr uint32_t kSSE2Bit = 1u << 26;
    static constexpr int32_t kFirstSupportedWindows = 1005;
    static constexpr int32_t kLastSupportedWindows = 1999;

    static Result Run(IEnvironmentProbe& probe);

    // Ctrl+Shift+F held at start-up skips the checks (support staff on a machine the checks
    // misjudge); any one key not held runs them.
    static bool SkipRequested(bool ctrl, bool shift, bool f) { return ctrl && shift && f; }

    static bool BrowserNewEnough(const HVString& installed, const HVString& minimum);
    static bool ProcessorSupported(uint32_t edx) { return (edx & kSSEBit) && (edx & kSSE2Bit); }
    static bool WindowsSupported(int32_t code)
    {
        return code >= kFirstSupportedWindows && code <= kLastSupportedWindows;
    }

    static const char* Name(Result result);
};

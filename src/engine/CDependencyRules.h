#pragma once

#include "foundation/HVString.h"

#include <cstdint>
#include <string_view>

// The decisions of the dependency step that need no system: which Windows needs which
// component, whether the installed WebView2 runtime is new enough, and the names a download
// is fetched from and stored under.
class CDependencyRules
{
public:
    // The DirectX helpers are never installed on the Windows 9x family or Windows 2000.
    static bool DirectXConsidered(int32_t windowsCode) { return windowsCode < 1000 || windowsCode > 1005; }
    // Nor is the WebView2 runtime on anything before Windows 7.
    static bool EdgeConsidered(int32_t windowsCode) { return windowsCode < 1000 || windowsCode > 1008; }

    // The runtime's "pv" version: exactly four decimal numbers separated by dots.
    static bool ParseVersion(std::u16string_view text, int32_t (&parts)[4]);
    // At least 119.0.2151.40; an unparsable value means the runtime is missing.
    static bool EdgeRuntimePresent(std::u16string_view pv);

    // The download server's base address and a file name joined by one "/".
    static HVString DownloadAddress(const HVString& base, const HVString& fileName);
    // "<temporary folder>HV Download (<n>).dat"; the folder ends in a backslash.
    static HVString TemporaryDownloadPath(const HVString& temporaryFolder, int32_t number);
    // "12.3 MB of 45.0 MB", "512 KB", for the status line while a download runs.
    static HVString DescribeBytes(uint64_t received, uint64_t announced);
};

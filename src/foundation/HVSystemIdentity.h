#pragma once

#include "foundation/HVString.h"

#include <cstdint>

// Which Windows the program runs on, as a code that other code compares by range (1000 to
// 1003 the Windows 9x family, 1004 and up the NT family, in release order) and a name that is
// recorded and shown. The table is a pure function of the version numbers so that every row
// can be tested anywhere; Current() feeds it the running system's true version.
//
// Versions 5.3 and later 5.x never shipped; should one appear it gets the Server 2003 code
// 1007 (so that range tests put it between XP and Vista, where it belongs) and the name
// "Microsoft Windows New (5.x)", so that the record says what was really seen.
class HVSystemIdentity
{
public:
    // The platform ids of the system's version information.
    enum class Platform { Win32s = 0, Windows9x = 1, NT = 2 };

    static constexpr int32_t kUnknown = 0;
    static constexpr int32_t kWindows95 = 1000;
    static constexpr int32_t kWindows98 = 1001;
    static constexpr int32_t kWindows98SE = 1002;
    static constexpr int32_t kWindowsME = 1003;
    static constexpr int32_t kWindowsNT = 1004;
    static constexpr int32_t kWindows2000 = 1005;
    static constexpr int32_t kWindowsXP = 1006;
    static constexpr int32_t kWindowsServer2003 = 1007;
    static constexpr int32_t kWindowsVista = 1008;
    static constexpr int32_t kWindows7 = 1009;
    static constexpr int32_t kWindows8 = 1010;
    static constexpr int32_t kWindows81 = 1011;
    static constexpr int32_t kWindows10 = 1012;
    static constexpr int32_t kWindows11 = 1013;
    static constexpr int32_t kWindowsNew = 1014;

    HVSystemIdentity() = default;

    // serviceText: the service-pack text of the version information (for the 9x family it
    // tells the second edition of Windows 98 by an "A" in its second character).
    static HVSystemIdentity FromVersion(Platform platform, uint32_t major, uint32_t minor, uint32_t build,
                                        const HVString& serviceText);
    // What is reported when the version can't be read.
    static HVSystemIdentity Unknown();

#ifdef _WIN32
    // The running system, read once (under a lock) from RtlGetVersion, which tells the truth
    // whatever the program's manifest declares; afterwards read freely from any thread.
    static const HVSystemIdentity& Current();
#endif

    int32_t GetCode() const { return code_; }
    const HVString& GetName() const { return name_; }
    uint32_t GetMajor() const { return major_; }
    uint32_t GetMinor() const { return minor_; }
    uint32_t GetBuild() const { return build_; }

private:
    int32_t code_ = kUnknown;
    HVString name_ = u"Unknown OS";
    uint32_t major_ = 0;
    uint32_t minor_ = 0;
    uint32_t build_ = 0;
};

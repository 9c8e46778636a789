#include "foundation/HVSystemIdentity.h"

namespace
{
struct NtRow
{
    uint32_t major;
    uint32_t minor;
    int32_t code;
    const char16_t* name;
};

// Versions of the NT family with a name of their own. 10.0 is split by build further below.
constexpr NtRow kNtRows[] = {
    {5, 0, HVSystemIdentity::kWindows2000, u"Microsoft Windows 2000"},
    {5, 1, HVSystemIdentity::kWindowsXP, u"Microsoft Windows XP"},
    {5, 2, HVSystemIdentity::kWindowsServer2003, u"Microsoft Windows Server 2003"},
    {6, 0, HVSystemIdentity::kWindowsVista, u"Microsoft Windows Vista"},
    {6, 1, HVSystemIdentity::kWindows7, u"Microsoft Windows 7"},
    {6, 2, HVSystemIdentity::kWindows8, u"Microsoft Windows 8"},
    {6, 3, HVSystemIdentity::kWindows81, u"Microsoft Windows 8.1"},
};

constexpr uint32_t kFirstWindows11Build = 22000;
}

HVSystemIdentity HVSystemIdentity::Unknown() { return HVSystemIdentity(); }

HVSystemIdentity HVSystemIdentity::FromVersion(Platform platform, uint32_t major, uint32_t minor, uint32_t build,
                                               const HVString& serviceText)
{
    HVSystemIdentity identity;
    identity.major_ = major;
    identity.minor_ = minor;
    identity.build_ = build;
    auto set = [&](int32_t code, const HVString& name) {
        identity.code_ = code;
        identity.name_ = name;
        return identity;
    };

    if (platform == Platform::Windows9x) {
        if (major != 4)
            return set(kUnknown, u"Unknown OS");
        switch (minor) {
        case 0:
            return set(kWindows95, u"Microsoft Windows 95");
        case 10: {
            // The second edition says " A" in its service text; both editions share the name.
            const bool secondEdition = serviceText.GetLength() >= 2 && serviceText[1] == u'A';
            return set(secondEdition ? kWindows98SE : kWindows98, u"Microsoft Windows 98");
        }
        case 90:
            return set(kWindowsME, u"Microsoft Windows ME");
        default:
            return set(kUnknown, u"Unknown OS");
        }
    }
    if (platform != Platform::NT)
        return set(kUnknown, u"Unknown OS");

    if (major <= 4)
        return set(kWindowsNT, u"Microsoft Windows NT");
    for (const NtRow& row : kNtRows)
        if (row.major == major && row.minor == minor)
            return set(row.code, row.name);
    if (major == 10 && minor == 0)
        return build < kFirstWindows11Build ? set(kWindows10, u"Microsoft Windows 10")
                                            : set(kWindows11, u"Microsoft Windows 11");
    const HVString newName = HVString::Format(u"Microsoft Windows New (%d.%d)", major, minor);
    if (major == 5)
        return set(kWindowsServer2003, newName);
    return set(kWindowsNew, newName);
}

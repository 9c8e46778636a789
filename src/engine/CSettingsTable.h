#pragma once

#include "foundation/HVString.h"

#include <cstdint>

class HVInstallDescription;

// The product's first-run settings that the setup program knows, by identifier 0 to 87: the
// product's own setting name, the "/*/DefaultSettings/" element with which a distributor can
// preset it (none for some), the built-in defaults and how the product stores it.
//
// A setting is stored as text when the product reads it as text: the ones with a text default
// (0 music location, 9 lookup language, 21 sidecar types, 55 and 56 sound files, 82 sidecar
// mode) and the two that hold names (60 writer name, 73 cue file template). Every other
// setting is a number (REG_DWORD).
//
// A distributor's value for a number is read like every integer of the install description:
// decimal, blanks around and a sign allowed. Anything else ("12abc", "", "-0x5", a value
// beyond 32 bits) is ignored and the built-in default applies. A text value is taken as it
// stands; an empty one leaves the built-in default.
class CSettingsTable
{
public:
    static constexpr int32_t kCount = 88;
    enum class Stored { Number, Text };

    // What the built-in defaults that depend on the machine are computed from.
    struct Machine
    {
        HVString musicFolder;                   // text default of 0
        bool shellExtensionRegistered = false;  // integer default of 5
    };

    static bool IsKnown(int32_t id) { return id >= 0 && id < kCount; }
    // Empty when the setting has no key, or the identifier is unknown.
    static HVString KeyName(int32_t id);
    static HVString SettingName(int32_t id);
    static Stored StoredAs(int32_t id);
    static int32_t IntegerDefault(int32_t id, const Machine& machine);
    static HVString TextDefault(int32_t id, const Machine& machine);

    // The distributor's value when the setting has a key and the description holds a usable
    // one, else the built-in default; 0 and "" for unknown identifiers.
    static int32_t IntegerValue(int32_t id, const HVInstallDescription& description, const Machine& machine);
    static HVString TextValue(int32_t id, const HVInstallDescription& description, const Machine& machine);
    // The value in the form it is stored, as text (numbers in decimal): for logs and tests.
    static HVString ValueText(int32_t id, const HVInstallDescription& description, const Machine& machine);
};

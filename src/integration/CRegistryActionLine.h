#pragma once

#include "foundation/HVString.h"

#include <cstdint>
#include <optional>

// One line of the registry action language, after its macros are expanded:
//   key path | value name | data | type | action
// No escaping, empty fields kept; a line of any other field count does nothing. Root markers
// are whole lines on their own and are told apart before expansion (RootMarker).
class CRegistryActionLine
{
public:
    enum class Root { ClassesRoot, CurrentUser, LocalMachine };
    enum class Action { Set, Create, Delete };

    // The root a line selects when it is exactly one of the three markers, with case.
    static std::optional<Root> RootMarker(const HVString& line);
    // nullopt for a line that is not exactly five fields.
    static std::optional<CRegistryActionLine> Parse(const HVString& line);
    // The data as a signed decimal number: leading digits count, text that is no number is 0.
    static int32_t Number(const HVString& data);

    HVString keyPath;
    HVString valueName;  // "Default" arrives here as "" (the key's unnamed value)
    HVString data;
    bool isString = false;  // "STRING" exactly; every other type word is a DWORD
    Action action = Action::Set;
};

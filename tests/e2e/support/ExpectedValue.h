#pragma once

#include <windows.h>

#include <optional>
#include <string>
#include <vector>

namespace e2e
{
// One registry value a fixture file says the machine holds, and what the machine holds there.
struct ExpectedValue
{
    HKEY root = nullptr;
    std::wstring key;
    std::wstring name;   // empty: the unnamed value
    std::wstring data;   // a DWORD in decimal
    bool isString = true;
    std::string line;    // the fixture's line, for failure messages

    // The value on the machine in the same form as `data`; none when it is missing or of the
    // other type.
    std::optional<std::wstring> Actual() const;
};

// The values of a fixture file (tests/e2e/data): "root|key|value|data|type" a line, root
// HKEY_CLASSES_ROOT, HKEY_CURRENT_USER or HKEY_LOCAL_MACHINE, "Default" for the unnamed value,
// type STRING or DWORD; lines starting with "#" and blank ones skipped; "{DEST}" stands for
// `destination`. Empty when the file can't be read.
std::vector<ExpectedValue> ReadExpectedValues(const std::wstring& fixture, const std::wstring& destination);
}

#pragma once

#include "foundation/HVString.h"

#include <cstdint>
#include <optional>
#include <vector>

// The shared-file convention of Windows: a file that several products put into a shared system
// folder carries a use count, the value named by its full path under kSharedDllsKey. Every
// install that puts the file there raises it and every uninstall lowers it; the file goes only
// when the count reaches zero.
class CSharedFileRules
{
public:
    // Under HKEY_LOCAL_MACHINE.
    static constexpr const char16_t* kSharedDllsKey = u"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\SharedDLLs";

    // The file lies in one of `systemFolders` (with or without their backslash) or below one;
    // case is ignored.
    static bool IsShared(const HVString& path, const std::vector<HVString>& systemFolders);
    // The count after this install: one more than `before`. A file that was there without a
    // count was put there by someone who kept none, so it counts as one user already.
    static uint32_t RaisedCount(std::optional<uint32_t> before, bool fileExistedBefore);
};

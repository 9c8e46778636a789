#pragma once

#include "foundation/HVString.h"

#include <vector>

namespace e2e
{
// The replacements at restart that Windows keeps in PendingFileRenameOperations. The value is
// put back as it was when the object goes, so no later restart of the prefix moves the files
// of a test about.
class PendingRenames
{
public:
    PendingRenames();
    ~PendingRenames();
    PendingRenames(const PendingRenames&) = delete;
    PendingRenames& operator=(const PendingRenames&) = delete;

    // Some entry replaces `destination` (the value holds system forms such as "!\??\C:\...").
    static bool Names(const HVString& destination);
    // How many entries replace `destination`.
    static size_t Count(const HVString& destination);

private:
    std::vector<HVString> before_;
};
}

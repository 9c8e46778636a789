#pragma once

#include "foundation/CVersionInfo.h"
#include "foundation/HVString.h"

#include <cstdint>
#include <string_view>
#include <vector>

// The decisions about the product's identity that need no system: which feature numbers the
// product reports and how its version becomes one integer. CProductIdentity (Windows) asks
// these; the choices themselves are documented there, in one place.
class CProductIdentityRules
{
public:
    static constexpr int32_t kFeatureToolShortcut = 24;
    // The audio converter's Start Menu shortcut; not in the default set, a distributor's
    // feature list turns it on.
    static constexpr int32_t kFeatureConverterShortcut = 25;
    static constexpr int32_t kFeatureServer = 104;
    static constexpr int32_t kFeaturePortableInstall = 173;
    static constexpr int32_t kFeatureFileAssociations = 176;

    // The server edition is the one whose launcher name contains "Dynamo", in any case.
    static bool IsServerEdition(std::u16string_view launcherName);

    // 24, 173 and 176, and 104 for the server edition; sorted.
    static std::vector<int32_t> DefaultFeatures(std::u16string_view launcherName);

    // A distributor's ";"-separated list of feature numbers replaces the default set. Spaces
    // around entries are ignored, as are empty entries, entries that aren't plain decimal
    // numbers and duplicates; the result is sorted. A text without a single usable number
    // (empty, or all junk) gives the default set, so that a broken override never takes
    // every feature away; a distributor who wants none writes "0".
    static std::vector<int32_t> ParseFeatures(std::u16string_view text, std::u16string_view launcherName);

    // The version as the one integer stored for "Start Menu Version": major in bits 24-30,
    // minor in bits 16-23, build in bits 0-15 (revision left out: shortcuts don't change
    // between revisions). Ordered like the versions, never negative, so it can't meet the
    // -1 that marks "absent".
    static int32_t VersionInteger(const CVersionInfo& version);
};

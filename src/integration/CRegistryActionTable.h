#pragma once

#include "foundation/HVString.h"

#include <vector>

// The built-in registry action table: the product's ProgIDs, the Open-with entry of its
// launcher, its package and playlist types, AutoPlay handlers, MIME entries and media-key
// registration, as lines for CRegistryActionLine, with root markers where the root changes.
// Macros stay unexpanded; the AutoPlay "Action" texts are translated here, since the user
// reads them in Explorer.
class CRegistryActionTable
{
public:
    // withLauncher: the Applications\<launcher> lines are in only when a launcher is known.
    static std::vector<HVString> Lines(bool withLauncher);
    // The extension of the product's own MIME type (application/x-listenwell-lwa, row 41): what
    // a browser hands over under that type opens through the ".Mime" ProgID.
    static constexpr const char16_t* kMimeExtension = u".lwa";
};

#pragma once

#include "foundation/HVString.h"

#include <vector>

// The registry places that this product's install writes to, as the uninstall's plan takes
// them ("HKLM\..." keys, the key and what lies below it; a trailing backslash: only below it; a
// trailing "*": the keys one level down whose names begin with what comes before it). They come
// from the registry action table, the association table's kinds of keys (extensions, their
// per-user choices, MIME types, the protocols it names), Default Programs, the product's own
// keys, its records and the machine-wide tables the install counts in. A record naming any
// other key is refused whole.
class CUninstallPlaces
{
public:
    struct Product
    {
        HVString registryRoot = {};        // "Software\Halvard\Sonora 32"
        HVString productWithVersion = {};  // "Sonora32"
        HVString displayName = {};         // "Sonora"
        std::vector<HVString> recordKeys = {};  // the installation's record and its uninstall entry
        std::vector<HVString> programs = {};    // file names of the install folder's programs
        std::vector<HVString> protocols = {};   // the URL protocols of the association table
    };

    static std::vector<HVString> Registry(const Product& product);
    // Where a record of the first format is still trusted: the product's own keys.
    static std::vector<HVString> OwnKeys(const Product& product);
};

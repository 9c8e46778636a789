#pragma once

#include "foundation/HVString.h"

#include <vector>

// What earlier versions left in the program folder that this version no longer ships, and the
// install description's own list of obsolete files. Paths are relative to the install folder;
// folders end in a backslash.
class CRetiredFiles
{
public:
    // The product's fixed list: 18 files, then 4 folders.
    static const std::vector<HVString>& Entries();
    // Cleaned on every install: the saved views and the retired theme folder.
    static const std::vector<HVString>& AlwaysCleanedFolders();
    // Cleaned only with the clean-data option: "Data\", "Skins\", "Stores\".
    static const std::vector<HVString>& DataFolders();

    // "/*/Product/ObsoleteFiles" split at ";", blanks trimmed, empty items dropped. Items are
    // relative to the install folder: an absolute item (drive, "\" or "/" first) or one with a
    // ".." part would reach outside it and is put in `refused` instead.
    static std::vector<HVString> SplitObsoleteFiles(const HVString& text, std::vector<HVString>* refused = nullptr);
};

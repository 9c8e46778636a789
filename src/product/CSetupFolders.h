#pragma once

#include "product/InstallOptions.h"

#include "foundation/HVString.h"

#include <functional>

// Where the setup media lie, worked out from the folder of the setup program. A setup folder
// may sit one level below the description it installs from (a language or edition subfolder
// beside the shared Install.xml), hence the look into the parent folder.
class CSetupFolders
{
public:
    using FileExists = std::function<bool(const HVString& path)>;

    // setupFolder ends in a backslash. Fills the support and library folders and the install
    // description path; the install settings may later replace the support folder.
    static void Apply(const HVString& setupFolder, const FileExists& fileExists, InstallOptions& options);
};

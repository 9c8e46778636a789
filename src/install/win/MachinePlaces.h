#pragma once

#include "engine/CUninstallPlan.h"
#include "foundation/HVString.h"

#include <vector>

// The places on this machine that the product's install writes to, as the uninstall and the
// rollback of a failed install take them: the install folder (with a backslash), the system,
// font and shortcut folders (the installing user's own, `userFolders`, as its record names
// them; the running user's when it names none), the registry places of the product, and its
// own records (found by the installation whose program lies in the install folder).
CUninstallPlan::Places MachinePlaces(const HVString& installFolder, const std::vector<HVString>& userFolders);

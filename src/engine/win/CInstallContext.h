#pragma once

#include "foundation/HVString.h"

#include <windows.h>

struct InstallOptions;
class HVInstallDescription;
class CProductIdentity;
class CInstallChangeLog;
class CDeferredOperations;
class IInstallProgress;

// What every engine object of one install works from: the run's choices, the install
// description, the product, the two folders, where changes are noted, and the page that shows
// progress and owns message boxes. Everything here outlives the install step.
struct CInstallContext
{
    InstallOptions& options;
    const HVInstallDescription& description;
    const CProductIdentity& product;
    HVString setupFolder;    // with a backslash
    HVString installFolder;  // with a backslash
    CInstallChangeLog& changes;
    CDeferredOperations& deferred;
    IInstallProgress& progress;
    HWND owner = nullptr;
};

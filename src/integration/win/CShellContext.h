#pragma once

#include "foundation/HVString.h"

class CInstallChangeLog;
class CProductIdentity;
class FileTypeModel;

// What the shell registration works from: where changes are noted, the product, and the two
// folders. The copy page and the file-association page both make one.
struct CShellContext
{
    CInstallChangeLog& changes;
    const CProductIdentity& product;
    HVString installFolder;  // with a backslash
    HVString setupFolder;    // with a backslash: [CURRENTDIR]
    const FileTypeModel& fileTypes;
};

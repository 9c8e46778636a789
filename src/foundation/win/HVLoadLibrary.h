#pragma once

#include "foundation/HVString.h"
#include "foundation/win/HVUniqueResource.h"

#include <windows.h>

// The loader of the product's helper libraries. A library is loaded from a full path, with
// its own folder searched for what it needs in turn, so a library of the same name elsewhere
// on the machine is never picked up by mistake. Failures are logged under "HVLoadLibrary" and
// returned; telling the user is the application's (LoadCriticalLibrary), because only the
// caller knows that it can't go on.
class HVLoadLibrary
{
public:
    static HVModule Load(const HVString& path, DWORD* error = nullptr);
    // A helper library of the product: from the program folder, or from its "x64\" subfolder
    // in the 64-bit build.
    static HVModule LoadProductLibrary(const HVString& programFolder, const HVString& fileName,
                                       DWORD* error = nullptr);
    // The texts of the "Critical Error" box for a library the program can't run without,
    // translated and filled in.
    static HVString CriticalErrorTitle();
    static HVString CriticalErrorText(const HVString& module, const HVString& errorText);
    // The system's own words for an error code, without the trailing line break.
    static HVString SystemErrorText(DWORD error);
};

#pragma once

#include "foundation/HVString.h"

// Direct registration of a module: load it, call its DllRegisterServer, unload it. Only
// ".dll" and ".ocx" files are registered this way.
class CComponentRegistration
{
public:
    // The module exports DllRegisterServer. Looked up without running the module's own start-up
    // code, so asking about a file never runs it.
    static bool IsSelfRegistering(const HVString& path);
    // False for another file type, a module that can't be loaded, a missing export or a
    // failing result (logged).
    static bool RegisterServer(const HVString& path);
};

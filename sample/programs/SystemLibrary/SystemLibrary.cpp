// A shared library that the setup program puts into the Windows system folders only when the
// one there is older: the two copies built from this file differ in nothing but their
// version resource, which is what the version check reads.
#include <windows.h>

BOOL WINAPI DllMain(HINSTANCE, DWORD, LPVOID)
{
    return TRUE;
}

extern "C" __declspec(dllexport) int __stdcall HVLibraryRevision()
{
    return 1;
}

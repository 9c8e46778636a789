#include "install/win/LoadCriticalLibrary.h"

#include "foundation/win/HVLoadLibrary.h"
#include "toolkit/win/HVMessageBox.h"

HVModule LoadCriticalLibrary(const HVString& path, HWND owner)
{
    DWORD error = ERROR_SUCCESS;
    HVModule module = HVLoadLibrary::Load(path, &error);
    if (!module)
        HVMessageBox::Show(owner, HVLoadLibrary::CriticalErrorText(path, HVLoadLibrary::SystemErrorText(error)),
                           HVLoadLibrary::CriticalErrorTitle(), MB_OK | MB_ICONERROR);
    return module;
}

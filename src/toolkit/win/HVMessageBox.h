#pragma once

#include "foundation/HVString.h"

#include <windows.h>

// Every message box of the installer goes through here, so that there is one kind of window
// for people to read and for tests to find and answer: a dialog of class "#32770" whose text
// is the static control 0xFFFF and whose buttons carry the standard ids (IDOK, IDYES, ...).
// Texts arrive translated and formatted; an empty title stays empty.
class HVMessageBox
{
public:
    // type: the MB_* flags of MessageBoxW. Returns the pressed button's id (IDOK, IDYES, ...),
    // or 0 when the box could not be shown.
    static int Show(HWND owner, const HVString& text, const HVString& title, UINT type);
};

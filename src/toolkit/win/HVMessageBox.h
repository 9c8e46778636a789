#pragma once

#include "foundation/HVString.h"

#include <windows.h>

#include <vector>

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

    // A box whose buttons carry our own texts ("Restart"/"Cancel", "Download"/"Quit Setup",
    // ...). Ids are the caller's; the box is still a "#32770" dialog whose buttons are child
    // windows with those ids. icon: MB_ICONINFORMATION, MB_ICONWARNING, MB_ICONERROR or 0.
    // Returns the pressed button's id; closing the box (Esc, Alt+F4) returns cancelId.
    struct Button
    {
        int id;
        HVString text;
    };
    static int ShowButtons(HWND owner, const HVString& text, const HVString& title, const std::vector<Button>& buttons,
                           int defaultId, int cancelId, UINT icon = 0);
};

#pragma once

#include "foundation/HVString.h"

#include <windows.h>

#include <vector>

// Every message box of the installer goes through here, so that there is one kind of window
// for people to read and for tests to find and answer: a dialog of class "#32770" whose text
// is the static control 0xFFFF and whose buttons carry the standard ids (IDOK, IDYES, ...).
// Texts arrive translated and formatted; an empty title stays empty.
//
// Unattended runs (/SuppressMessages) show no box at all: on a machine where nobody is logged
// on a box would wait for ever. Each box is then answered as its default button (the one Enter
// presses) would answer it, except that Retry is never the answer: with nobody to free the
// file a retry could only fail again and ask again, so the box's Cancel answers instead. The
// title and the text go to the log at error level, one line each, so the administrator reads
// what a user would have read. A box with a timer or a countdown is still a box here and
// follows the same rule.
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

    // Set once at start-up, before anything can show a box.
    static void SetSuppressed(bool suppressed);
    static bool IsSuppressed();

    // The answer a box of these MB_* flags gives when it is not shown.
    static int UnattendedAnswer(UINT type);

    // For the program's own dialogs that are not message boxes (the language choice): true
    // when the dialog must not be shown. Its title and text, and `answer` (the caption of its
    // default button), are then in the log, and the caller takes what that button gives.
    static bool SkipUnattended(const HVString& title, const HVString& text, const HVString& answer);
};

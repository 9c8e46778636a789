#include "toolkit/win/HVMessageBox.h"

#include "foundation/HVLog.h"

int HVMessageBox::Show(HWND owner, const HVString& text, const HVString& title, UINT type)
{
    HVLog::Write(HVLog::kInfo, "HVMessageBox::Show", u"%s: %s", title, text);
    // A box without an owner must still come to the front: it is often the first window the
    // installer shows.
    if (!owner)
        type |= MB_SETFOREGROUND;
    const int result = ::MessageBoxW(owner, text.w(), title.w(), type);
    HVLog::Write(HVLog::kInfo, "HVMessageBox::Show", u"Answer: %d", result);
    return result;
}

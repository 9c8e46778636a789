#include "toolkit/win/HVProgressBar.h"

#include "toolkit/win/HVToolkit.h"

#include <commctrl.h>

bool HVProgressBar::Create(HVLayoutWnd& parent, const HVPlacement& place, int range)
{
    static const bool ready = HVToolkit::Initialize();
    (void)ready;
    if (!CreateControl(parent, PROGRESS_CLASSW, u"", 0, 0, place))
        return false;
    ::SendMessageW(hwnd_, PBM_SETRANGE32, 0, range);
    return true;
}

void HVProgressBar::SetRange(int minimum, int maximum)
{
    if (hwnd_)
        ::SendMessageW(hwnd_, PBM_SETRANGE32, minimum, maximum);
}

void HVProgressBar::SetPosition(int position)
{
    if (hwnd_)
        ::SendMessageW(hwnd_, PBM_SETPOS, position, 0);
}

int HVProgressBar::Position() const
{
    return hwnd_ ? static_cast<int>(::SendMessageW(hwnd_, PBM_GETPOS, 0, 0)) : 0;
}

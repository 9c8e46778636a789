#include "toolkit/win/HVMessageBox.h"

#include "foundation/HVLog.h"

#include <commctrl.h>

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

namespace
{
PCWSTR TaskDialogIcon(UINT icon)
{
    switch (icon & MB_ICONMASK) {
    case MB_ICONERROR: return TD_ERROR_ICON;
    case MB_ICONWARNING: return TD_WARNING_ICON;
    case MB_ICONINFORMATION: return TD_INFORMATION_ICON;
    default: return nullptr;
    }
}
}   // namespace

int HVMessageBox::ShowButtons(HWND owner, const HVString& text, const HVString& title, const std::vector<Button>& buttons,
                              int defaultId, int cancelId, UINT icon)
{
    HVLog::Write(HVLog::kInfo, "HVMessageBox::ShowButtons", u"%s: %s", title, text);
    std::vector<TASKDIALOG_BUTTON> list;
    list.reserve(buttons.size());
    for (const Button& b : buttons)
        list.push_back({b.id, b.text.w()});

    TASKDIALOGCONFIG config = {};
    config.cbSize = sizeof config;
    config.hwndParent = owner;
    // Without a cancel button Esc and the close box would do nothing; allow them and report
    // the caller's cancel id instead.
    config.dwFlags = TDF_ALLOW_DIALOG_CANCELLATION | TDF_POSITION_RELATIVE_TO_WINDOW | TDF_SIZE_TO_CONTENT;
    config.pszWindowTitle = title.w();
    config.pszContent = text.w();
    config.pszMainIcon = TaskDialogIcon(icon);
    config.cButtons = static_cast<UINT>(list.size());
    config.pButtons = list.data();
    config.nDefaultButton = defaultId;

    int pressed = 0;
    const HRESULT hr = ::TaskDialogIndirect(&config, &pressed, nullptr, nullptr);
    if (FAILED(hr)) {
        HVLog::Write(HVLog::kError, "HVMessageBox::ShowButtons", u"TaskDialogIndirect failed (0x%08x)", static_cast<uint32_t>(hr));
        return 0;
    }
    if (pressed == IDCANCEL && cancelId != IDCANCEL) {
        bool isOwnButton = false;
        for (const Button& b : buttons)
            isOwnButton = isOwnButton || b.id == IDCANCEL;
        if (!isOwnButton)
            pressed = cancelId;
    }
    HVLog::Write(HVLog::kInfo, "HVMessageBox::ShowButtons", u"Answer: %d", pressed);
    return pressed;
}

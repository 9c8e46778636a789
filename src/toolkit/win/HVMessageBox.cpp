#include "toolkit/win/HVMessageBox.h"

#include "foundation/HVLog.h"
#include "foundation/win/HVTrackedModalLoop.h"

#include <commctrl.h>

#include <atomic>
#include <iterator>

namespace
{
std::atomic<bool> gSuppressed{false};

// The box's text as one log line: its lines joined by single blanks, as they read.
HVString OneLine(const HVString& text)
{
    HVString line;
    int32_t start = 0;
    while (start <= text.GetLength()) {
        int32_t end = text.FindOneOf(u"\r\n", start);
        if (end == HVString::npos)
            end = text.GetLength();
        HVString piece = text.Mid(start, end - start);
        piece.Trim(u" \t");
        if (!piece.IsEmpty()) {
            if (!line.IsEmpty())
                line += u' ';
            line += piece;
        }
        start = end + 1;
    }
    return line;
}

void LogUnshown(const char* source, const HVString& title, const HVString& text, const HVString& answer)
{
    HVLog::Write(HVLog::kError, source, u"Box title: %s", title);
    HVLog::Write(HVLog::kError, source, u"Box text: %s", OneLine(text));
    HVLog::Write(HVLog::kInfo, source, u"Not shown (messages suppressed); answered \"%s\"", answer);
}

// Retrying can only fail again when nobody is there to free what failed.
int WithoutRetry(int answer, int cancelId) { return answer == IDRETRY || answer == IDTRYAGAIN ? cancelId : answer; }

const char16_t* Caption(int id)
{
    switch (id) {
    case IDOK: return u"OK";
    case IDCANCEL: return u"Cancel";
    case IDABORT: return u"Abort";
    case IDRETRY: return u"Retry";
    case IDIGNORE: return u"Ignore";
    case IDYES: return u"Yes";
    case IDNO: return u"No";
    case IDTRYAGAIN: return u"Try Again";
    case IDCONTINUE: return u"Continue";
    default: return u"?";
    }
}
}   // namespace

void HVMessageBox::SetSuppressed(bool suppressed) { gSuppressed = suppressed; }

bool HVMessageBox::IsSuppressed() { return gSuppressed; }

int HVMessageBox::UnattendedAnswer(UINT type)
{
    // The buttons of each MB_ type in the order MB_DEFBUTTONn counts them.
    static const std::vector<int> kButtons[] = {
        {IDOK},                              // MB_OK
        {IDOK, IDCANCEL},                    // MB_OKCANCEL
        {IDABORT, IDRETRY, IDIGNORE},        // MB_ABORTRETRYIGNORE
        {IDYES, IDNO, IDCANCEL},             // MB_YESNOCANCEL
        {IDYES, IDNO},                       // MB_YESNO
        {IDRETRY, IDCANCEL},                 // MB_RETRYCANCEL
        {IDCANCEL, IDTRYAGAIN, IDCONTINUE},  // MB_CANCELTRYCONTINUE
    };
    const UINT kind = type & MB_TYPEMASK;
    const std::vector<int>& buttons = kind < std::size(kButtons) ? kButtons[kind] : kButtons[0];
    // As the system does, a default beyond the last button is the first.
    const size_t index = (type & MB_DEFMASK) >> 8;
    const int answer = index < buttons.size() ? buttons[index] : buttons.front();
    // Abort/Retry/Ignore has no Cancel: not retrying there is aborting.
    return WithoutRetry(answer, kind == MB_ABORTRETRYIGNORE ? IDABORT : IDCANCEL);
}

bool HVMessageBox::SkipUnattended(const HVString& title, const HVString& text, const HVString& answer)
{
    if (!IsSuppressed())
        return false;
    LogUnshown("HVMessageBox::SkipUnattended", title, text, answer);
    return true;
}

int HVMessageBox::Show(HWND owner, const HVString& text, const HVString& title, UINT type)
{
    if (IsSuppressed()) {
        const int answer = UnattendedAnswer(type);
        LogUnshown("HVMessageBox::Show", title, text, Caption(answer));
        return answer;
    }
    HVLog::Write(HVLog::kInfo, "HVMessageBox::Show", u"%s: %s", title, OneLine(text));
    // A box without an owner must still come to the front: it is often the first window the
    // installer shows.
    if (!owner)
        type |= MB_SETFOREGROUND;
    const HVTrackedModalLoop tracked;
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
    if (IsSuppressed()) {
        const int answer = WithoutRetry(defaultId, cancelId);
        HVString caption = Caption(answer);
        for (const Button& b : buttons)
            if (b.id == answer)
                caption = b.text;
        LogUnshown("HVMessageBox::ShowButtons", title, text, caption);
        return answer;
    }
    HVLog::Write(HVLog::kInfo, "HVMessageBox::ShowButtons", u"%s: %s", title, OneLine(text));
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
    const HVTrackedModalLoop tracked;
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

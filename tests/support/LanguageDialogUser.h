#pragma once

// The language selection dialog of this process met as a user meets it: a second thread waits
// for it, reads what a user would read (title, prompt, the list's lines and the line selected,
// the buttons) and then acts on it. Header-only; for the Windows test programs.
//
//   LanguageDialogUser user(LanguageDialogUser::Pick(2, IDOK));
//   const int chosen = CLanguageSelectionDlg::Show(nullptr, languages, u"de-DE");
//   user.Join();
//   EXPECT_EQ(user.selected, 1);

#include "install/win/CLanguageSelectionDlg.h"

#include "OwnDialog.h"

#include <functional>
#include <string>
#include <thread>
#include <vector>

class LanguageDialogUser
{
public:
    using Act = std::function<void(HWND dialog, HWND list)>;

    explicit LanguageDialogUser(Act act) : thread_([this, act = std::move(act)] { Meet(act); }) {}

    // What a user does: selects a line of the list, then presses a button (IDOK, IDCANCEL),
    // closes the window (kCloseWindow) or double-clicks the line (kDoubleClick).
    static constexpr int kCloseWindow = 0, kDoubleClick = -1;
    static Act Pick(int line, int press)
    {
        return [=](HWND dialog, HWND list) {
            ::SendMessageW(list, LB_SETCURSEL, line, 0);
            if (press == kCloseWindow)
                ::PostMessageW(dialog, WM_CLOSE, 0, 0);
            else if (press == kDoubleClick)
                ::PostMessageW(dialog, WM_COMMAND, MAKEWPARAM(CLanguageSelectionDlg::kLanguageListId, LBN_DBLCLK),
                               reinterpret_cast<LPARAM>(list));
            else
                PressButton(dialog, press);
        };
    }
    ~LanguageDialogUser() { Join(); }
    LanguageDialogUser(const LanguageDialogUser&) = delete;
    LanguageDialogUser& operator=(const LanguageDialogUser&) = delete;

    void Join()
    {
        if (thread_.joinable())
            thread_.join();
    }

    // What the user saw; `found` stays false when no such dialog came.
    bool found = false;
    std::wstring title;
    std::wstring prompt;
    std::vector<std::wstring> lines;
    int selected = -1;
    std::wstring buttons;   // "OK|Cancel"

private:
    void Meet(const Act& act)
    {
        const HWND dialog = WaitForOwnDialog();
        const HWND list = ::GetDlgItem(dialog, CLanguageSelectionDlg::kLanguageListId);
        if (!list)
            return;
        found = true;
        title = WindowText(dialog);
        prompt = WindowText(::GetDlgItem(dialog, CLanguageSelectionDlg::kPromptId));
        const int count = static_cast<int>(::SendMessageW(list, LB_GETCOUNT, 0, 0));
        for (int line = 0; line < count; ++line) {
            wchar_t text[128] = {};
            ::SendMessageW(list, LB_GETTEXT, line, reinterpret_cast<LPARAM>(text));
            lines.push_back(text);
        }
        selected = static_cast<int>(::SendMessageW(list, LB_GETCURSEL, 0, 0));
        buttons = WindowText(::GetDlgItem(dialog, IDOK)) + L"|" + WindowText(::GetDlgItem(dialog, IDCANCEL));
        act(dialog, list);
    }

    // Last: the thread starts once every field above is there.
    std::thread thread_;
};

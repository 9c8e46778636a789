#include "toolkit/win/HVMessageBox.h"

#include "OwnDialog.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <thread>

namespace
{
TEST(HVMessageBoxTest, AnsweredByButtonIdOrByClosingTheWindow)
{
    constexpr int kCloseWindow = 0;
    const struct { const char* name; std::function<int()> show; int press; int expected; const wchar_t* title; } rows[] = {
        {"standard box", [] { return HVMessageBox::Show(nullptr, u"Question text", u"Confirm Cancellation", MB_YESNO | MB_ICONQUESTION); },
         IDNO, IDNO, L"Confirm Cancellation"},
        {"own button texts come back as their ids",
         [] { return HVMessageBox::ShowButtons(nullptr, u"Body", u"Install Wizard", {{100, u"Download"}, {101, u"Quit Setup"}}, 100, 101); },
         101, 101, L"Install Wizard"},
        {"closing a box without a Cancel button gives the cancel id",
         [] { return HVMessageBox::ShowButtons(nullptr, u"Body", u"Restart", {{200, u"Restart"}, {201, u"Later"}}, 200, 201); },
         kCloseWindow, 201, L"Restart"},
    };
    for (const auto& row : rows) {
        std::wstring seen;
        std::thread user([&] {
            const HWND dialog = WaitForOwnDialog();
            seen = WindowText(dialog);
            if (row.press == kCloseWindow)
                ::PostMessageW(dialog, WM_CLOSE, 0, 0);
            else
                PressButton(dialog, row.press);
        });
        EXPECT_EQ(row.show(), row.expected) << row.name;
        user.join();
        EXPECT_EQ(seen, row.title) << row.name;
    }
}
}   // namespace

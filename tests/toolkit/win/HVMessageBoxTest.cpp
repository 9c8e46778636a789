#include "toolkit/win/HVMessageBox.h"

#include <gtest/gtest.h>

#include <atomic>
#include <string>
#include <thread>

namespace
{
struct Found
{
    HWND dialog = nullptr;
    std::wstring title;
};

BOOL CALLBACK FindDialog(HWND hwnd, LPARAM param)
{
    auto* found = reinterpret_cast<Found*>(param);
    DWORD pid = 0;
    ::GetWindowThreadProcessId(hwnd, &pid);
    wchar_t cls[64] = {};
    ::GetClassNameW(hwnd, cls, 64);
    if (pid == ::GetCurrentProcessId() && std::wstring(cls) == L"#32770" && ::IsWindowVisible(hwnd)) {
        wchar_t title[256] = {};
        ::GetWindowTextW(hwnd, title, 256);
        found->dialog = hwnd;
        found->title = title;
        return FALSE;
    }
    return TRUE;
}

// Answers the first dialog of this process the way a user would: by pressing the button
// with the given id, or with id 0 by closing the window. Returns the title it saw.
std::wstring AnswerFromAnotherThread(int buttonId)
{
    constexpr int kCloseWindow = 0;
    for (int i = 0; i < 500; ++i) {
        Found found;
        ::EnumWindows(FindDialog, reinterpret_cast<LPARAM>(&found));
        if (found.dialog && buttonId == kCloseWindow) {
            ::PostMessageW(found.dialog, WM_CLOSE, 0, 0);
            return found.title;
        }
        if (found.dialog) {
            HWND button = ::GetDlgItem(found.dialog, buttonId);
            if (button) {
                ::PostMessageW(found.dialog, WM_COMMAND, MAKEWPARAM(buttonId, BN_CLICKED), reinterpret_cast<LPARAM>(button));
                return found.title;
            }
        }
        ::Sleep(20);
    }
    return L"(no dialog)";
}

TEST(HVMessageBoxTest, StandardBoxIsAnsweredByButtonId)
{
    std::wstring seen;
    std::thread answer([&] { seen = AnswerFromAnotherThread(IDNO); });
    const int result = HVMessageBox::Show(nullptr, u"Question text", u"Confirm Cancellation", MB_YESNO | MB_ICONQUESTION);
    answer.join();
    EXPECT_EQ(result, IDNO);
    EXPECT_EQ(seen, L"Confirm Cancellation");
}

TEST(HVMessageBoxTest, OwnButtonTextsComeBackAsTheirIds)
{
    constexpr int kDownload = 100;
    constexpr int kQuit = 101;
    std::wstring seen;
    std::thread answer([&] { seen = AnswerFromAnotherThread(kQuit); });
    const int result = HVMessageBox::ShowButtons(nullptr, u"Body", u"Install Wizard",
                                                 {{kDownload, u"Download"}, {kQuit, u"Quit Setup"}}, kDownload, kQuit);
    answer.join();
    EXPECT_EQ(result, kQuit);
    EXPECT_EQ(seen, L"Install Wizard");
}

TEST(HVMessageBoxTest, ClosingABoxWithoutCancelButtonGivesTheCancelId)
{
    std::thread answer([&] { AnswerFromAnotherThread(0); });
    const int result = HVMessageBox::ShowButtons(nullptr, u"Body", u"Restart", {{200, u"Restart"}, {201, u"Later"}}, 200, 201);
    answer.join();
    EXPECT_EQ(result, 201);
}
}   // namespace

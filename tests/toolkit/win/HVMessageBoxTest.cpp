#include "toolkit/win/HVMessageBox.h"

#include "RecordingLogger.h"

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
TEST(HVMessageBoxTest, AnUnshownBoxTakesItsDefaultButtonButNeverRetry)
{
    const struct
    {
        UINT type;
        int answer;
    } cases[] = {
        {MB_OK | MB_ICONERROR, IDOK},
        {MB_OKCANCEL | MB_DEFBUTTON2, IDCANCEL},
        {MB_YESNO | MB_ICONQUESTION, IDYES},
        {MB_YESNO | MB_ICONQUESTION | MB_DEFBUTTON2, IDNO},
        {MB_YESNO | MB_DEFBUTTON3, IDYES},  // no third button: the first is the default
        {MB_YESNOCANCEL | MB_DEFBUTTON3, IDCANCEL},
        {MB_RETRYCANCEL | MB_ICONWARNING, IDCANCEL},
        {MB_ABORTRETRYIGNORE | MB_DEFBUTTON2, IDABORT},
        {MB_ABORTRETRYIGNORE | MB_DEFBUTTON3, IDIGNORE},
        {MB_CANCELTRYCONTINUE | MB_DEFBUTTON2, IDCANCEL},
        {MB_CANCELTRYCONTINUE | MB_DEFBUTTON3, IDCONTINUE},
    };
    for (const auto& c : cases)
        EXPECT_EQ(HVMessageBox::UnattendedAnswer(c.type), c.answer) << std::hex << c.type;
}

TEST(HVMessageBoxTest, SuppressedBoxesShowNothingAndLogWhatTheyWouldHaveSaid)
{
    RecordingLogger log;
    // Nothing answers a box here: one that came up would hang the test.
    HVMessageBox::SetSuppressed(true);
    const int retry = HVMessageBox::Show(nullptr, u"Please ensure that the file 'C:\\Sonora.exe' is not in use.",
                                         u"Failure Copying System File", MB_RETRYCANCEL | MB_ICONWARNING);
    const int question = HVMessageBox::Show(nullptr, u"First line.\r\n\r\n  Second line. \r\nThird", u"",
                                            MB_YESNO | MB_DEFBUTTON2);
    const int own = HVMessageBox::ShowButtons(nullptr, u"Body", u"Install Wizard",
                                              {{100, u"Download"}, {101, u"Quit Setup"}}, 100, 101);
    const int ownRetry = HVMessageBox::ShowButtons(nullptr, u"Body", u"Again", {{IDRETRY, u"Retry"}, {102, u"Stop"}},
                                                   IDRETRY, 102);
    const bool dialogSkipped = HVMessageBox::SkipUnattended(u"Install Wizard", u"Please select a language:", u"OK");
    HVMessageBox::SetSuppressed(false);
    const bool dialogShownAgain = !HVMessageBox::SkipUnattended(u"Install Wizard", u"Please select a language:", u"OK");

    EXPECT_EQ(retry, IDCANCEL);
    EXPECT_EQ(question, IDNO);
    EXPECT_EQ(own, 100);
    EXPECT_EQ(ownRetry, 102);
    EXPECT_TRUE(dialogSkipped);
    EXPECT_TRUE(dialogShownAgain);
    std::vector<std::string> errors;
    for (const RecordingLogger::Line& line : log.Lines())
        if (line.level == HVLog::kError)
            errors.push_back(line.message);
    const std::vector<std::string> expected = {
        "Box title: Failure Copying System File",
        "Box text: Please ensure that the file 'C:\\Sonora.exe' is not in use.",
        "Box title: ",
        "Box text: First line. Second line. Third",
        "Box title: Install Wizard",
        "Box text: Body",
        "Box title: Again",
        "Box text: Body",
        "Box title: Install Wizard",
        "Box text: Please select a language:",
    };
    EXPECT_EQ(errors, expected);
    EXPECT_TRUE(log.Has(HVLog::kInfo, "answered \"Download\""));
    EXPECT_TRUE(log.Has(HVLog::kInfo, "answered \"Stop\""));
}
}   // namespace

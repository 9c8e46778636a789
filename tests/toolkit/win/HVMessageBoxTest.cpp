#include "toolkit/win/HVMessageBox.h"

#include "OwnDialog.h"
#include "RecordingLogger.h"

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

TEST(HVMessageBoxTest, AnUnshownBoxTakesItsDefaultButtonButNeverRetry)
{
    const struct { UINT type; int answer; } cases[] = {
        {MB_OK | MB_ICONERROR, IDOK}, {MB_OKCANCEL | MB_DEFBUTTON2, IDCANCEL}, {MB_YESNO | MB_ICONQUESTION, IDYES},
        {MB_YESNO | MB_ICONQUESTION | MB_DEFBUTTON2, IDNO},
        {MB_YESNO | MB_DEFBUTTON3, IDYES},  // no third button: the first is the default
        {MB_YESNOCANCEL | MB_DEFBUTTON3, IDCANCEL}, {MB_RETRYCANCEL | MB_ICONWARNING, IDCANCEL},
        {MB_ABORTRETRYIGNORE | MB_DEFBUTTON2, IDABORT}, {MB_ABORTRETRYIGNORE | MB_DEFBUTTON3, IDIGNORE},
        {MB_CANCELTRYCONTINUE | MB_DEFBUTTON2, IDCANCEL}, {MB_CANCELTRYCONTINUE | MB_DEFBUTTON3, IDCONTINUE},
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
        "Box title: Failure Copying System File", "Box text: Please ensure that the file 'C:\\Sonora.exe' is not in use.",
        "Box title: ", "Box text: First line. Second line. Third",
        "Box title: Install Wizard", "Box text: Body",
        "Box title: Again", "Box text: Body",
        "Box title: Install Wizard", "Box text: Please select a language:",
    };
    EXPECT_EQ(errors, expected);
    EXPECT_TRUE(log.Has(HVLog::kInfo, "answered \"Download\""));
    EXPECT_TRUE(log.Has(HVLog::kInfo, "answered \"Stop\""));
}
}   // namespace

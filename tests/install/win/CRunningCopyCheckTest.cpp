#include "install/win/CRunningCopyCheck.h"

#include <gtest/gtest.h>

#include <chrono>
#include <string>
#include <vector>

namespace
{
struct Box
{
    std::string text;
    std::string title;
    UINT type;
};

// A product that stops running after a number of "is running" questions (or never), and a
// user who answers the boxes from a script.
struct Scene
{
    bool running = true;
    int stopsAfterQuestions = -1;  // -1: never stops by itself
    bool closeStopsIt = false;
    bool userClosesItAtManualBox = false;
    int answer = IDYES;

    int questions = 0;
    int closeCalls = 0;
    std::vector<Box> boxes;

    CRunningCopyCheck::Product Product(const char16_t* name, HWND window = nullptr)
    {
        CRunningCopyCheck::Product product;
        product.displayName = name;
        product.isRunning = [this] {
            ++questions;
            if (stopsAfterQuestions >= 0 && questions > stopsAfterQuestions)
                running = false;
            return running;
        };
        product.mainWindow = [window] { return window; };
        product.closeRunningCopy = [this] {
            ++closeCalls;
            if (closeStopsIt)
                running = false;
        };
        return product;
    }
    CRunningCopyCheck::ShowBox ShowBox()
    {
        return [this](const HVString& text, const HVString& title, UINT type) {
            boxes.push_back({text.ToUtf8(), title.ToUtf8(), type});
            if (title.StartsWith(u"Please Close") && userClosesItAtManualBox)
                running = false;
            return (type & MB_YESNO) ? answer : IDOK;
        };
    }
};

const std::string kQuestion =
    "Install Wizard has detected a running copy of Sonora.\r\n\r\n"
    "Do you want Install Wizard to close Sonora and continue setup?";
const std::string kManual =
    "Install Wizard could not close the running copy of Sonora.\r\n"
    "Please manually close Sonora and then press 'OK'.\r\n\r\n"
    "If you can not close Sonora restart your computer and run Install Wizard again.";
const std::string kStill =
    "Sonora is still running.  Install Wizard can not continue.\r\n\r\n"
    "Please restart your computer and run Install Wizard again.";
}

TEST(CRunningCopyCheck, QuestionsClosingAndTheManualBox)
{
    struct Case
    {
        const char* name;
        bool running;
        bool silent;
        int answer;
        bool closeStopsIt;
        bool userClosesIt;
        bool passes;
        bool declined;
        int closeCalls;
        std::vector<std::string> titles;  // of the boxes shown, in order
    };
    const Case cases[] = {
        {"not running", false, false, IDYES, true, false, true, false, 0, {}},
        {"No ends the check", true, false, IDNO, true, false, false, true, 0, {""}},
        {"closing the box counts as No", true, false, IDCANCEL, true, false, false, true, 0, {""}},
        {"Yes closes it", true, false, IDYES, true, false, true, false, 1, {""}},
        {"silent closes without asking", true, true, IDNO, true, false, true, false, 1, {}},
        {"won't close: manual box, then the error", true, false, IDYES, false, false, false, false, 1,
         {"", "Please Close Sonora", "Install Wizard Error"}},
        {"silent and won't close: the manual box is still shown", true, true, IDYES, false, false, false, false, 1,
         {"Please Close Sonora", "Install Wizard Error"}},
        {"closed by hand at the manual box", true, false, IDYES, false, true, true, false, 1,
         {"", "Please Close Sonora"}},
    };
    for (const Case& c : cases)
    {
        Scene scene;
        scene.running = c.running;
        scene.answer = c.answer;
        scene.closeStopsIt = c.closeStopsIt;
        scene.userClosesItAtManualBox = c.userClosesIt;
        CRunningCopyCheck check(scene.Product(u"Sonora"), c.silent, scene.ShowBox());
        EXPECT_EQ(check.Run(), c.passes) << c.name;
        EXPECT_EQ(check.Declined(), c.declined) << c.name;
        EXPECT_EQ(scene.closeCalls, c.closeCalls) << c.name;
        std::vector<std::string> titles;
        for (const Box& box : scene.boxes)
            titles.push_back(box.title);
        EXPECT_EQ(titles, c.titles) << c.name;
        for (const Box& box : scene.boxes)
        {
            if (box.title.empty())
            {
                EXPECT_EQ(box.text, kQuestion) << c.name;
                EXPECT_EQ(box.type & MB_TYPEMASK, static_cast<UINT>(MB_YESNO)) << c.name;
            }
            else if (box.title == "Please Close Sonora")
            {
                EXPECT_EQ(box.text, kManual) << c.name;
                EXPECT_EQ(box.type & MB_TYPEMASK, static_cast<UINT>(MB_OK)) << c.name;
            }
            else
            {
                EXPECT_EQ(box.text, kStill) << c.name;
            }
        }
    }
}

TEST(CRunningCopyCheck, TheServerEditionIsAskedThroughItsWindowAndPolled)
{
    // A window of this thread stands for the server's main window: the posted close message
    // waits in this thread's queue where the test can read it.
    const HWND window = ::CreateWindowW(L"STATIC", L"", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, nullptr, nullptr);
    ASSERT_NE(window, nullptr);
    Scene scene;
    scene.stopsAfterQuestions = 50;  // goes after some polling
    CRunningCopyCheck check(scene.Product(u"Sonora Dynamo Server", window), false, scene.ShowBox());
    EXPECT_TRUE(check.Run());
    EXPECT_EQ(scene.closeCalls, 0);  // never the product's own close operation
    EXPECT_GT(scene.questions, 2);   // polled, not asked once
    ASSERT_EQ(scene.boxes.size(), 1u);
    MSG msg;
    ASSERT_TRUE(::PeekMessageW(&msg, window, WM_CLOSE, WM_CLOSE, PM_REMOVE));
    EXPECT_EQ(msg.wParam, 1u);
    ::DestroyWindow(window);
}

TEST(CRunningCopyCheck, AServerThatWontStopIsPolledForFiveSecondsThenAskedForByHand)
{
    Scene scene;
    const auto start = std::chrono::steady_clock::now();
    std::chrono::steady_clock::duration untilAsked{};
    CRunningCopyCheck check(scene.Product(u"Dynamo"), true,
                            [&, show = scene.ShowBox()](const HVString& text, const HVString& title, UINT type) {
                                if (scene.boxes.empty())
                                    untilAsked = std::chrono::steady_clock::now() - start;
                                return show(text, title, type);
                            });
    EXPECT_FALSE(check.Run());
    // The poll's limit: not before five seconds, and not long after.
    EXPECT_GE(untilAsked, std::chrono::milliseconds(5000));
    EXPECT_LT(untilAsked, std::chrono::milliseconds(15000));
    EXPECT_EQ(scene.closeCalls, 0);
    ASSERT_EQ(scene.boxes.size(), 2u);
    EXPECT_EQ(scene.boxes[0].title, "Please Close Dynamo");
    EXPECT_EQ(scene.boxes[1].title, "Install Wizard Error");
}

TEST(CRunningCopyCheck, OnlyTheWordDynamoPicksThePostedMessage)
{
    for (const char16_t* name : {u"Sonora", u"dynamo", u"Dyna mo", u"Sonora Server"})
    {
        Scene scene;
        scene.closeStopsIt = true;
        CRunningCopyCheck check(scene.Product(name), true, scene.ShowBox());
        EXPECT_TRUE(check.Run());
        EXPECT_EQ(scene.closeCalls, 1) << HVString(name).ToUtf8();
    }
}

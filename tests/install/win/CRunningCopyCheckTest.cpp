#include "install/win/CRunningCopyCheck.h"

#include "RunningCopyScene.h"

#include <gtest/gtest.h>

#include <chrono>
#include <string>
#include <vector>

namespace
{
using Scene = RunningCopyScene;
}

// The boxes' texts and buttons, and No, Yes, a silent run and a copy that won't close, are
// read from the real program, end to end.
TEST(CRunningCopyCheck, QuestionsClosingAndTheManualBox)
{
    // How the product and the user behave; what the check said, the close calls made, the boxes' titles.
    struct Case { const char* name; const char16_t* product; bool silent; Scene scene; bool passes, declined; int closeCalls;
                  std::vector<std::string> titles; };
    const Case cases[] = {
        {"not running", u"Sonora", false, {.running = false, .closeStopsIt = true}, true, false, 0, {}},
        {"closing the box counts as No", u"Sonora", false, {.closeStopsIt = true, .answer = IDCANCEL}, false, true, 0,
         {""}},
        {"closed by hand at the manual box", u"Sonora", false, {.userClosesItAtManualBox = true}, true, false, 1,
         {"", "Please Close Sonora"}},
        // Only the word "Dynamo" makes a product the server edition, asked through its window instead.
        {"silent: closed unasked", u"Sonora", true, {.closeStopsIt = true}, true, false, 1, {}},
        {"dynamo in small letters", u"dynamo", true, {.closeStopsIt = true}, true, false, 1, {}},
        {"the word broken", u"Dyna mo", true, {.closeStopsIt = true}, true, false, 1, {}},
        {"a server without the word", u"Sonora Server", true, {.closeStopsIt = true}, true, false, 1, {}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        Scene scene = c.scene;
        CRunningCopyCheck check(scene.Product(c.product), c.silent, scene.ShowBox());
        EXPECT_EQ(check.Run(), c.passes);
        EXPECT_EQ(check.Declined(), c.declined);
        EXPECT_EQ(scene.closeCalls, c.closeCalls);
        EXPECT_EQ(scene.titles, c.titles);
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
    ASSERT_EQ(scene.titles.size(), 1u);
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
                                if (scene.titles.empty())
                                    untilAsked = std::chrono::steady_clock::now() - start;
                                return show(text, title, type);
                            });
    EXPECT_FALSE(check.Run());
    // The poll's limit: not before five seconds, and not long after.
    EXPECT_GE(untilAsked, std::chrono::milliseconds(5000));
    EXPECT_LT(untilAsked, std::chrono::milliseconds(15000));
    EXPECT_EQ(scene.closeCalls, 0);
    EXPECT_EQ(scene.titles, (std::vector<std::string>{"Please Close Dynamo", "Install Wizard Error"}));
}


#include "foundation/win/HVApp.h"
#include "foundation/win/HVFileLogger.h"
#include "foundation/win/HVTrackedModalLoop.h"

#include "foundation/HVLog.h"

#include "DispatchRecorder.h"
#include "FolderTree.h"
#include "TestPaths.h"

#include <gtest/gtest.h>

#include <string>
#include <thread>
#include <vector>

namespace
{
using Seen = DispatchRecorder::Seen;
}

TEST(HVApp, TheMessageBeingDispatchedIsKnownDuringItsDispatchOnlyAlsoInABoxsOwnLoop)
{
    // A nested dispatch (as a modal box runs one) must give the outer message back.
    HVApp app;
    DispatchRecorder recorder(app);
    ASSERT_TRUE(recorder.Hwnd());
    ::PostMessageW(recorder.Hwnd(), WM_APP, 11, 12);
    ::PostMessageW(recorder.Hwnd(), WM_APP + 1, 21, 22);
    EXPECT_TRUE(app.PumpWaitingMessages());
    EXPECT_EQ(recorder.seen, (std::vector<Seen>{{WM_APP, 11, 12}, {WM_APP + 1, 21, 22}, {WM_APP + 2, 5, 6}, {WM_APP + 1, 21, 22}}));
    EXPECT_EQ(app.GetCurrentMessage(), 0u);

    // The system's own loop of a message box, tracked: what it dispatches is current meanwhile,
    // and the message that opened the box is current again afterwards.
    recorder.seen.clear();
    app.SetCurrent(MSG{nullptr, WM_APP + 9, 1, 2, 0, {}});
    std::thread user([&] {
        HWND box = nullptr;
        for (int i = 0; i < 1000 && !box; ++i, ::Sleep(10))
            box = ::FindWindowW(L"#32770", L"HVTrackedModalLoop");
        ::PostMessageW(recorder.Hwnd(), WM_APP + 3, 13, 14);
        ::PostMessageW(box, WM_COMMAND, IDOK, 0);
    });
    {
        const HVTrackedModalLoop tracked;
        ::MessageBoxW(nullptr, L"A box", L"HVTrackedModalLoop", MB_OK);
    }
    user.join();
    EXPECT_EQ(recorder.seen, (std::vector<Seen>{{WM_APP + 3, 13, 14}}));
    EXPECT_EQ(app.GetCurrentMessage(), WM_APP + 9u);
}

TEST(HVApp, PumpingStopsAtQuitAndLeavesItForTheOuterLoop)
{
    HVApp app;
    ::PostQuitMessage(7);
    EXPECT_FALSE(app.PumpWaitingMessages());
    MSG msg;
    ASSERT_TRUE(::PeekMessageW(&msg, nullptr, WM_QUIT, WM_QUIT, PM_REMOVE));
    EXPECT_EQ(msg.wParam, 7u);
}

TEST(HVApp, OneAppAtATimeAndItsLoggerIsTheProcesses)
{
    EXPECT_EQ(HVApp::Get(), nullptr);
    {
        HVApp app;
        EXPECT_EQ(HVApp::Get(), &app);
        HVFileLogger logger;
        app.SetLogger(&logger);
        EXPECT_EQ(HVLog::GetLogger(), &logger);
        app.SetLogger(nullptr);
    }
    EXPECT_EQ(HVApp::Get(), nullptr);
    EXPECT_EQ(HVLog::GetLogger(), nullptr);
}

TEST(HVFileLogger, WritesWholeLinesFromManyThreads)
{
    const std::wstring folder = e2e::ScratchFolder(L"HVFileLogger");
    ASSERT_FALSE(folder.empty());
    const HVString path = HVString(folder.c_str()) + u"HVFileLoggerTest.log";
    {
        HVFileLogger logger;
        ASSERT_TRUE(logger.Open(path));
        EXPECT_EQ(logger.GetPath(), path);
        std::vector<std::thread> threads;
        for (int t = 0; t < 4; ++t)
            threads.emplace_back([&logger, t] {
                for (int i = 0; i < 200; ++i)
                    logger.Write(3, "Test::Thread", HVString::Format(u"thread %d line %d \x00e9", t, i));
            });
        for (auto& thread : threads)
            thread.join();
        logger.Write(1, "Test::Last", u"done");
    }
    const std::string text = e2e::ReadFileText(path.w());
    int lines = 0;
    for (size_t start = 0, end = 0; start < text.size(); start = end + 2, ++lines) {
        end = text.find("\r\n", start);
        ASSERT_NE(end, std::string::npos);
        const std::string line = text.substr(start, end - start);
        // "2026-11-22 01:45:09.123 [  123] L3 Test::Thread: thread 0 line 0 é"
        ASSERT_GE(line.size(), 24u) << line;
        EXPECT_EQ(std::string({line[4], line[10], line[19]}), "- .") << line;
        EXPECT_TRUE(line.find("] L3 Test::Thread: thread ") != std::string::npos ||
                    line.find("] L1 Test::Last: done") != std::string::npos)
            << line;
    }
    EXPECT_EQ(lines, 801);
    EXPECT_NE(text.find("line 199 \xc3\xa9"), std::string::npos);
}

TEST(HVFileLogger, AMissingFolderIsAnErrorNotACrash)
{
    HVFileLogger logger;
    EXPECT_FALSE(logger.Open(u"C:\\No Such Folder\\At All\\x.log"));
    EXPECT_FALSE(logger.IsOpen());
    logger.Write(1, "Test", u"goes nowhere");
}

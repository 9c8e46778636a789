#include "foundation/win/HVThread.h"

#include "RecordingLogger.h"

#include <gtest/gtest.h>

#include <atomic>

namespace
{
// A worker that either leaves when asked, or, stubborn, never looks at the request, or, brief,
// ends by itself at once.
class Worker : public HVThread
{
public:
    explicit Worker(bool stubborn, bool brief = false) : stubborn_(stubborn), brief_(brief) {}
    ~Worker() override { Stop(200); }
    std::atomic<int> stoppedCalls{0};
    std::atomic<int> runs{0};
    std::atomic<bool> started{false};

protected:
    void Run() override
    {
        ++runs;
        started = true;
        if (brief_)
            return;
        if (stubborn_) {
            for (;;)
                ::Sleep(1000);
        }
        ::WaitForSingleObject(StopEvent(), INFINITE);
    }
    void OnStopped() override { ++stoppedCalls; }

private:
    bool stubborn_;
    bool brief_;
};
}   // namespace

TEST(HVThreadTest, StopEndsAThreadThatListensAndOneThatNeverStarted)
{
    Worker idle(false);
    EXPECT_TRUE(idle.Stop(-1));  // never started: nothing to wait for

    RecordingLogger log;
    Worker worker(false);
    worker.SetNotifyWhenStopped(true);
    ASSERT_TRUE(worker.StartThread(THREAD_PRIORITY_BELOW_NORMAL));
    EXPECT_TRUE(worker.IsRunning());
    while (!worker.started)
        ::Sleep(1);
    EXPECT_TRUE(worker.Stop(-1));
    EXPECT_FALSE(worker.IsRunning());
    EXPECT_EQ(worker.stoppedCalls, 1);
    EXPECT_FALSE(log.Has(HVLog::kError, "Hard killing"));
    // It can run again after a stop.
    ASSERT_TRUE(worker.StartThread());
    EXPECT_TRUE(worker.Stop(-1));
}

TEST(HVThreadTest, AWorkerThatEndedByItselfIsNoLongerRunningAndStartsAgain)
{
    Worker brief(false, true);
    for (int run = 1; run <= 2; ++run) {
        ASSERT_TRUE(brief.StartThread());
        for (int i = 0; i < 1000 && brief.IsRunning(); ++i)
            ::Sleep(5);
        EXPECT_FALSE(brief.IsRunning());
        EXPECT_EQ(brief.runs, run);
    }
    EXPECT_TRUE(brief.Stop(-1));
}

TEST(HVThreadTest, AThreadThatIgnoresTheStopIsEndedAfterTheTimeOutWithItsLogLine)
{
    RecordingLogger log;
    Worker stubborn(true);
    stubborn.SetPumpMessages(true);
    ASSERT_TRUE(stubborn.StartThread());
    while (!stubborn.started)
        ::Sleep(1);
    EXPECT_TRUE(stubborn.Stop(300));
    EXPECT_FALSE(stubborn.IsRunning());
    EXPECT_TRUE(log.Has(HVLog::kError, "it exceeded timeout=300 MS")) << "no hard-kill line";
    EXPECT_TRUE(log.Has(HVLog::kError, "Hard killing thread (handle="));
}

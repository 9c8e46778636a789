#include "foundation/win/HVThread.h"

#include "RecordingLogger.h"
#include "TestWorkerThread.h"

#include <gtest/gtest.h>

namespace
{
using Worker = TestWorkerThread;
}

TEST(HVThreadTest, StopEndsAThreadThatListensAndOneThatNeverStarted)
{
    Worker idle(false);
    EXPECT_TRUE(idle.Stop(-1));  // never started: nothing to wait for

    RecordingLogger log;
    Worker worker(false);
    worker.SetNotifyWhenStopped(true);
    ASSERT_TRUE(worker.StartThread(THREAD_PRIORITY_BELOW_NORMAL));
    EXPECT_TRUE(worker.IsRunning());
    worker.WaitUntilStarted();
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
    stubborn.WaitUntilStarted();
    EXPECT_TRUE(stubborn.Stop(300));
    EXPECT_FALSE(stubborn.IsRunning());
    EXPECT_TRUE(log.Has(HVLog::kError, "it exceeded timeout=300 MS")) << "no hard-kill line";
    EXPECT_TRUE(log.Has(HVLog::kError, "Hard killing thread (handle="));
}

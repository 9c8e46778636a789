#pragma once

// A worker thread of three kinds: one that leaves when asked to stop, a stubborn one that never
// looks at the request, and a brief one that ends by itself at once. It counts its runs and the
// stop notifications it gets, and says when it has started. Header-only; for the Windows test
// programs.

#include "foundation/win/HVThread.h"

#include <atomic>

class TestWorkerThread : public HVThread
{
public:
    explicit TestWorkerThread(bool stubborn, bool brief = false) : stubborn_(stubborn), brief_(brief) {}
    ~TestWorkerThread() override { Stop(200); }

    std::atomic<int> stoppedCalls{0};
    std::atomic<int> runs{0};
    std::atomic<bool> started{false};

    void WaitUntilStarted() const
    {
        while (!started)
            ::Sleep(1);
    }

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

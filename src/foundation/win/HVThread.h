#pragma once

#include "foundation/win/HVUniqueResource.h"

#include <windows.h>

#include <atomic>
#include <cstdint>

// A worker thread of the library. A subclass gives the body (Run), which watches StopEvent()
// or IsStopRequested() and returns when asked. Stop asks, then waits; a thread that doesn't end
// within the time-out is ended from outside (when AllowHardStop says so) and the log says so,
// because a stuck worker must never keep the program from closing.
class HVThread
{
public:
    HVThread();
    virtual ~HVThread();
    HVThread(const HVThread&) = delete;
    HVThread& operator=(const HVThread&) = delete;

    // Creates the thread suspended, applies the priority when it isn't 0, and resumes it.
    bool StartThread(int priority = 0);
    // timeoutMs -1: the thread's default stop time-out (itself -1: no limit). True when the
    // thread has ended (by itself or by force).
    bool Stop(int32_t timeoutMs = -1);

    bool IsRunning() const { return running_; }
    bool IsStopRequested() const { return stopRequested_; }

    void SetStopTimeout(int32_t ms) { stopTimeoutMs_ = ms; }
    void SetPollInterval(int32_t ms) { pollMs_ = ms > 0 ? ms : 1; }
    // For threads stopped from the user-interface thread: its windows keep answering meanwhile.
    void SetPumpMessages(bool pump) { pumpMessages_ = pump; }
    void SetNotifyWhenStopped(bool notify) { notifyWhenStopped_ = notify; }

protected:
    virtual void Run() = 0;
    // Sets the stop flag and wakes the thread.
    virtual void RequestStop();
    virtual bool AllowHardStop() const { return true; }
    virtual void OnStopped() {}
    HANDLE StopEvent() const { return stopEvent_.Get(); }

private:
    static unsigned __stdcall Entry(void* self);
    // Waits for the thread's end; false when the time-out ran out first.
    bool WaitForEnd(int32_t timeoutMs);

    HVHandle thread_;
    HVHandle stopEvent_;
    std::atomic<bool> stopRequested_{false};
    std::atomic<bool> running_{false};
    int32_t stopTimeoutMs_ = 5000;
    int32_t pollMs_ = 10;
    bool pumpMessages_ = false;
    bool notifyWhenStopped_ = false;
};

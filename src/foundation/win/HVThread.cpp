#include "foundation/win/HVThread.h"

#include "foundation/HVLog.h"
#include "foundation/win/HVApp.h"

#include <process.h>

#include <cerrno>

HVThread::HVThread() : stopEvent_(::CreateEventW(nullptr, TRUE, FALSE, nullptr))
{
}

HVThread::~HVThread()
{
    // A subclass's Run can't be called any more by now; its own destructor must have stopped it.
    if (running_)
        Stop(-1);
}

unsigned __stdcall HVThread::Entry(void* self)
{
    HVThread* thread = static_cast<HVThread*>(self);
    thread->Run();
    // A body that ends by itself leaves a thread that can be started again.
    thread->running_ = false;
    return 0;
}

bool HVThread::StartThread(int priority)
{
    if (running_)
        return true;
    stopRequested_ = false;
    ::ResetEvent(stopEvent_.Get());
    // Through the runtime, so that its per-thread state exists for the body.
    const uintptr_t handle = _beginthreadex(nullptr, 0, &HVThread::Entry, this, CREATE_SUSPENDED, nullptr);
    if (handle == 0) {
        HVLog::Write(HVLog::kError, "HVThread::StartThread", u"Error starting thread, errno=%d", errno);
        return false;
    }
    thread_.Reset(reinterpret_cast<HANDLE>(handle));
    if (priority != 0)
        ::SetThreadPriority(thread_.Get(), priority);
    running_ = true;
    ::ResumeThread(thread_.Get());
    return true;
}

void HVThread::RequestStop()
{
    stopRequested_ = true;
    ::SetEvent(stopEvent_.Get());
}

bool HVThread::WaitForEnd(int32_t timeoutMs)
{
    const ULONGLONG start = ::GetTickCount64();
    while (thread_) {
        if (::WaitForSingleObject(thread_.Get(), 0) == WAIT_OBJECT_0)
            return true;
        if (pumpMessages_)
            HVApp::PumpWaitingMessages();
        ::Sleep(static_cast<DWORD>(pollMs_));
        const ULONGLONG elapsed = ::GetTickCount64() - start;
        // A handle whose thread is gone in a way the wait doesn't see (ended by someone else).
        if (elapsed > 1000 && ::GetThreadPriority(thread_.Get()) == THREAD_PRIORITY_ERROR_RETURN) {
            HVLog::Write(HVLog::kError, "HVThread::Stop", u"GetThreadPriority returned error, errno=%d",
                         static_cast<int32_t>(::GetLastError()));
            return true;
        }
        if (timeoutMs >= 0 && elapsed > static_cast<ULONGLONG>(timeoutMs))
            return false;
    }
    return true;
}

bool HVThread::Stop(int32_t timeoutMs)
{
    if (!running_)
        return true;
    if (timeoutMs == -1)
        timeoutMs = stopTimeoutMs_;
    RequestStop();
    bool ended = WaitForEnd(timeoutMs);
    if (!ended && AllowHardStop()) {
        HVLog::Write(HVLog::kError, "HVThread::Stop", u"Hard killing thread (handle=%x), it exceeded timeout=%d MS",
                     static_cast<uint32_t>(reinterpret_cast<uintptr_t>(thread_.Get())), timeoutMs);
        ::Sleep(100);
        ::TerminateThread(thread_.Get(), 1);
        ended = true;
    }
    if (!ended)
        return false;
    thread_.Reset();
    if (notifyWhenStopped_)
        OnStopped();
    ::ResetEvent(stopEvent_.Get());
    running_ = false;
    return true;
}

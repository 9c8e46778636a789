#pragma once

#include "WindowInspector.h"

#include <atomic>
#include <string>
#include <thread>

namespace e2e
{
// For tests that call code showing a message box on their own thread: waits (up to ten
// seconds) on another thread for a dialog of this process, keeps what it showed and presses
// the button captioned `press` ("&" ignored).
class BoxAnswerer
{
public:
    explicit BoxAnswerer(std::wstring press);
    ~BoxAnswerer() { Join(); }
    BoxAnswerer(const BoxAnswerer&) = delete;
    BoxAnswerer& operator=(const BoxAnswerer&) = delete;
    // The dialog it answered; empty (no window) when none came.
    const WindowInfo& Join();

private:
    std::atomic<bool> done_{false};
    WindowInfo seen_;
    std::thread thread_;
};
}

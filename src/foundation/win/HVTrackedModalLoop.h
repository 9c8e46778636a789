#pragma once

#include <windows.h>

// While alive, the system's own modal loops on this thread (a message box, a dialog box, a task
// dialog) note each message they dispatch in the application object, as the program's own
// loops do (HVApp::Dispatch): a crash inside a box then reports the message being handled in
// it, not the one that opened the box. Made on the stack around the call that runs the loop;
// the message current before it is current again afterwards.
class HVTrackedModalLoop
{
public:
    HVTrackedModalLoop();
    ~HVTrackedModalLoop();
    HVTrackedModalLoop(const HVTrackedModalLoop&) = delete;
    HVTrackedModalLoop& operator=(const HVTrackedModalLoop&) = delete;

private:
    // The message-filter hook: the system's dialog loop hands it every message before
    // dispatching it.
    static LRESULT CALLBACK Filter(int code, WPARAM wParam, LPARAM lParam);

    HHOOK hook_ = nullptr;
    MSG outer_ = {};
};

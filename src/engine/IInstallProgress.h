#pragma once

#include "foundation/HVString.h"

#include <cstdint>

// Where a long engine routine reports how far it has come. The copy-and-install page
// implements it on its status line and progress bar; every call also drains the thread's
// message queue, so the window stays painted and answers while the install runs on the
// user-interface thread. Tests implement it to record what was reported.
class IInstallProgress
{
public:
    // Translated by the implementation.
    virtual void SetStatusText(const HVString& text) = 0;
    // Clamps the position into the range.
    virtual void SetProgressRange(int32_t minimum, int32_t maximum) = 0;
    virtual void SetProgressPosition(int32_t position) = 0;
    // Removes and dispatches every message waiting in the thread's queue.
    virtual void DrainMessages() = 0;

protected:
    ~IInstallProgress() = default;
};

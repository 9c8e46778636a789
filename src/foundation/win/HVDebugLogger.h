#pragma once

#include "foundation/IHVLogger.h"

// Sends log lines to the debugger (OutputDebugString): the log of a run that was not asked
// to write a file, still there for whoever attaches and for the crash handler's lines.
class HVDebugLogger : public IHVLogger
{
public:
    void Write(int level, const char* source, const HVString& message) override;
};

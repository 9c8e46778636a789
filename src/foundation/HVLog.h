#pragma once

#include "foundation/HVString.h"
#include "foundation/IHVLogger.h"

// Entry point for every log line of the library and the installer. With no logger installed
// nothing is formatted and nothing is written, so logging costs one load on the quiet path.
class HVLog
{
public:
    enum Level { kError = 1, kWarning = 2, kInfo = 3, kDetail = 4 };
    // Longest message a line carries, in characters. A message built from a file (a parser's
    // list of errors in a junk document) can run to megabytes; its start says what went wrong.
    static constexpr int32_t kMaxMessageLength = 4096;

    static void SetLogger(IHVLogger* logger);
    static IHVLogger* GetLogger();

    template <class... Args>
    static void Write(int level, const char* source, const char16_t* format, const Args&... args)
    {
        if (IHVLogger* logger = GetLogger())
            logger->Write(level, source, Capped(HVString::Format(format, args...)));
    }

    // The message cut to kMaxMessageLength, with a note of how much was left out.
    static HVString Capped(HVString message);
};

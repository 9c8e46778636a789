#include "foundation/HVLogTimer.h"

#include "foundation/HVLog.h"

HVLogTimer::HVLogTimer(const char* source, int level)
    : source_(source), level_(level), start_(std::chrono::steady_clock::now())
{
    HVLog::Write(level_, source_, u"Start");
}

HVLogTimer::~HVLogTimer()
{
    const int64_t ms = ElapsedMilliseconds();
    if (result_ != kNoResult)
        HVLog::Write(level_, source_, u"Finish (result: %d) (%d ms)", result_, ms);
    else
        HVLog::Write(level_, source_, u"Finish (%d ms)", ms);
}

int64_t HVLogTimer::ElapsedMilliseconds() const
{
    return std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::steady_clock::now() - start_).count();
}

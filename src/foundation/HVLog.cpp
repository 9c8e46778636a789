#include "foundation/HVLog.h"

#include <atomic>

namespace
{
std::atomic<IHVLogger*> g_logger{nullptr};
}

void HVLog::SetLogger(IHVLogger* logger) { g_logger.store(logger, std::memory_order_release); }

IHVLogger* HVLog::GetLogger() { return g_logger.load(std::memory_order_acquire); }

HVString HVLog::Capped(HVString message)
{
    const int32_t length = message.GetLength();
    if (length <= kMaxMessageLength)
        return message;
    return message.Left(kMaxMessageLength) + HVString::Format(u" [... %d more characters cut]", length - kMaxMessageLength);
}

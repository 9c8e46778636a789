#include "HVLog.h"

#include <atomic>

namespace
{
std::atomic<IHVLogger*> g_logger{nullptr};
}

void HVLog::SetLogger(IHVLogger* logger) { g_logger.store(logger, std::memory_order_release); }

IHVLogger* HVLog::GetLogger() { return g_logger.load(std::memory_order_acquire); }

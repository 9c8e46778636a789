#include "foundation/win/HVDebugLogger.h"

#include "foundation/HVString.h"

#include <windows.h>

void HVDebugLogger::Write(int level, const char* source, const HVString& message)
{
    const HVString line = HVString::Format(u"[%d] L%d %s: %s\n", ::GetCurrentThreadId(), level, source ? source : "",
                                           message);
    ::OutputDebugStringW(line.w());
}

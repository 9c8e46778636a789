#include "integration/win/CRunningProduct.h"

#include "foundation/HVLog.h"
#include "foundation/win/CPostString.h"
#include "foundation/win/HVCommandTarget.h"

#include <windows.h>

bool CRunningProduct::Tell(Command command, const HVString& text)
{
    const HWND frame = ::FindWindowW(L"LWFrame", nullptr);
    if (!frame)
        return false;
    DWORD process = 0;
    ::GetWindowThreadProcessId(frame, &process);
    const HWND target = HVCommandTarget::FindInProcess(process);
    if (!target) {
        HVLog::Write(HVLog::kWarning, "CRunningProduct::Tell", u"The running product has no command target");
        return false;
    }
    return CPostString::Post(target, command, text);
}

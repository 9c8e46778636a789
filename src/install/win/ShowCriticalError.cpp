#include "install/win/ShowCriticalError.h"

#include "foundation/HVLog.h"
#include "foundation/HVTranslator.h"
#include "toolkit/win/HVMessageBox.h"

void ShowCriticalError(HWND owner)
{
    HVLog::Write(HVLog::kError, "ShowCriticalError", u"Install Wizard encountered a critical error");
    const HVString text =
        HVTranslator::Translate(u"Install Wizard encountered a critical error and must close.\r\n\r\n") +
        HVTranslator::Translate(u"It is recommended that you reboot your computer and install again.\r\n\r\n") +
        HVTranslator::Translate(u"If this error persists, please uninstall and then install again.");
    HVMessageBox::Show(owner, text, HVTranslator::Translate(u"Install Error"), MB_OK | MB_ICONERROR);
}

#include "install/win/CRunningCopyCheck.h"

#include "foundation/HVLog.h"
#include "foundation/HVTranslator.h"
#include "toolkit/win/HVMessageBox.h"

#include <chrono>

namespace
{
const char* const kRunningCopySource = "CRunningCopyCheck::Run";
}

CRunningCopyCheck::CRunningCopyCheck(Product product, bool silent, ShowBox showBox)
    : product_(std::move(product)), silent_(silent), showBox_(std::move(showBox))
{
    if (!showBox_)
        showBox_ = [](const HVString& text, const HVString& title, UINT type) {
            return HVMessageBox::Show(nullptr, text, title, type);
        };
}

HVString CRunningCopyCheck::Text(const char16_t* english) const
{
    const HVString& name = product_.displayName;
    return HVString::Format(HVTranslator::Translate(english).c_str(), name, name, name);
}

bool CRunningCopyCheck::Run()
{
    if (!product_.isRunning())
        return true;
    HVLog::Write(HVLog::kInfo, kRunningCopySource, u"%s is running", product_.displayName);

    if (!silent_)
    {
        const HVString question = Text(u"Install Wizard has detected a running copy of %s.\r\n\r\n") +
                                  Text(u"Do you want Install Wizard to close %s and continue setup?");
        if (showBox_(question, HVString(), MB_YESNO | MB_ICONQUESTION) != IDYES)
        {
            HVLog::Write(HVLog::kInfo, kRunningCopySource, u"The user chose not to close it");
            declined_ = true;
            return false;
        }
    }

    if (product_.displayName.Find(u"Dynamo") == HVString::npos)
    {
        product_.closeRunningCopy();
    }
    else
    {
        // The server edition has no close operation of its own that waits; it is asked
        // through its window and given a bounded time to go.
        if (const HWND window = product_.mainWindow())
            ::PostMessageW(window, WM_CLOSE, 1, 0);
        const auto start = std::chrono::steady_clock::now();
        while (product_.isRunning() &&
               std::chrono::steady_clock::now() - start < std::chrono::milliseconds(kPollMilliseconds))
        {
            // Polling, not spinning: the server needs the processor to shut down.
            ::Sleep(20);
        }
    }

    if (product_.isRunning())
    {
        HVLog::Write(HVLog::kWarning, kRunningCopySource, u"%s did not close; asking the user", product_.displayName);
        const HVString text = Text(u"Install Wizard could not close the running copy of %s.\r\n") +
                              Text(u"Please manually close %s and then press 'OK'.\r\n\r\n") +
                              Text(u"If you can not close %s restart your computer and run Install Wizard again.");
        showBox_(text, HVTranslator::Translate(u"Please Close ") + product_.displayName, MB_OK | MB_ICONWARNING);
        if (product_.isRunning())
        {
            const HVString error = Text(u"%s is still running.  Install Wizard can not continue.\r\n\r\n") +
                                   Text(u"Please restart your computer and run Install Wizard again.");
            showBox_(error, HVTranslator::Translate(u"Install Wizard Error"), MB_OK | MB_ICONERROR);
            HVLog::Write(HVLog::kError, kRunningCopySource, u"%s is still running", product_.displayName);
            return false;
        }
    }
    HVLog::Write(HVLog::kInfo, kRunningCopySource, u"%s is closed", product_.displayName);
    return true;
}

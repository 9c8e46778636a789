#include "install/win/CNeedInternetExplorerDlg.h"

#include "changes/win/RunProgram.h"
#include "foundation/HVLog.h"
#include "foundation/HVTranslator.h"
#include "toolkit/win/HVMessageBox.h"

CNeedInternetExplorerDlg::Choice CNeedInternetExplorerDlg::DoModal()
{
    const HVString text =
        HVTranslator::Translate(u"Install Wizard did not detect a new enough version of Microsoft Internet Explorer.  "
                                u"Setup cannot continue.") +
        u"\r\n\r\n" +
        HVTranslator::Translate(u"Click on 'Download' to download and install the latest version of Internet "
                                u"Explorer.  Please re-run setup after installing Internet Explorer.");
    const int pressed = HVMessageBox::ShowButtons(owner_, text, HVTranslator::Translate(u"Install Wizard"),
                                                  {{kDownload, HVTranslator::Translate(u"Download")},
                                                   {kQuitSetup, HVTranslator::Translate(u"Quit Setup")}},
                                                  kDownload, kQuitSetup, MB_ICONWARNING);
    if (pressed != kDownload)
        return kQuitSetup;
    // An unattended run answers Download by default, but nobody is there to read the page,
    // and a machine without a browser would answer the shell's launch with a box of its own.
    if (HVMessageBox::IsSuppressed())
        return kQuitSetup;
    HVLog::Write(HVLog::kInfo, "CNeedInternetExplorerDlg::DoModal", u"Opening %s", kDownloadPage);
    RunProgram(kDownloadPage, HVString(), SW_SHOWNORMAL, false, false, nullptr, 0, true);
    return kDownload;
}

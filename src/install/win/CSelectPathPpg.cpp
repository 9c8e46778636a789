#include "install/win/CSelectPathPpg.h"

#include "foundation/HVLog.h"
#include "install/CSelectPathRules.h"
#include "install/win/CInstallWizard.h"
#include "product/CWizardRules.h"
#include "toolkit/win/HVMessageBox.h"

CSelectPathPpg::CSelectPathPpg(CInstallWizard& wizard) : CWizardPropertyPage(wizard), machine_(wizard)
{
}

bool CSelectPathPpg::CreateControls()
{
    HVPlacement prompt;
    HVPlacement label;
    label.gap = 10;
    HVPlacement edit;
    edit.gap = 2;
    HVPlacement note;
    note.gap = 8;
    if (!prompt_.Create(*this, ProductText(u"Setup will install %s in the following folder."), prompt) ||
        !label_.Create(*this, T(u"Install to:"), label) ||
        !folder_.Create(*this, u"", T(u"Browse..."), edit) ||
        !note_.Create(*this,
                      T(u"To install in a different folder, type its path or click Browse and select another folder."),
                      note))
        return false;
    folder_.pickerTitle = T(u"Install to:");
    return true;
}

HVString CSelectPathPpg::Title() const
{
    return T(u"Destination Folder");
}

HVString CSelectPathPpg::Subtitle() const
{
    return ProductText(u"Choose the folder in which to install %s.");
}

bool CSelectPathPpg::SkipTest()
{
    return CWizardRules::SkipDestination(Options());
}

void CSelectPathPpg::Prepare()
{
    InstallOptions& options = Options();
    // The first reading also settles whether there is an earlier installation.
    InstallWizard().EarlierInstallationFolder();
    CSelectPathRules::ProposalInput input;
    input.portable = options.portable;
    input.earlierInstallationFound = options.earlierInstallationFound;
    input.currentDestination = options.destinationFolder;
    input.installToPath = InstallWizard().Description().GetText(u"/*/Product/InstallToPath");
    input.displayName = Product().GetDisplayName();
    input.answeredFolder = options.answers.folder.value_or(HVString());
    options.destinationFolder = CSelectPathRules::Propose(input, machine_);
    folder_.SetText(options.destinationFolder);
    HVLog::Write(HVLog::kInfo, "CSelectPathPpg::Prepare", u"Proposed %s", options.destinationFolder);
}

bool CSelectPathPpg::NextPressed()
{
    Options().destinationFolder = folder_.GetText();
    if (!LeaveCheck())
        return false;
    Options().answers.folder = Options().destinationFolder;
    return true;
}

bool CSelectPathPpg::LeaveCheck()
{
    InstallOptions& options = Options();
    const CSelectPathResult result = CSelectPathRules::Check(options.destinationFolder, Product().GetDisplayName(), machine_);
    if (!result.accepted) {
        HVLog::Write(HVLog::kInfo, "CSelectPathPpg::LeaveCheck", u"%s refused by check %d", options.destinationFolder,
                     result.check);
        if (options.silent) {
            // Nobody is there to type another folder: the refusal goes into the log, and the
            // run ends before anything is installed.
            HVLog::Write(HVLog::kError, "CSelectPathPpg::LeaveCheck", u"%s: %s", result.title, result.text);
            InstallWizard().Close(CInstallWizard::kFailed);
            return false;
        }
        HVMessageBox::Show(InstallWizard().Hwnd(), result.text, result.title, MB_OK | MB_ICONWARNING);
        return false;
    }
    options.destinationFolder = result.folder;
    folder_.SetText(result.folder);
    HVLog::Write(HVLog::kInfo, "CSelectPathPpg::LeaveCheck", u"Destination %s", result.folder);
    return true;
}

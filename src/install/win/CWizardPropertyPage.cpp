#include "install/win/CWizardPropertyPage.h"

#include "foundation/HVLog.h"
#include "foundation/HVTranslator.h"
#include "install/win/CInstallWizard.h"
#include "product/CWizardRules.h"
#include "toolkit/win/HVMessageBox.h"

bool CWizardPropertyPage::EnterTest()
{
    if (!CWizardRules::EnterTest(*this, Options()))
        return false;
    // A silent run enters a page it passes by only when the page's own check refused its
    // defaults (a destination that can't be used). Without boxes nobody is there to correct
    // it either, and the wizard would wait for ever: the install can't go on.
    if (Options().silent && HVMessageBox::IsSuppressed() && SkipTest()) {
        HVLog::Write(HVLog::kError, "CWizardPropertyPage::EnterTest", u"The page \"%s\" needs a person: the install can't go on",
                     Title());
        wizard_.Close(CInstallWizard::kFailed);
    }
    return true;
}

bool CWizardPropertyPage::NextPressed()
{
    return LeaveCheck();
}

void CWizardPropertyPage::OnShowPage()
{
    Prepare();
}

bool CWizardPropertyPage::SkipTest()
{
    return false;
}

void CWizardPropertyPage::Prepare()
{
}

bool CWizardPropertyPage::LeaveCheck()
{
    return true;
}

InstallOptions& CWizardPropertyPage::Options() const
{
    return wizard_.Options();
}

const CProductIdentity& CWizardPropertyPage::Product() const
{
    return wizard_.Product();
}

HVString CWizardPropertyPage::T(const char16_t* english)
{
    return HVTranslator::Translate(english);
}

HVString CWizardPropertyPage::ProductText(const char16_t* english) const
{
    return HVString::Format(T(english).c_str(), wizard_.Product().GetDisplayName());
}

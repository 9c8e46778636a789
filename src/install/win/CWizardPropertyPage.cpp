#include "install/win/CWizardPropertyPage.h"

#include "foundation/HVTranslator.h"
#include "install/CWizardRules.h"
#include "install/win/CInstallWizard.h"

bool CWizardPropertyPage::EnterTest()
{
    return CWizardRules::EnterTest(*this, Options());
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

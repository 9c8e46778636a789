#pragma once

#include "product/IWizardStep.h"
#include "product/InstallOptions.h"
#include "toolkit/win/HVWizardPageWnd.h"

class CInstallWizard;
class CProductIdentity;

// Base of the install pages. To the toolkit's page it adds the three operations the wizard's
// page sequence asks (IWizardStep): the skip test, prepare (the page's defaults, computed
// each time before the page is shown, so they follow the choices made on earlier pages) and
// the leave check. The enter test is the rule every install page shares.
class CWizardPropertyPage : public HVWizardPageWnd, public IWizardStep
{
public:
    explicit CWizardPropertyPage(CInstallWizard& wizard) : wizard_(wizard) {}

    bool EnterTest() override;
    // Pages store their choice first, then call this.
    bool NextPressed() override;
    void OnShowPage() override;

    bool SkipTest() override;
    void Prepare() override;
    bool LeaveCheck() override;

protected:
    CInstallWizard& InstallWizard() const { return wizard_; }
    InstallOptions& Options() const;
    const CProductIdentity& Product() const;
    // A user-visible text in the current language.
    static HVString T(const char16_t* english);
    // The same with the product's display name for its %s.
    HVString ProductText(const char16_t* english) const;

private:
    CInstallWizard& wizard_;
};

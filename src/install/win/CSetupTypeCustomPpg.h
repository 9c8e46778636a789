#pragma once

#include "install/win/CWizardPropertyPage.h"
#include "toolkit/win/HVRadioButton.h"
#include "toolkit/win/HVStaticText.h"

// The custom setup type: a normal install to this computer, or a portable one to a folder
// (usually on a removable drive) that can be taken to another computer. Shown only after
// Custom was chosen, and only for a product that offers portable installs.
class CSetupTypeCustomPpg : public CWizardPropertyPage
{
public:
    explicit CSetupTypeCustomPpg(CInstallWizard& wizard) : CWizardPropertyPage(wizard) {}

    bool CreateControls() override;
    bool NextPressed() override;
    HVString Title() const override;
    HVString Subtitle() const override;
    bool SkipTest() override;

private:
    HVStaticText prompt_;
    HVRadioButton normal_;
    HVStaticText normalText_;
    HVRadioButton portable_;
    HVStaticText portableText_;
};

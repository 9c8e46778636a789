#pragma once

#include "install/win/CWizardPropertyPage.h"
#include "toolkit/win/HVCheckBox.h"
#include "toolkit/win/HVRadioButton.h"
#include "toolkit/win/HVStaticText.h"

#include <memory>

// The setup type: Express or Custom. When the product offers the automatic install, a check
// box asks whether the next run should count down and install by itself; its answer is kept
// as "Run Auto Install" under the product's "Installer" key.
class CSetupTypePpg : public CWizardPropertyPage
{
public:
    explicit CSetupTypePpg(CInstallWizard& wizard) : CWizardPropertyPage(wizard) {}

    bool CreateControls() override;
    bool NextPressed() override;
    HVString Title() const override;
    HVString Subtitle() const override;
    bool SkipTest() override;

private:
    HVStaticText prompt_;
    HVRadioButton express_;
    HVStaticText expressText_;
    HVRadioButton custom_;
    HVStaticText customText_;
    std::unique_ptr<HVCheckBox> autoInstall_;  // only when the feature is offered
};

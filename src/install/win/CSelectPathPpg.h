#pragma once

#include "install/win/CSelectPathMachine.h"
#include "install/win/CWizardPropertyPage.h"
#include "toolkit/win/HVFilenameEdit.h"
#include "toolkit/win/HVStaticText.h"

// The destination folder ("Install to:"). It proposes a folder each time before it shows,
// lets the user type or browse, and refuses folders the product must not go to; the
// accepted folder becomes the destination of the install.
class CSelectPathPpg : public CWizardPropertyPage
{
public:
    explicit CSelectPathPpg(CInstallWizard& wizard);

    bool CreateControls() override;
    bool NextPressed() override;
    HVString Title() const override;
    HVString Subtitle() const override;

    bool SkipTest() override;
    void Prepare() override;
    bool LeaveCheck() override;

private:
    CSelectPathMachine machine_;
    HVStaticText prompt_;
    HVStaticText label_;
    HVFilenameEdit folder_;
    HVStaticText note_;
};

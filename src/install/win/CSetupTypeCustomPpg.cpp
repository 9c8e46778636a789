#include "install/win/CSetupTypeCustomPpg.h"

#include "install/win/CInstallWizard.h"
#include "product/CProductIdentityRules.h"
#include "product/CWizardRules.h"

bool CSetupTypeCustomPpg::CreateControls()
{
    HVPlacement prompt;
    HVPlacement choice;
    choice.x = 7;
    choice.gap = 8;
    HVPlacement description;
    description.x = 19;
    description.gap = 1;
    if (!prompt_.Create(*this, T(u"Please select custom setup type."), prompt) ||
        !normal_.Create(*this, T(u"Normal install to a computer"), choice, true) ||
        !normalText_.Create(*this,
                            T(u"This will let you install the program to any location on your computer.  You can "
                              u"choose the drive and path."),
                            description) ||
        !portable_.Create(*this, T(u"Portable install"), choice, false) ||
        !portableText_.Create(*this,
                              T(u"This lets you put a complete copy of the program on a removable drive, so you can "
                                u"take it to another compatible computer and run it.  This will also ask for a drive "
                                u"and path."),
                              description))
        return false;
    const bool portable = Options().answers.portable.value_or(false);
    normal_.SetChecked(!portable);
    portable_.SetChecked(portable);
    return true;
}

bool CSetupTypeCustomPpg::SkipTest()
{
    return CWizardRules::SkipCustomSetupType(Options(),
                                             Product().HasFeature(CProductIdentityRules::kFeaturePortableInstall));
}

bool CSetupTypeCustomPpg::NextPressed()
{
    CWizardRules::ApplyCustomSetupType(Options(), portable_.IsChecked() ? 1 : 0);
    return LeaveCheck();
}

HVString CSetupTypeCustomPpg::Title() const
{
    return T(u"Setup Type");
}

HVString CSetupTypeCustomPpg::Subtitle() const
{
    return T(u"Choose the setup type that best suits your needs.");
}

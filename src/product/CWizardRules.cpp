#include "product/CWizardRules.h"

#include "foundation/HVTranslator.h"

bool CWizardRules::EnterTest(IWizardStep& step, InstallOptions& options)
{
    if (!step.SkipTest())
        return true;
    step.Prepare();
    if (step.LeaveCheck())
        return false;
    options.express = false;
    return true;
}

bool CWizardRules::SkipSetupType(InstallOptions& options)
{
    if (options.autoInstall)
        return true;
    if (options.upgrade) {
        options.express = true;
        return true;
    }
    return options.silent;
}

bool CWizardRules::SkipCustomSetupType(const InstallOptions& options, bool portableInstallFeature)
{
    return !portableInstallFeature || options.silent || options.express;
}

bool CWizardRules::SkipDestination(const InstallOptions& options)
{
    return options.silent || (options.earlierInstallationFound && !options.portable) || options.express;
}

bool CWizardRules::SkipFileAssociations(const InstallOptions& options)
{
    return options.silent || (options.express && options.earlierInstallationFound) || options.portable;
}

bool CWizardRules::FileAssociationPageAsks(const InstallOptions& options)
{
    return !SkipFileAssociations(options) && !options.noAssociations && !options.regFileAssociations;
}

bool CWizardRules::SkipShortcuts(const InstallOptions& options)
{
    return options.silent || options.express || options.portable;
}

bool CWizardRules::SkipFinish(const InstallOptions& options, int finishState)
{
    return options.silent || (options.express && finishState == 2);
}

void CWizardRules::ApplySetupType(InstallOptions& options, int choice)
{
    options.portable = false;
    options.express = choice == 0;
    options.answers.express = options.express;
    // Express has no portable form: a portable answer no longer stands.
    if (options.express)
        options.answers.portable.reset();
}

void CWizardRules::ApplyCustomSetupType(InstallOptions& options, int choice)
{
    options.portable = choice == 1;
    options.answers.portable = options.portable;
}

CWizardRules::CancelAction CWizardRules::Cancel(int pagePosition)
{
    return pagePosition < kCopyPosition ? CancelAction::Confirm : CancelAction::Refuse;
}

CWizardRules::WelcomeStart CWizardRules::OnWelcomeStart(const InstallOptions& options, bool autoInstallOffered,
                                                        uint32_t runAutoInstall)
{
    if (options.silent || options.upgrade)
        return WelcomeStart::MoveOn;
    if (!autoInstallOffered)
        return WelcomeStart::ForgetAutoInstall;
    return runAutoInstall != 0 ? WelcomeStart::StartCountdown : WelcomeStart::Wait;
}

HVString CWizardRules::CountdownTitle(const HVString& displayName, int seconds)
{
    return HVString::Format(HVTranslator::Translate(u"%s - Install Wizard (Auto Install in %d seconds)").c_str(),
                            displayName, seconds);
}

#include "install/win/CSetupTypePpg.h"

#include "changes/win/CRegistryWriter.h"
#include "foundation/HVLog.h"
#include "foundation/win/HVRegKey.h"
#include "install/win/CInstallWizard.h"
#include "product/CWizardRules.h"

bool CSetupTypePpg::CreateControls()
{
    HVPlacement prompt;
    HVPlacement choice;
    choice.x = 7;
    choice.gap = 8;
    HVPlacement description;
    description.x = 19;
    description.gap = 1;
    if (!prompt_.Create(*this, T(u"Please select a setup type."), prompt) ||
        !express_.Create(*this, T(u"Express"), choice, true) ||
        !expressText_.Create(*this, T(u"Most common set of program features will be installed."), description) ||
        !custom_.Create(*this, T(u"Custom"), choice, false) ||
        !customText_.Create(
            *this, T(u"Choose program installation location and file associations. Recommended for advanced users."),
            description))
        return false;
    // An answer file's choice, else Express.
    const bool express = Options().answers.express.value_or(true);
    express_.SetChecked(express);
    custom_.SetChecked(!express);
    if (InstallWizard().AutoInstallOffered()) {
        HVPlacement check;
        check.gap = 14;
        autoInstall_ = std::make_unique<HVCheckBox>();
        if (!autoInstall_->Create(*this, T(u"Next time use Auto Install after 30 second timeout."), check))
            return false;
        // The box shows what the last run chose.
        HVRegKey installer;
        DWORD value = 0;
        if (installer.Open(Product().GetRegistryHive(), Product().GetInstallerKey()))
            installer.QueryDWORD(u"Run Auto Install", value);
        autoInstall_->SetChecked(value != 0);
    }
    return true;
}

bool CSetupTypePpg::SkipTest()
{
    return CWizardRules::SkipSetupType(Options());
}

bool CSetupTypePpg::NextPressed()
{
    CWizardRules::ApplySetupType(Options(), express_.IsChecked() ? 0 : 1);
    if (autoInstall_) {
        CRegistryWriter installer(InstallWizard().Changes(), Product().GetRegistryHive(), Product().GetInstallerKey());
        if (installer.Open())
            installer.SetDWORD(u"Run Auto Install", autoInstall_->IsChecked() ? 1 : 0);
    }
    HVLog::Write(HVLog::kInfo, "CSetupTypePpg::NextPressed", u"Express %d", Options().express);
    return LeaveCheck();
}

HVString CSetupTypePpg::Title() const
{
    return T(u"Setup Type");
}

HVString CSetupTypePpg::Subtitle() const
{
    return T(u"Choose the setup type that best suits your needs.");
}

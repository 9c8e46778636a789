#pragma once

#include "install/CShortcutRules.h"
#include "install/win/CWizardPropertyPage.h"
#include "toolkit/win/HVCheckBox.h"
#include "toolkit/win/HVStaticText.h"

#include <windows.h>

class CShortcutWriter;

// The shortcuts to the installed program: the product's Start Menu folder, a desktop
// shortcut and, where Windows still has a Quick Launch bar, a Quick Launch shortcut. The
// shortcuts are made by the leave check, so that a page passed over (silent, express,
// portable) still makes those its defaults ask for. All three places are the user's own.
class CShortcutsPpg : public CWizardPropertyPage
{
public:
    explicit CShortcutsPpg(CInstallWizard& wizard) : CWizardPropertyPage(wizard) {}

    bool CreateControls() override;
    void OnShowPage() override;
    bool NextPressed() override;
    HVString Title() const override;
    HVString Subtitle() const override;

    bool SkipTest() override;
    void Prepare() override;
    bool LeaveCheck() override;

private:
    // A DWORD under the product's "Installer" key, noted for the uninstall.
    void SetInstallerValue(const char16_t* name, DWORD value) const;
    void MakeStartMenu(CShortcutWriter& writer, const HVString& installFolder) const;
    // The program's own shortcut (the launcher) in `folder`, made when the launcher exists.
    void MakeProgramShortcut(CShortcutWriter& writer, const HVString& installFolder, const HVString& folder,
                             const HVString& icon) const;

    HVStaticText description_;
    HVCheckBox startMenu_;
    HVCheckBox desktop_;
    HVCheckBox quickLaunch_;
    bool quickLaunchBox_ = false;
    CShortcutRules::Choice choice_;
};

#pragma once

#include "install/CFinishRules.h"
#include "install/win/CWizardPropertyPage.h"
#include "toolkit/win/HVCheckBox.h"
#include "toolkit/win/HVStaticText.h"

#include <optional>

// The last page: it writes what the install left for the next restart or logon, says how the
// install went and offers either a restart of Windows (files could not all be replaced) or
// the start of the installed program. Finish restarts after "Confirm Restart", or hands the
// launcher to the program that started the setup ("Finish.txt").
class CFinishPpg : public CWizardPropertyPage
{
public:
    explicit CFinishPpg(CInstallWizard& wizard) : CWizardPropertyPage(wizard) {}

    bool CreateControls() override;
    // Prepared first: whether the page is passed over depends on what it would propose.
    bool EnterTest() override;
    void OnShowPage() override;
    bool NextPressed() override;
    HVString Title() const override;
    HVString Subtitle() const override;
    bool IsBackAllowed() const override { return false; }

    bool SkipTest() override;
    void Prepare() override;
    bool LeaveCheck() override;

private:
    HVStaticText description_;
    // At most one exists: made when the page is shown, from what Prepare found.
    std::optional<HVCheckBox> box_;
    CFinishRules::Box boxKind_ = CFinishRules::Box::None;
    bool journalWritten_ = false;
    bool restartNeeded_ = false;
    int choice_ = CFinishRules::kNothing;
};

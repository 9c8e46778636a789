#pragma once

#include "foundation/HVString.h"
#include "toolkit/win/HVCheckBox.h"
#include "toolkit/win/HVOkCancelPopupWnd.h"
#include "toolkit/win/HVStaticText.h"

// The question before anything is removed: what goes, and a check box to keep the user's
// library and settings (checked unless the command line asked to remove them). "Uninstall"
// answers IDOK, "Cancel" IDCANCEL.
class CUninstallConfirmWnd : public HVOkCancelPopupWnd
{
public:
    static constexpr int kKeepSettingsId = 1100;

    CUninstallConfirmWnd(const HVString& question, const HVString& keepText, bool keepSettings);
    // Valid after Run.
    bool KeepSettings() const { return keepSettings_; }

protected:
    bool CreateContent() override;
    bool OnOk() override;

private:
    HVString question_;
    HVString keepText_;
    bool keepSettings_;
    HVStaticText text_;
    HVCheckBox keep_;
};

#pragma once

#include "install/win/CWizardPropertyPage.h"
#include "toolkit/win/HVButton.h"
#include "toolkit/win/HVFileAssociationsReportCtrl.h"

class FileTypeModel;

// The file types the installed product opens: one checked row per type the user wants, the
// last choice (or the product's defaults) checked when the page opens. Next registers the
// checked types and keeps the choice for the next install.
class CFileAssociationPpg : public CWizardPropertyPage
{
public:
    static constexpr int kListId = 1101;
    static constexpr int kSelectAllId = 1102;
    static constexpr int kUnselectAllId = 1103;
    static constexpr int kSelectDefaultId = 1104;

    explicit CFileAssociationPpg(CInstallWizard& wizard) : CWizardPropertyPage(wizard) {}
    bool CreateControls() override;
    void OnShowPage() override;
    bool NextPressed() override;
    bool SkipTest() override;
    HVString Title() const override;
    HVString Subtitle() const override;

private:
    const FileTypeModel* Model();

    HVFileAssociationsReportCtrl list_;
    HVButton selectAll_;
    HVButton unselectAll_;
    HVButton selectDefault_;
    bool filled_ = false;
};

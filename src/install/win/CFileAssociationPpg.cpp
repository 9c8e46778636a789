#include "install/win/CFileAssociationPpg.h"

#include "foundation/HVLog.h"
#include "foundation/win/HVFileSystem.h"
#include "install/win/CInstallWizard.h"
#include "integration/FileTypeModel.h"
#include "integration/win/CAssociationChoice.h"
#include "integration/win/CFileAssociations.h"
#include "integration/win/CFileTypes.h"
#include "integration/win/CShellContext.h"
#include "integration/win/CShellIntegration.h"
#include "integration/win/CompleteShellRegistration.h"
#include "integration/win/RegisterDefaultPrograms.h"
#include "product/CWizardRules.h"

bool CFileAssociationPpg::CreateControls()
{
    HVPlacement list;
    list.cy = HVPlacement::kFillHeight;
    HVPlacement first;
    first.gap = 6;
    first.cx = 60;
    first.cy = 14;
    HVPlacement next = first;
    next.sameRow = true;
    next.x = 66;
    HVPlacement last = next;
    last.x = 132;
    if (!list_.Create(*this, list, kListId) || !selectAll_.Create(*this, T(u"Select All"), first, false, kSelectAllId) ||
        !unselectAll_.Create(*this, T(u"Unselect All"), next, false, kUnselectAllId) ||
        !selectDefault_.Create(*this, T(u"Select Default"), last, false, kSelectDefaultId))
        return false;
    selectAll_.onChange = [this] { list_.CheckAll(true); };
    unselectAll_.onChange = [this] { list_.CheckAll(false); };
    selectDefault_.onChange = [this] {
        if (const FileTypeModel* model = Model())
            list_.CheckOnly(model->Get(FileTypeModel::DefaultAssocFileTypes));
    };
    return true;
}

const FileTypeModel* CFileAssociationPpg::Model()
{
    return CFileTypes::Get(Product(), InstallWizard().Description(),
                           HVFileSystem::NormalizeFolderPath(Options().destinationFolder), InstallWizard().Hwnd());
}

void CFileAssociationPpg::OnShowPage()
{
    CWizardPropertyPage::OnShowPage();
    const FileTypeModel* model = Model();
    if (filled_ || !model)
        return;
    filled_ = true;
    // An answer file's types, else the kept choice, else the product's defaults.
    const auto kept = Options().answers.fileTypes ? Options().answers.fileTypes : CAssociationChoice::Kept(Product());
    const std::vector<HVString>& checked = kept ? *kept : model->Get(FileTypeModel::DefaultAssocFileTypes);
    std::vector<HVFileAssociationsReportCtrl::Row> rows;
    for (const char16_t* group : {u"Audio", u"Image", u"Video", u"Data", u"Playlist", u"Unknown"})
        for (const HVString& extension : model->KnownExtensions())
            if (model->MediaType(extension) == group)
                rows.push_back({extension, model->Description(extension), T(group),
                                FileTypeModel::ContainsNoCase(checked, extension)});
    list_.SetRows(rows);
}

bool CFileAssociationPpg::SkipTest()
{
    return !CWizardRules::FileAssociationPageAsks(Options());
}

bool CFileAssociationPpg::NextPressed()
{
    const FileTypeModel* model = Model();
    if (!model || !filled_)
        return LeaveCheck();
    CInstallWizard& wizard = InstallWizard();
    const CShellContext context{wizard.Changes(), Product(), HVFileSystem::NormalizeFolderPath(Options().destinationFolder),
                                wizard.SetupFolder(), *model};
    const std::vector<HVString> chosen = list_.Checked();
    Options().answers.fileTypes = chosen;
    CAssociationChoice::Keep(context.changes, Product(), *model, chosen);
    ShellRegistration record = CShellIntegration::RecordFor(context);
    record.fileTypes = FileTypeModel::JoinList(chosen);
    HVLog::Write(HVLog::kInfo, "CFileAssociationPpg::NextPressed", u"File types chosen: %s", record.fileTypes);
    CFileAssociations(context, record).RegisterChosen();
    RegisterDefaultPrograms(record, context);
    // The table went in with the copy step; only the shell's notice is left.
    record.applyTable = false;
    CompleteShellRegistration(record, context);
    return LeaveCheck();
}

HVString CFileAssociationPpg::Title() const { return T(u"File Associations"); }

HVString CFileAssociationPpg::Subtitle() const { return T(u"Please select the file associations."); }

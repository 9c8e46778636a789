#include "integration/win/CShellIntegration.h"

#include "foundation/HVLog.h"
#include "integration/CRegistryActionTable.h"
#include "integration/FileTypeModel.h"
#include "integration/win/CAssociationChoice.h"
#include "integration/win/CFileTypes.h"
#include "integration/win/CShellContext.h"
#include "integration/win/CompleteShellRegistration.h"
#include "product/CProductIdentityRules.h"
#include "product/CProductIdentityRules.h"
#include "product/CWizardRules.h"
#include "product/CWizardRules.h"
#include "product/InstallOptions.h"
#include "product/InstallOptions.h"
#include "product/win/CProductIdentity.h"
#include "product/win/CProductIdentity.h"

ShellRegistration CShellIntegration::RecordFor(const CShellContext& context)
{
    ShellRegistration record;
    record.productWithVersion = context.product.GetProductWithVersion();
    record.launcherName = context.product.GetLauncherName();
    record.launcherPath = context.installFolder + record.launcherName;
    record.protocols = FileTypeModel::JoinList(context.fileTypes.Protocols());
    record.mimeExtension = CRegistryActionTable::kMimeExtension;
    return record;
}

std::vector<HVString> CShellIntegration::UnaskedChoice(const InstallOptions& options, const CProductIdentity& product,
                                                      const FileTypeModel& model)
{
    if (const auto& answered = options.answers.fileTypes) {
        const std::vector<HVString> known = model.KnownExtensions();
        std::vector<HVString> chosen;
        for (const HVString& extension : *answered) {
            if (FileTypeModel::ContainsNoCase(known, extension))
                chosen.push_back(extension);
            else
                HVLog::Write(HVLog::kWarning, "CShellIntegration::UnaskedChoice", u"%s is no file type of %s: left out",
                             extension, product.GetDisplayName());
        }
        return chosen;
    }
    if (auto kept = CAssociationChoice::Kept(product))
        return *kept;
    return model.Get(FileTypeModel::DefaultFileTypes);
}

bool CShellIntegration::ApplyRegistryActions()
{
    const FileTypeModel* model = CFileTypes::Get(context_.product, context_.description, context_.installFolder, context_.owner);
    if (!model)
        return false;
    const CShellContext shell{context_.changes, context_.product, context_.installFolder, context_.setupFolder, *model};
    ShellRegistration record = RecordFor(shell);
    const InstallOptions& options = context_.options;
    record.associate = !options.noAssociations;
    const bool pageAsks =
        context_.product.HasFeature(CProductIdentityRules::kFeatureFileAssociations) && CWizardRules::FileAssociationPageAsks(options);
    if (!options.noAssociations && !pageAsks) {
        const std::vector<HVString> chosen = UnaskedChoice(options, context_.product, *model);
        record.fileTypes = FileTypeModel::JoinList(chosen);
        CAssociationChoice::Keep(context_.changes, context_.product, *model, chosen);
    }
    HVLog::Write(HVLog::kInfo, "CShellIntegration::ApplyRegistryActions", u"File types %s%s",
                 record.fileTypes.IsEmpty() ? HVString(u"none") : record.fileTypes,
                 options.noAssociations ? u" (NoAssociations: no association changes)"
                 : pageAsks             ? u" (the file-association page asks)"
                                        : u"");
    CompleteShellRegistration(record, shell);
    return true;
}

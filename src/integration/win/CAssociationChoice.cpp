#include "integration/win/CAssociationChoice.h"

#include "changes/win/CRegistryWriter.h"
#include "foundation/win/HVRegKey.h"
#include "integration/FileTypeModel.h"
#include "product/win/CProductIdentity.h"

std::optional<std::vector<HVString>> CAssociationChoice::Kept(const CProductIdentity& product)
{
    HVRegKey settings;
    HVString text;
    if (!settings.Open(product.GetRegistryHive(), product.GetSettingsKey()) || !settings.QueryString(kSetValue, text))
        return std::nullopt;
    return FileTypeModel::SplitList(text);
}

void CAssociationChoice::Keep(CInstallChangeLog& changes, const CProductIdentity& product, const FileTypeModel& model,
                              const std::vector<HVString>& chosen)
{
    CRegistryWriter settings(changes, product.GetRegistryHive(), product.GetSettingsKey());
    if (!settings.Open())
        return;
    settings.SetString(kSetValue, FileTypeModel::JoinList(chosen));
    settings.SetString(kMediaTypesValue, model.SelectedMediaTypes(chosen));
}

#pragma once

#include "foundation/HVString.h"

#include <optional>
#include <vector>

class CInstallChangeLog;
class CProductIdentity;
class FileTypeModel;

// The user's choice of file types, kept in the product's settings so that a later install
// (or "/RegFileAssociations") starts from it: "File Associations - Set" (the extensions,
// ";"-separated) and "File Associations - Selected Media Types".
class CAssociationChoice
{
public:
    static constexpr const char16_t* kSetValue = u"File Associations - Set";
    static constexpr const char16_t* kMediaTypesValue = u"File Associations - Selected Media Types";

    // The kept extensions; nullopt when no choice was ever kept (an empty one is a choice).
    static std::optional<std::vector<HVString>> Kept(const CProductIdentity& product);
    static void Keep(CInstallChangeLog& changes, const CProductIdentity& product, const FileTypeModel& model,
                     const std::vector<HVString>& chosen);
};

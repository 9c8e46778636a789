#pragma once

#include "engine/IShellIntegration.h"
#include "engine/win/CInstallContext.h"
#include "foundation/HVString.h"
#include "integration/ShellRegistration.h"

#include <vector>

class FileTypeModel;
struct InstallOptions;
struct CShellContext;

// The copy step's registration with the shell: the action table, the file types (unless the
// file-association page is to ask the user, which registers them itself), protocols and
// Default Programs, then the shell's notice.
class CShellIntegration : public IShellIntegration
{
public:
    explicit CShellIntegration(const CInstallContext& context) : context_(context) {}
    bool ApplyRegistryActions() override;

    // The record of this product version, with no file types chosen yet.
    static ShellRegistration RecordFor(const CShellContext& context);
    // The types to register unasked: an answer file's (those the product knows), else the kept
    // choice, else the product's defaults.
    static std::vector<HVString> UnaskedChoice(const InstallOptions& options, const CProductIdentity& product,
                                               const FileTypeModel& model);

private:
    const CInstallContext& context_;
};

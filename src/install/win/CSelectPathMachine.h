#pragma once

#include "install/CSelectPathRules.h"

class CInstallWizard;

// The destination rules' view of this machine: its Windows and Program Files folders, the
// other programs' folders, the product's remembered and earlier folders, folder creation and
// free disk space.
class CSelectPathMachine : public ISelectPathMachine
{
public:
    explicit CSelectPathMachine(CInstallWizard& wizard) : wizard_(wizard) {}
    virtual ~CSelectPathMachine() = default;

    HVString WindowsFolder() const override;
    HVString ProgramFilesFolder() const override;
    std::vector<HVString> ProtectedFolders() const override;
    HVString RememberedFolder() const override;
    HVString EarlierInstallationFolder() const override;
    bool MakeDirectoryTree(const HVString& folder) override;
    bool FreeBytes(const HVString& folder, uint64_t& bytes) const override;

private:
    CInstallWizard& wizard_;
};

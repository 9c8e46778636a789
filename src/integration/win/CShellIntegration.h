#pragma once

#include "engine/IShellIntegration.h"
#include "engine/win/CInstallContext.h"

// File types, AutoPlay, MIME types, URL protocols and Default Programs. This version of
// Install Wizard does not register them yet and says so in the log.
class CShellIntegration : public IShellIntegration
{
public:
    explicit CShellIntegration(const CInstallContext& context) : context_(context) {}
    void ApplyRegistryActions() override;

private:
    const CInstallContext& context_;
};

#pragma once

#include "engine/IInstallDependency.h"

class CDependencyRunner;

// The DirectX 9 helper components: fetched and run when "d3dx9_43.dll" is missing from the
// system folder (never on Windows 2000 and earlier). Never stops the install.
class CInstallDirectX : public IInstallDependency
{
public:
    explicit CInstallDirectX(CDependencyRunner& runner) : runner_(runner) {}
    bool Install() override;
    bool ContinueOnFailure() const override { return true; }

private:
    CDependencyRunner& runner_;
};

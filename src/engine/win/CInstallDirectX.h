#pragma once

#include "engine/IInstallDependency.h"

class CDependencyRunner;

// The DirectX 9 helper components. Not installed by this version of Install Wizard yet: Install says so in the log and
// lets the install go on.
class CInstallDirectX : public IInstallDependency
{
public:
    explicit CInstallDirectX(CDependencyRunner& runner) : runner_(runner) {}
    bool Install() override;
    bool ContinueOnFailure() const override { return true; }

private:
    CDependencyRunner& runner_;
};

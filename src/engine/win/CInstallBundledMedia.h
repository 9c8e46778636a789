#pragma once

#include "engine/IInstallDependency.h"

class CDependencyRunner;

// The bundled sample media and the start-up playlist. Not installed by this version of Install Wizard yet: Install says so in the log and
// lets the install go on.
class CInstallBundledMedia : public IInstallDependency
{
public:
    explicit CInstallBundledMedia(CDependencyRunner& runner) : runner_(runner) {}
    bool Install() override;
    bool ContinueOnFailure() const override { return true; }

private:
    CDependencyRunner& runner_;
};

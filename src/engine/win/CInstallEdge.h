#pragma once

#include "engine/IInstallDependency.h"

class CDependencyRunner;

// The WebView2 runtime. Not installed by this version of Install Wizard yet: Install says so in the log and
// lets the install go on.
class CInstallEdge : public IInstallDependency
{
public:
    explicit CInstallEdge(CDependencyRunner& runner) : runner_(runner) {}
    bool Install() override;
    bool ContinueOnFailure() const override { return true; }

private:
    CDependencyRunner& runner_;
};

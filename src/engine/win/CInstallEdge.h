#pragma once

#include "engine/IInstallDependency.h"

class CDependencyRunner;

// The WebView2 runtime: fetched and run silently when the version that EdgeUpdate records is
// missing or older than 119.0.2151.40 (never before Windows 7).
class CInstallEdge : public IInstallDependency
{
public:
    explicit CInstallEdge(CDependencyRunner& runner) : runner_(runner) {}
    bool Install() override;
    bool ContinueOnFailure() const override { return true; }

    // Where EdgeUpdate records the runtime's version ("pv"), in the 32-bit view.
    static constexpr const char16_t* kClientKey =
        u"SOFTWARE\\Microsoft\\EdgeUpdate\\Clients\\{F3017226-FE2A-4295-8BDF-00C3A9A7E4C5}";

private:
    CDependencyRunner& runner_;
};

#include "engine/win/CDependencyRunner.h"

#include "engine/win/CInstallBundledMedia.h"
#include "engine/win/CInstallDirectX.h"
#include "engine/win/CInstallEdge.h"
#include "foundation/HVLog.h"

#include <memory>
#include <vector>

CDependencyRunner::Outcome CDependencyRunner::Run(bool directXWanted)
{
    std::vector<std::unique_ptr<IInstallDependency>> dependencies;
    if (directXWanted)
        dependencies.push_back(std::make_unique<CInstallDirectX>(*this));
    dependencies.push_back(std::make_unique<CInstallEdge>(*this));
    dependencies.push_back(std::make_unique<CInstallBundledMedia>(*this));
    for (std::unique_ptr<IInstallDependency>& dependency : dependencies) {
        const bool installed = dependency->Install();
        if (cancelled_) {
            HVLog::Write(HVLog::kInfo, "CDependencyRunner::Run", u"Cancelled by the user");
            return Outcome::Cancelled;
        }
        if (!installed && !dependency->ContinueOnFailure()) {
            HVLog::Write(HVLog::kError, "CDependencyRunner::Run", u"A required dependency failed");
            return Outcome::Failed;
        }
        dependency.reset();
    }
    return Outcome::Continue;
}

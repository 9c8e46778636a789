#pragma once

// What an engine step of one install works from, owned in one place for a test: the run's
// choices, the install description, the product, the change log, the deferred operations and a
// page that keeps the progress it is shown. A test arranges the parts, then hands the context
// to the step.
//
//   e2e::InstallStepParts parts(setupFolder, u"C:\\Program Files\\Halvard\\Sonora\\");
//   parts.description.SetText(u"<HVIC version=\"1.0\"/>");
//   CProductRecords records(parts.context);

#include "RecordedProgress.h"

#include "changes/CInstallChangeLog.h"
#include "changes/win/CDeferredOperations.h"
#include "engine/win/CInstallContext.h"
#include "product/HVInstallDescription.h"
#include "product/InstallOptions.h"
#include "product/win/CProductIdentity.h"

namespace e2e
{
struct InstallStepParts
{
    InstallStepParts(const HVString& setupFolder, const HVString& installFolder, const HVString& launcherName = HVString())
        : product(setupFolder, launcherName),
          context{options, description, product, setupFolder, installFolder, changes, deferred, progress}
    {
    }
    InstallStepParts(const InstallStepParts&) = delete;
    InstallStepParts& operator=(const InstallStepParts&) = delete;

    InstallOptions options;
    HVInstallDescription description;
    CProductIdentity product;
    CInstallChangeLog changes;
    CDeferredOperations deferred;
    RecordedProgress progress;
    // Last: it names the parts above.
    CInstallContext context;
};
}

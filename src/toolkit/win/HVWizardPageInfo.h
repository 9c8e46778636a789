#pragma once

#include "toolkit/win/HVWizardPageWnd.h"

#include <memory>

// The wizard's record of one page: the page itself (owned) and whether its window exists.
struct HVWizardPageInfo
{
    std::unique_ptr<HVWizardPageWnd> page;
    bool created = false;
};

#pragma once

// A wizard page as the wizard's rules see it: its skip test and leave check answer as the test
// says, and it counts what was asked of it. Header-only, so the native core tests and the
// Windows test programs share it.

#include "product/IWizardStep.h"

#include <functional>

struct CountingWizardStep : IWizardStep
{
    std::function<bool()> skip = [] { return false; };
    std::function<bool()> leave = [] { return true; };
    int prepared = 0;
    int checked = 0;

    bool SkipTest() override { return skip(); }
    void Prepare() override { ++prepared; }
    bool LeaveCheck() override
    {
        ++checked;
        return leave();
    }
};

#pragma once

// What the wizard asks of an install page when it is about to move onto it. The install
// pages implement it; the page-sequence rules (CWizardRules) drive it, so those rules can be
// tried without windows.
class IWizardStep
{
public:
    // Is the page to be passed over now.
    virtual bool SkipTest() = 0;
    // Computes the page's defaults; called before the page is shown or checked.
    virtual void Prepare() = 0;
    // Validates the page's state and applies it; false keeps the page (after telling the
    // user why).
    virtual bool LeaveCheck() = 0;

protected:
    ~IWizardStep() = default;
};

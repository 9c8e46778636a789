#pragma once

#include "toolkit/win/HVLayoutWnd.h"

class HVWizardPopupWnd;

// One page of a wizard: a child window between the wizard's header band and its button row.
// The wizard makes it, shows it, asks it before moving on and destroys it with itself. The
// virtual operations below are the page's slots, in order.
class HVWizardPageWnd : public HVLayoutWnd
{
public:
    // 1. A timer set on the page window went off.
    virtual void OnTimer(UINT_PTR id);
    // 2. The page window is going away (the wizard is closing).
    virtual void OnDestroyPage();
    // 3.
    ~HVWizardPageWnd() override;
    // 4. Make the page's controls and texts. False: the page can't be shown.
    virtual bool CreateControls() = 0;
    // 5. The wizard is about to move onto the page: true shows it, false passes over it.
    virtual bool EnterTest();
    // 6. Next was pressed on the page: store the choice; false keeps the page.
    virtual bool NextPressed();
    // 7. The page's own action, run by the wizard after the page is shown.
    virtual void ExtraAction();
    // 8. Texts: the header's title and subtitle, and a description of the page's purpose.
    virtual HVString Title() const = 0;
    virtual HVString Subtitle() const = 0;
    virtual HVString Description() const;
    // 9. The Next button's text; empty for the wizard's own ("Next >" or "Finish").
    virtual HVString NextButtonText() const;
    // 10. Whether Back and Next may be pressed while the page is shown.
    virtual bool IsBackAllowed() const;
    virtual bool IsNextAllowed() const;

    // Called after the page became the current page and before it left.
    virtual void OnShowPage();
    virtual void OnHidePage();
    // Cancel was pressed on the page and the wizard is about to ask whether to end: whatever
    // the page does by itself stops, so the question is answered on a page that holds still.
    virtual void OnCancelAsked();
    // Cancel was pressed where the wizard itself would refuse it: a page with work that can
    // still be stopped (a download) takes the request and returns true; the default refuses.
    virtual bool TakeCancel();

    // Made hidden, as a child of the wizard.
    bool CreatePage(HVWizardPopupWnd& wizard);
    HVWizardPopupWnd* Wizard() const { return wizard_; }

    // The height the page's controls need at this width, in pixels.
    int NeededHeight(int width) const { return FlowHeight(width); }

protected:
    RECT FlowArea() const override;
    LRESULT OnMessage(UINT message, WPARAM wParam, LPARAM lParam) override;

private:
    HVWizardPopupWnd* wizard_ = nullptr;
};

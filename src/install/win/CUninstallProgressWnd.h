#pragma once

#include "foundation/HVString.h"
#include "toolkit/win/HVPopupWnd.h"
#include "toolkit/win/HVProgressBar.h"
#include "toolkit/win/HVStaticText.h"

#include <functional>

// The window shown while the removal runs: a heading, what is being removed and a progress
// bar. The work runs on the window's own thread from a timer once the window is up, and keeps
// it painted through Update; the window closes itself when the work returns. There is no
// Cancel: a removal stopped half way would leave neither the product nor its records whole.
class CUninstallProgressWnd : public HVPopupWnd
{
public:
    using Work = std::function<void(CUninstallProgressWnd& window)>;

    CUninstallProgressWnd(const HVString& heading, Work work);
    void Update(size_t done, size_t total, const HVString& what);

protected:
    bool OnCreatePopup() override;
    SIZE WantedClientSize() const override;
    RECT FlowArea() const override;
    void OnCancel() override {}
    LRESULT OnMessage(UINT message, WPARAM wParam, LPARAM lParam) override;

private:
    HVString heading_;
    Work work_;
    HVStaticText headingText_;
    HVStaticText status_;
    HVProgressBar bar_;
};

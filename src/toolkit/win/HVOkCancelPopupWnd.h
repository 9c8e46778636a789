#pragma once

#include "toolkit/win/HVButton.h"
#include "toolkit/win/HVPopupWnd.h"

// A small modal window: content made by the derived class, then OK and Cancel at the bottom
// right. It sizes itself to its content. Run returns IDOK or IDCANCEL.
class HVOkCancelPopupWnd : public HVPopupWnd
{
public:
    int Run(HWND owner, const HVString& title);

    // Texts of the two buttons, translated; set before Run.
    HVString okText = u"OK";
    HVString cancelText = u"Cancel";
    // Content width in dialog units.
    int contentWidthDlu = 200;

protected:
    // Make the content controls (they flow from the top).
    virtual bool CreateContent() = 0;
    // OK pressed: false keeps the window open.
    virtual bool OnOk() { return true; }

    bool OnCreatePopup() override;
    SIZE WantedClientSize() const override;
    RECT FlowArea() const override;

private:
    HVButton ok_;
    HVButton cancel_;
};

#include "install/win/CUninstallConfirmWnd.h"

CUninstallConfirmWnd::CUninstallConfirmWnd(const HVString& question, const HVString& keepText, bool keepSettings)
    : question_(question), keepText_(keepText), keepSettings_(keepSettings)
{
    contentWidthDlu = 230;
}

bool CUninstallConfirmWnd::CreateContent()
{
    if (!text_.Create(*this, question_, HVPlacement{}) || !keep_.Create(*this, keepText_, HVPlacement{.gap = 10}))
        return false;
    ::SetWindowLongPtrW(keep_.Hwnd(), GWLP_ID, kKeepSettingsId);
    keep_.SetChecked(keepSettings_);
    return true;
}

bool CUninstallConfirmWnd::OnOk()
{
    keepSettings_ = keep_.IsChecked();
    return true;
}

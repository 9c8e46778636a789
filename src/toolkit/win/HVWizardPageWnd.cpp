#include "toolkit/win/HVWizardPageWnd.h"

#include "toolkit/win/HVWizardPopupWnd.h"

HVWizardPageWnd::~HVWizardPageWnd() = default;

void HVWizardPageWnd::OnTimer(UINT_PTR)
{
}

void HVWizardPageWnd::OnDestroyPage()
{
}

bool HVWizardPageWnd::EnterTest()
{
    return true;
}

bool HVWizardPageWnd::NextPressed()
{
    return true;
}

void HVWizardPageWnd::ExtraAction()
{
}

HVString HVWizardPageWnd::Description() const
{
    return Subtitle();
}

HVString HVWizardPageWnd::NextButtonText() const
{
    return {};
}

bool HVWizardPageWnd::IsBackAllowed() const
{
    return true;
}

bool HVWizardPageWnd::IsNextAllowed() const
{
    return true;
}

void HVWizardPageWnd::OnShowPage()
{
}

void HVWizardPageWnd::OnHidePage()
{
}

void HVWizardPageWnd::OnCancelAsked()
{
}

bool HVWizardPageWnd::TakeCancel()
{
    return false;
}

bool HVWizardPageWnd::CreatePage(HVWizardPopupWnd& wizard)
{
    wizard_ = &wizard;
    const RECT rect = {0, 0, 100, 100};
    // A control parent, so that the dialog manager tabs into the page's controls.
    if (!CreateComposite(L"HVWizardPageWnd", WS_EX_CONTROLPARENT, WS_CHILD | WS_CLIPCHILDREN, Description(),
                         wizard.Hwnd(), rect))
        return false;
    HVLayoutWnd::ApplyDpi(wizard.Dpi());
    if (!CreateControls())
        return false;
    HVLayoutWnd::ApplyDpi(wizard.Dpi());
    return true;
}

RECT HVWizardPageWnd::FlowArea() const
{
    RECT client = {};
    ::GetClientRect(hwnd_, &client);
    return client;
}

LRESULT HVWizardPageWnd::OnMessage(UINT message, WPARAM wParam, LPARAM lParam)
{
    switch (message) {
    case WM_TIMER:
        OnTimer(static_cast<UINT_PTR>(wParam));
        return 0;
    case WM_DESTROY:
        OnDestroyPage();
        break;
    // Controls that act for the dialog (a multi-line edit on Enter or Esc) ask their parent,
    // the page; the wizard around it answers.
    case DM_GETDEFID:
        return ::SendMessageW(::GetParent(hwnd_), DM_GETDEFID, 0, 0);
    case WM_CLOSE:
        ::PostMessageW(::GetParent(hwnd_), WM_COMMAND, IDCANCEL, 0);
        return 0;
    case WM_COMMAND:
        if (lParam == 0 || !::IsChild(hwnd_, reinterpret_cast<HWND>(lParam)))
            return ::SendMessageW(::GetParent(hwnd_), WM_COMMAND, wParam, 0);
        break;
    default:
        break;
    }
    return HVLayoutWnd::OnMessage(message, wParam, lParam);
}

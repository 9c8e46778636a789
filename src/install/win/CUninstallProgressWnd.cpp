#include "install/win/CUninstallProgressWnd.h"

#include "foundation/win/HVApp.h"

namespace
{
constexpr UINT_PTR kStartTimer = 1;
}

CUninstallProgressWnd::CUninstallProgressWnd(const HVString& heading, Work work)
    : heading_(heading), work_(std::move(work))
{
}

bool CUninstallProgressWnd::OnCreatePopup()
{
    if (!headingText_.Create(*this, heading_, HVPlacement{}) ||
        !status_.Create(*this, HVString(), HVPlacement{.gap = 6, .cy = 16}) ||
        !bar_.Create(*this, HVPlacement{.gap = 4, .cy = 10}, 100))
        return false;
    headingText_.SetBold(true);
    ::SetTimer(hwnd_, kStartTimer, 50, nullptr);
    return true;
}

SIZE CUninstallProgressWnd::WantedClientSize() const
{
    const int width = Units().X(240);
    return {width + 2 * Units().X(7), FlowHeight(width) + 2 * Units().Y(7)};
}

RECT CUninstallProgressWnd::FlowArea() const
{
    RECT area = HVPopupWnd::FlowArea();
    area.top += Units().Y(7);
    return area;
}

void CUninstallProgressWnd::Update(size_t done, size_t total, const HVString& what)
{
    bar_.SetPosition(total ? static_cast<int>(done * 100 / total) : 100);
    ::SetWindowTextW(status_.Hwnd(), reinterpret_cast<const wchar_t*>(what.c_str()));
    HVApp::PumpWaitingMessages();
}

LRESULT CUninstallProgressWnd::OnMessage(UINT message, WPARAM wParam, LPARAM lParam)
{
    if (message == WM_TIMER && wParam == kStartTimer) {
        ::KillTimer(hwnd_, kStartTimer);
        if (work_)
            work_(*this);
        EndModal(IDOK);
        return 0;
    }
    return HVPopupWnd::OnMessage(message, wParam, lParam);
}

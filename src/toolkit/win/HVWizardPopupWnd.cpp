#include "toolkit/win/HVWizardPopupWnd.h"

#include "foundation/HVLog.h"
#include "toolkit/win/HVDpi.h"
#include "toolkit/win/HVTheme.h"

#include <algorithm>

HVWizardPopupWnd::HVWizardPopupWnd()
    : backText_(u"< &Back"), nextText_(u"&Next >"), finishText_(u"&Finish"), cancelText_(u"Cancel")
{
}

HVWizardPopupWnd::~HVWizardPopupWnd()
{
    // Pages are child windows: they go before the frame's own window.
    pages_.clear();
}

void HVWizardPopupWnd::AddPage(std::unique_ptr<HVWizardPageWnd> page)
{
    HVWizardPageInfo info;
    info.page = std::move(page);
    pages_.push_back(std::move(info));
}

void HVWizardPopupWnd::SetButtonTexts(const HVString& back, const HVString& next, const HVString& finish,
                                      const HVString& cancel)
{
    backText_ = back;
    nextText_ = next;
    finishText_ = finish;
    cancelText_ = cancel;
    if (hwnd_) {
        back_.SetText(backText_);
        cancel_.SetText(cancelText_);
        RefreshPage();
    }
}

int HVWizardPopupWnd::Run(HWND owner)
{
    if (!hwnd_ && !CreatePopup(owner, Title(), WS_OVERLAPPED | WS_CAPTION | WS_SYSMENU | WS_THICKFRAME | WS_MINIMIZEBOX))
        return 0;
    // The first page is entered like every other: its enter test decides.
    for (size_t i = 0; i < pages_.size(); ++i) {
        if (pages_[i].page->EnterTest()) {
            ShowPage(static_cast<int>(i));
            break;
        }
    }
    if (current_ < 0) {
        HVLog::Write(HVLog::kInfo, "HVWizardPopupWnd::Run", u"No page to show");
        return kFinished;
    }
    return DoModal(owner);
}

bool HVWizardPopupWnd::OnCreatePopup()
{
    HVPlacement none;
    if (!title_.Create(*this, u"", none, kTitleId) || !subtitle_.Create(*this, u"", none, kSubtitleId) ||
        !back_.Create(*this, backText_, none, false, kBackId) || !next_.Create(*this, nextText_, none, true, kNextId) ||
        !cancel_.Create(*this, cancelText_, none, false, kCancelId))
        return false;
    title_.SetBackground(u"HeaderBack");
    subtitle_.SetBackground(u"HeaderBack");
    title_.SetBold(true);
    back_.onChange = [this] { Back(); };
    next_.onChange = [this] { Next(); };
    cancel_.onChange = [this] { OnCancel(); };

    for (HVWizardPageInfo& info : pages_) {
        if (!info.page->CreatePage(*this)) {
            HVLog::Write(HVLog::kError, "HVWizardPopupWnd::OnCreatePopup", u"A page could not be made");
            return false;
        }
        info.created = true;
        // Pages come first in the Tab order, before the buttons.
        ::SetWindowPos(info.page->Hwnd(), HWND_TOP, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
    }
    return true;
}

void HVWizardPopupWnd::ApplyDpi(UINT dpi)
{
    HVPopupWnd::ApplyDpi(dpi);
    title_.SetBold(true);
    for (HVWizardPageInfo& info : pages_)
        if (info.created)
            info.page->ApplyDpi(dpi);
    Layout();
}

SIZE HVWizardPopupWnd::MinimumClientSize() const
{
    return {HVDpi::Scale(minimum96_.cx, Dpi()), HVDpi::Scale(minimum96_.cy, Dpi())};
}

SIZE HVWizardPopupWnd::WantedClientSize() const
{
    const HVDialogUnits& u = Units();
    const SIZE minimum = MinimumClientSize();
    const int width = std::max(u.X(317), static_cast<int>(minimum.cx));
    const int pageWidth = width - 2 * u.X(14);
    int pageHeight = 0;
    for (const HVWizardPageInfo& info : pages_)
        if (info.created)
            pageHeight = std::max(pageHeight, info.page->NeededHeight(pageWidth));
    const int height = HeaderHeight(width) + u.Y(7) + pageHeight + u.Y(7) + ButtonRowHeight();
    return {width, std::max({height, u.Y(193), static_cast<int>(minimum.cy)})};
}

int HVWizardPopupWnd::HeaderHeight(int width) const
{
    const HVDialogUnits& u = Units();
    const int textWidth = width - u.X(14) - u.X(7) - HVDpi::Scale(48, Dpi());
    HDC dc = ::GetDC(hwnd_);
    const int titleHeight = title_.AutoHeight(dc, textWidth, u);
    const int subtitleHeight = subtitle_.AutoHeight(dc, textWidth - u.X(7), u);
    ::ReleaseDC(hwnd_, dc);
    const int text = u.Y(6) + titleHeight + u.Y(3) + subtitleHeight + u.Y(6);
    return std::max(text, HVDpi::Scale(48, Dpi()) + 2 * u.Y(4));
}

int HVWizardPopupWnd::ButtonRowHeight() const
{
    const HVDialogUnits& u = Units();
    return u.Y(7) + u.Y(HVTheme::Current().Element(u"Frame::Button").heightDlu) + u.Y(7);
}

RECT HVWizardPopupWnd::PageRect() const
{
    RECT client = {};
    ::GetClientRect(hwnd_, &client);
    const HVDialogUnits& u = Units();
    const int header = HeaderHeight(client.right);
    return {u.X(14), header + u.Y(7), client.right - u.X(14), client.bottom - ButtonRowHeight() - u.Y(7)};
}

void HVWizardPopupWnd::Layout()
{
    if (!hwnd_ || !next_.IsCreated())
        return;
    RECT client = {};
    ::GetClientRect(hwnd_, &client);
    const HVDialogUnits& u = Units();
    HDC dc = ::GetDC(hwnd_);
    const int textLeft = u.X(14);
    const int textWidth = client.right - textLeft - u.X(7) - HVDpi::Scale(48, Dpi());
    const int titleHeight = title_.AutoHeight(dc, textWidth, u);
    const int subtitleHeight = subtitle_.AutoHeight(dc, textWidth - u.X(7), u);

    // Buttons at least 50 units wide, wider when a translation needs it.
    const HVThemeElement button = HVTheme::Current().Element(u"Frame::Button");
    auto buttonWidth = [&](const HVButton& b) {
        const HVString text = b.GetText();
        RECT r = {0, 0, 0, 0};
        HGDIOBJ old = ::SelectObject(dc, Font());
        ::DrawTextW(dc, text.w(), -1, &r, DT_CALCRECT | DT_SINGLELINE);
        ::SelectObject(dc, old);
        return std::max(u.X(button.widthDlu), static_cast<int>(r.right) + u.X(12));
    };
    const int backWidth = buttonWidth(back_);
    const int nextWidth = buttonWidth(next_);
    const int cancelWidth = buttonWidth(cancel_);
    ::ReleaseDC(hwnd_, dc);

    const int buttonHeight = u.Y(button.heightDlu);
    const int buttonTop = client.bottom - u.Y(7) - buttonHeight;
    const int cancelLeft = client.right - u.X(7) - cancelWidth;
    const int nextLeft = cancelLeft - u.X(7) - nextWidth;
    const int backLeft = nextLeft - u.X(2) - backWidth;

    HDWP defer = ::BeginDeferWindowPos(6);
    auto place = [&](HWND hwnd, int x, int y, int w, int h) {
        if (defer)
            defer = ::DeferWindowPos(defer, hwnd, nullptr, x, y, w, h, SWP_NOZORDER | SWP_NOACTIVATE);
    };
    place(title_.Hwnd(), textLeft, u.Y(6), textWidth, titleHeight);
    place(subtitle_.Hwnd(), textLeft + u.X(7), u.Y(6) + titleHeight + u.Y(3), textWidth - u.X(7), subtitleHeight);
    place(back_.Hwnd(), backLeft, buttonTop, backWidth, buttonHeight);
    place(next_.Hwnd(), nextLeft, buttonTop, nextWidth, buttonHeight);
    place(cancel_.Hwnd(), cancelLeft, buttonTop, cancelWidth, buttonHeight);
    if (defer)
        ::EndDeferWindowPos(defer);

    const RECT page = PageRect();
    for (HVWizardPageInfo& info : pages_)
        if (info.created)
            ::SetWindowPos(info.page->Hwnd(), nullptr, page.left, page.top, page.right - page.left,
                           page.bottom - page.top, SWP_NOZORDER | SWP_NOACTIVATE);
    ::InvalidateRect(hwnd_, nullptr, TRUE);
}

LRESULT HVWizardPopupWnd::OnMessage(UINT message, WPARAM wParam, LPARAM lParam)
{
    if (message == WM_PAINT) {
        PAINTSTRUCT paint;
        HDC dc = ::BeginPaint(hwnd_, &paint);
        RECT client = {};
        ::GetClientRect(hwnd_, &client);
        // Header band with the program's icon on its right, an etched line under it and one
        // over the button row.
        RECT header = client;
        header.bottom = HeaderHeight(client.right);
        ::FillRect(dc, &header, HVTheme::Current().Brush(u"HeaderBack"));
        const int icon = HVDpi::Scale(48, Dpi());
        HICON big = LargeIcon();
        if (big)
            ::DrawIconEx(dc, client.right - Units().X(7) - icon, (header.bottom - icon) / 2, big, icon, icon, 0,
                         nullptr, DI_NORMAL);
        RECT line = header;
        line.top = header.bottom - 2;
        ::DrawEdge(dc, &line, EDGE_ETCHED, BF_BOTTOM);
        line.top = client.bottom - ButtonRowHeight();
        line.bottom = line.top + 2;
        ::DrawEdge(dc, &line, EDGE_ETCHED, BF_TOP);
        ::EndPaint(hwnd_, &paint);
        return 0;
    }
    // Commands without a control: the dialog manager's default button and forwarded keys.
    if (message == WM_COMMAND && lParam == 0) {
        switch (LOWORD(wParam)) {
        case IDOK:
        case kNextId:
            if (next_.IsEnabled())
                Next();
            return 0;
        case kBackId:
            if (back_.IsEnabled())
                Back();
            return 0;
        default:
            break;
        }
    }
    return HVPopupWnd::OnMessage(message, wParam, lParam);
}

void HVWizardPopupWnd::ShowPage(int index)
{
    HVWizardPageWnd* previous = CurrentPage();
    if (previous && current_ != index) {
        previous->OnHidePage();
        previous->Show(false);
    }
    current_ = index;
    if (history_.empty() || history_.back() != index)
        history_.push_back(index);
    HVWizardPageWnd* page = CurrentPage();
    page->OnShowPage();
    RefreshPage();
    page->Show(true);
    if (HWND first = ::GetNextDlgTabItem(page->Hwnd(), nullptr, FALSE); first && ::IsChild(page->Hwnd(), first))
        ::SetFocus(first);
    else
        ::SetFocus(next_.Hwnd());
    HVLog::Write(HVLog::kInfo, "HVWizardPopupWnd::ShowPage", u"Page %d: %s", index, page->Title());
    page->ExtraAction();
}

void HVWizardPopupWnd::RefreshPage()
{
    HVWizardPageWnd* page = CurrentPage();
    if (!page)
        return;
    title_.SetText(page->Title());
    subtitle_.SetText(page->Subtitle());
    HVString next = page->NextButtonText();
    if (next.IsEmpty())
        next = current_ + 1 == static_cast<int>(pages_.size()) ? finishText_ : nextText_;
    next_.SetText(next);
    back_.Enable(history_.size() > 1 && page->IsBackAllowed());
    next_.Enable(page->IsNextAllowed());
    Layout();
}

void HVWizardPopupWnd::Next()
{
    HVWizardPageWnd* page = CurrentPage();
    if (!page || !IsRunning())
        return;
    if (busy_) {
        // Queued while a question is open (a page's timer, a tool): it follows the answer.
        nextPending_ = true;
        return;
    }
    busy_ = true;
    if (page->NextPressed()) {
        int target = -1;
        for (size_t i = static_cast<size_t>(current_) + 1; i < pages_.size() && target < 0; ++i)
            if (pages_[i].page->EnterTest())
                target = static_cast<int>(i);
        if (!IsRunning()) {
            // A page's enter test ended the wizard (an unattended run that can't go on).
        } else if (target >= 0) {
            ShowPage(target);
        } else {
            page->OnHidePage();
            HVLog::Write(HVLog::kInfo, "HVWizardPopupWnd::Next", u"Wizard finished");
            EndModal(kFinished);
        }
    }
    busy_ = false;
    RunPendingNext();
}

void HVWizardPopupWnd::RunPendingNext()
{
    if (nextPending_) {
        nextPending_ = false;
        if (IsRunning())
            PressNext();
    }
}

void HVWizardPopupWnd::Back()
{
    if (busy_ || history_.size() < 2 || !CurrentPage()->IsBackAllowed())
        return;
    history_.pop_back();
    ShowPage(history_.back());
}

void HVWizardPopupWnd::PressNext()
{
    if (hwnd_)
        ::PostMessageW(hwnd_, WM_COMMAND, MAKEWPARAM(kNextId, BN_CLICKED), reinterpret_cast<LPARAM>(next_.Hwnd()));
}

void HVWizardPopupWnd::PressBack()
{
    if (hwnd_)
        ::PostMessageW(hwnd_, WM_COMMAND, MAKEWPARAM(kBackId, BN_CLICKED), reinterpret_cast<LPARAM>(back_.Hwnd()));
}

void HVWizardPopupWnd::OnCancel()
{
    if (busy_ || !IsRunning())
        return;
    busy_ = true;
    OnCancelRequest();
    busy_ = false;
    RunPendingNext();
}

void HVWizardPopupWnd::OnCancelRequest()
{
    if (CurrentPage())
        CurrentPage()->OnHidePage();
    EndModal(kCancelled);
}

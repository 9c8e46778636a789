#pragma once

#include "toolkit/win/HVButton.h"
#include "toolkit/win/HVPopupWnd.h"
#include "toolkit/win/HVStaticText.h"
#include "toolkit/win/HVWizardPageInfo.h"

#include <memory>
#include <vector>

// A wizard: a header band with the current page's title and subtitle, the page below it and
// a row of Back, Next (Finish on the last page) and Cancel at the bottom right. Pages are
// kept in the order they were added; moving forward asks each page's enter test, so a page
// may be passed over; Back returns to the page shown before. The buttons and header texts
// carry fixed ids so that people's tools and our tests find them (kBackId, kNextId, IDCANCEL,
// kTitleId, kSubtitleId); the window's class is "HVPopupWnd", its pages' "HVWizardPageWnd".
class HVWizardPopupWnd : public HVPopupWnd
{
public:
    static constexpr int kBackId = 0x3023;
    static constexpr int kNextId = 0x3024;
    static constexpr int kCancelId = IDCANCEL;
    // The header's title and subtitle texts.
    static constexpr int kTitleId = 0x3030;
    static constexpr int kSubtitleId = 0x3031;
    // DoModal's results.
    static constexpr int kFinished = IDOK;
    static constexpr int kCancelled = IDCANCEL;

    HVWizardPopupWnd();
    ~HVWizardPopupWnd() override;

    void AddPage(std::unique_ptr<HVWizardPageWnd> page);
    size_t PageCount() const { return pages_.size(); }
    HVWizardPageWnd* Page(size_t index) const { return pages_[index].page.get(); }
    // Position of the page shown now in the page list; -1 before the first is shown.
    int CurrentIndex() const { return current_; }
    HVWizardPageWnd* CurrentPage() const { return current_ >= 0 ? Page(static_cast<size_t>(current_)) : nullptr; }

    // Makes the window and its pages and runs until the wizard finishes or is cancelled.
    int Run(HWND owner);

    // As if the user had pressed the button (a page's timer moving the wizard on). Queued, so
    // that the caller's own message handling ends first.
    void PressNext();
    void PressBack();
    // True while the wizard moves between pages or asks about Cancel. A Next pressed then
    // (by PressNext or a queued click) runs once the question is answered; Back is ignored.
    bool IsBusy() const { return busy_; }
    // The wizard ends with this result without asking (used by Cancel handling).
    void Close(int result) { EndModal(result); }
    // Brings the header and buttons up to date with the current page's texts.
    void RefreshPage();

    // The button texts, already translated; "&" marks the accelerator.
    void SetButtonTexts(const HVString& back, const HVString& next, const HVString& finish, const HVString& cancel);
    // Client size at 96 DPI below which the window can't be made.
    void SetMinimumClientSize(SIZE size) { minimum96_ = size; }

protected:
    // Cancel button, Esc or the close box. Default: the wizard ends as cancelled.
    virtual void OnCancelRequest();

    bool OnCreatePopup() override;
    SIZE WantedClientSize() const override;
    SIZE MinimumClientSize() const override;
    int DefaultButtonId() const override { return kNextId; }
    void OnCancel() override;
    void ApplyDpi(UINT dpi) override;
    void Layout() override;
    LRESULT OnMessage(UINT message, WPARAM wParam, LPARAM lParam) override;

private:
    void Next();
    void Back();
    void ShowPage(int index);
    void RunPendingNext();
    int HeaderHeight(int width) const;
    int ButtonRowHeight() const;
    RECT PageRect() const;

    std::vector<HVWizardPageInfo> pages_;
    std::vector<int> history_;
    int current_ = -1;
    bool busy_ = false;
    bool nextPending_ = false;
    SIZE minimum96_ = {500, 300};
    HVString backText_, nextText_, finishText_, cancelText_;
    HVStaticText title_;
    HVStaticText subtitle_;
    HVButton back_;
    HVButton next_;
    HVButton cancel_;
};

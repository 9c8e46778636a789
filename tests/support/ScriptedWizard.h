#pragma once

// A wizard of test pages titled A, B, C, ..., run by a script: each step runs on a timer tick
// inside the wizard's own message loop, as a user's actions arrive between messages. It counts
// the cancel requests it gets, and lets them through only while `allowCancel` holds.
// Header-only; for the Windows test programs.
//
//   ScriptedWizard w(3);
//   std::wstring title;
//   const int result = w.RunScript({w.Press(HVWizardPopupWnd::kNextId), [&] { title = w.HeaderTitle(); },
//                                   ScriptedWizard::Key(WM_KEYDOWN, VK_ESCAPE)});

#include "OwnDialog.h"
#include "WizardTestPage.h"

#include <functional>
#include <memory>
#include <string>
#include <vector>

class ScriptedWizard : public HVWizardPopupWnd
{
public:
    using Step = std::function<void()>;

    explicit ScriptedWizard(int count)
    {
        for (int i = 0; i < count; ++i) {
            auto page = std::make_unique<WizardTestPage>(std::wstring(1, static_cast<wchar_t>(L'A' + i)));
            pages.push_back(page.get());
            AddPage(std::move(page));
        }
        SetTitle(u"Install Wizard");
    }

    std::vector<WizardTestPage*> pages;
    int cancelRequests = 0;
    bool allowCancel = true;

    // Runs the wizard until it closes, playing the steps meanwhile; its result.
    int RunScript(std::vector<Step> steps)
    {
        steps_ = &steps;
        next_ = 0;
        const UINT_PTR timer = ::SetTimer(nullptr, 0, 20, RunStep);
        const int result = Run(nullptr);
        ::KillTimer(nullptr, timer);
        steps_ = nullptr;
        return result;
    }

    std::wstring HeaderTitle() const { return WindowText(::GetDlgItem(Hwnd(), kTitleId)); }
    // A user's steps: a button pressed; a key as the dialog manager sees it, posted to the
    // control that has the focus.
    Step Press(int id) const { return [this, id] { ::SendMessageW(::GetDlgItem(Hwnd(), id), BM_CLICK, 0, 0); }; }
    static Step Key(UINT message, WPARAM key) { return [=] { ::PostMessageW(::GetFocus(), message, key, 0); }; }

protected:
    void OnCancelRequest() override
    {
        ++cancelRequests;
        if (allowCancel)
            HVWizardPopupWnd::OnCancelRequest();
    }

private:
    static void CALLBACK RunStep(HWND, UINT, UINT_PTR, DWORD)
    {
        if (steps_ && next_ < steps_->size())
            (*steps_)[next_++]();
    }

    inline static std::vector<Step>* steps_ = nullptr;
    inline static size_t next_ = 0;
};

#pragma once

#include "engine/CInstallSequence.h"
#include "engine/IComponentInstaller.h"
#include "engine/IInstallPage.h"
#include "engine/IShellIntegration.h"
#include "engine/win/CInstallContext.h"
#include "engine/win/CInstallSteps.h"
#include "install/win/CWizardPropertyPage.h"
#include "toolkit/win/HVImageCtrl.h"
#include "toolkit/win/HVProgressBar.h"
#include "toolkit/win/HVStaticText.h"

#include <memory>
#include <optional>

// The page on which the install happens. The engine's steps do the work (the dependencies, the
// files, their registration, the plug-ins) and the install sequence paces them from this page's
// timers, then waits for the setup's pictures to have been shown, after which the page moves
// the wizard on by itself. The page shows what the steps report, answers their questions with
// boxes and ends the wizard when a step says the install can't go on. Everything runs on the
// wizard's thread; every status and progress update drains the message queue, so the window
// stays painted and answers during long copies.
class CCopyAndInstallPpg : public CWizardPropertyPage, private IInstallSequenceHost, public IInstallPage
{
public:
    explicit CCopyAndInstallPpg(CInstallWizard& wizard);
    ~CCopyAndInstallPpg() override;

    bool CreateControls() override;
    HVString Title() const override { return title_; }
    HVString Subtitle() const override { return subtitle_; }
    bool IsNextAllowed() const override { return nextAllowed_; }
    // The second button: neither Back nor Cancel once the install is under way.
    bool IsBackAllowed() const override { return secondButton_; }
    void ExtraAction() override;
    void OnTimer(UINT_PTR id) override;
    // Cancel stops a download of the dependency step; elsewhere the install can't be cancelled.
    bool TakeCancel() override;

    void SetStatusText(const HVString& text) override;
    void SetProgressRange(int32_t minimum, int32_t maximum) override;
    void SetProgressPosition(int32_t position) override;
    void DrainMessages() override;
    void ShowStage(const char16_t* title, const char16_t* subtitle, bool refuseSecondButton) override;
    int32_t Ask(const HVString& text, const HVString& title, uint32_t style) override;

private:
    void SetTimer(int32_t id, int32_t elapseMs) override;
    void KillTimer(int32_t id) override;
    void ShowImage(int32_t number) override;
    bool RunDependencies() override;
    bool RunCopy() override;
    bool RunPlugins() override;
    bool SkipInstall() override;
    void BeginFinalizing(int32_t ticks) override;
    void WaitTick() override;
    void Finish() override;

    // What a step's outcome means for the wizard: true goes on.
    bool GoOn(CInstallSteps::Outcome outcome);
    void Fail();

    HVStaticText status_;
    HVProgressBar bar_;
    HVImageCtrl image_;
    HVString title_;
    HVString subtitle_;
    int32_t minimum_ = 0;
    int32_t maximum_ = 100;
    int32_t position_ = 0;
    bool nextAllowed_ = false;
    bool secondButton_ = true;
    bool activated_ = false;

    std::optional<CInstallSequence> sequence_;
    std::optional<CInstallContext> context_;
    std::unique_ptr<IShellIntegration> shell_;
    std::unique_ptr<IComponentInstaller> components_;
    std::optional<CInstallSteps> steps_;
};

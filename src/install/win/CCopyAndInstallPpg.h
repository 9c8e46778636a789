#pragma once

#include "engine/CInstallSequence.h"
#include "engine/IComponentInstaller.h"
#include "engine/IInstallProgress.h"
#include "engine/IProductRecords.h"
#include "engine/IShellIntegration.h"
#include "engine/win/CFileInstaller.h"
#include "engine/win/CInstallContext.h"
#include "install/win/CWizardPropertyPage.h"
#include "toolkit/win/HVImageCtrl.h"
#include "toolkit/win/HVProgressBar.h"
#include "toolkit/win/HVStaticText.h"

#include <memory>
#include <optional>

class CDependencyRunner;

// The page on which the install happens: the dependencies, the files, their registration, the
// plug-ins, then a short wait so that the setup's pictures have been shown, after which the
// page moves the wizard on by itself. Everything runs on the wizard's thread, step by step from
// timers; every status and progress update drains the message queue, so the window stays
// painted and answers during long copies.
class CCopyAndInstallPpg : public CWizardPropertyPage, private IInstallSequenceHost, public IInstallProgress
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

private:
    void SetTimer(int32_t id, int32_t elapseMs) override;
    void KillTimer(int32_t id) override;
    void ShowImage(int32_t number) override;
    bool RunDependencies() override;
    bool RunCopy() override;
    void RunPlugins() override;
    bool SkipInstall() override;
    void BeginFinalizing(int32_t ticks) override;
    void WaitTick() override;
    void Finish() override;

    void SetHeader(const char16_t* title, const char16_t* subtitle, bool refuseSecondButton);
    bool SetupFolderIsComplete();
    bool CopyLauncherFiles();
    void CopySystemFiles();
    void StopServerEdition();
    void TidyProgramFolder();
    void RegisterFiles();
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
    std::optional<CFileInstaller> files_;
    std::unique_ptr<IProductRecords> records_;
    std::unique_ptr<IShellIntegration> shell_;
    std::unique_ptr<IComponentInstaller> components_;
    // While the dependency step runs.
    CDependencyRunner* dependencies_ = nullptr;
};

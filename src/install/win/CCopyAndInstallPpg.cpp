#include "install/win/CCopyAndInstallPpg.h"

#include "foundation/HVLog.h"
#include "foundation/HVTranslator.h"
#include "foundation/win/HVApp.h"
#include "foundation/win/HVFileSystem.h"
#include "install/win/CInstallWizard.h"
#include "integration/win/CComponentInstaller.h"
#include "integration/win/CShellIntegration.h"
#include "toolkit/win/HVMessageBox.h"

CCopyAndInstallPpg::CCopyAndInstallPpg(CInstallWizard& wizard)
    : CWizardPropertyPage(wizard), title_(T(CInstallSteps::kDependenciesTitle)), subtitle_(T(CInstallSteps::kDependenciesSubtitle))
{
}

CCopyAndInstallPpg::~CCopyAndInstallPpg() = default;

bool CCopyAndInstallPpg::CreateControls()
{
    HVPlacement status;
    HVPlacement bar;
    bar.gap = 4;
    bar.cy = 10;
    HVPlacement image;
    image.gap = 8;
    image.cy = HVPlacement::kFillHeight;
    if (!status_.Create(*this, u"", status) || !bar_.Create(*this, bar, maximum_) || !image_.Create(*this, image))
        return false;
    image_.Show(false);
    return true;
}

void CCopyAndInstallPpg::ExtraAction()
{
    if (activated_)
        return;
    activated_ = true;
    CInstallWizard& wizard = InstallWizard();
    InstallOptions& options = Options();
    const HVString installFolder = HVFileSystem::NormalizeFolderPath(options.destinationFolder);
    wizard.Deferred().SetInstallFolder(installFolder);
    wizard.InstallRun().BeginInstall();
    context_.emplace(CInstallContext{options, wizard.Description(), Product(), wizard.SetupFolder(), installFolder,
                                     wizard.Changes(), wizard.Deferred(), *this, wizard.Hwnd()});
    shell_ = std::make_unique<CShellIntegration>(*context_);
    components_ = std::make_unique<CComponentInstaller>(*context_);
    steps_.emplace(*context_, wizard.InstallRun(), *this, *shell_, *components_);

    SetStatusText(u"Preparing...");
    Layout();
    image_.Show(true);
    const HVInstallDescription& description = wizard.Description();
    sequence_.emplace(static_cast<IInstallSequenceHost&>(*this), description.GetInteger(u"/*/Installer/PromoCount", 0),
                      description.GetInteger(u"/*/Installer/PromoMinimumMilliseconds", 0));
    HVLog::Write(HVLog::kInfo, "CCopyAndInstallPpg::ExtraAction", u"Installing into %s (%d pictures over %d ms)",
                 installFolder, sequence_->PromoCount(), sequence_->PromoMinimumMs());
    sequence_->Start();
}

void CCopyAndInstallPpg::OnTimer(UINT_PTR id)
{
    if (!sequence_ || !sequence_->OnTimer(static_cast<int32_t>(id)))
        CWizardPropertyPage::OnTimer(id);
}

// ---- progress

void CCopyAndInstallPpg::SetStatusText(const HVString& text)
{
    status_.SetText(HVTranslator::Translate(text));
    DrainMessages();
}

void CCopyAndInstallPpg::SetProgressRange(int32_t minimum, int32_t maximum)
{
    minimum_ = minimum;
    maximum_ = maximum;
    position_ = position_ < minimum_ ? minimum_ : position_ > maximum_ ? maximum_ : position_;
    bar_.SetRange(minimum_, maximum_);
    bar_.SetPosition(position_);
}

void CCopyAndInstallPpg::SetProgressPosition(int32_t position)
{
    if (position != position_) {
        position_ = position;
        bar_.SetPosition(position_);
    }
    DrainMessages();
}

void CCopyAndInstallPpg::DrainMessages()
{
    HVApp::PumpWaitingMessages();
}

// ---- the sequence's host

void CCopyAndInstallPpg::SetTimer(int32_t id, int32_t elapseMs)
{
    ::SetTimer(Hwnd(), static_cast<UINT_PTR>(id), static_cast<UINT>(elapseMs), nullptr);
}

void CCopyAndInstallPpg::KillTimer(int32_t id)
{
    ::KillTimer(Hwnd(), static_cast<UINT_PTR>(id));
}

void CCopyAndInstallPpg::ShowImage(int32_t number)
{
    const HVString language = HVTranslator::DisplayLanguage();
    for (const HVString& candidate : CInstallSequence::PromoCandidates(InstallWizard().SetupFolder(), number, language)) {
        if (HVFileSystem::Exists(candidate, false)) {
            image_.LoadFile(candidate);
            return;
        }
    }
}

void CCopyAndInstallPpg::ShowStage(const char16_t* title, const char16_t* subtitle, bool refuseSecondButton)
{
    title_ = T(title);
    subtitle_ = T(subtitle);
    if (refuseSecondButton)
        secondButton_ = false;
    InstallWizard().RefreshPage();
}

int32_t CCopyAndInstallPpg::Ask(const HVString& text, const HVString& title, uint32_t style)
{
    return HVMessageBox::Show(InstallWizard().Hwnd(), text, title, style);
}

bool CCopyAndInstallPpg::GoOn(CInstallSteps::Outcome outcome)
{
    switch (outcome) {
    case CInstallSteps::Outcome::Continue: return true;
    case CInstallSteps::Outcome::Failed: Fail(); return false;
    case CInstallSteps::Outcome::Cancelled: InstallWizard().Close(CInstallWizard::kCancelled); return false;
    }
    return false;
}

bool CCopyAndInstallPpg::RunDependencies() { return GoOn(steps_->RunDependencies()); }

bool CCopyAndInstallPpg::TakeCancel() { return steps_ && steps_->CancelDownload(); }

bool CCopyAndInstallPpg::SkipInstall() { return steps_->SkipInstall(); }

bool CCopyAndInstallPpg::RunCopy() { return GoOn(steps_->RunCopy()); }

bool CCopyAndInstallPpg::RunPlugins() { return GoOn(steps_->RunPlugins()); }

void CCopyAndInstallPpg::BeginFinalizing(int32_t ticks)
{
    SetProgressRange(0, ticks);
    SetProgressPosition(0);
    SetStatusText(u"Finalizing installation...");
}

void CCopyAndInstallPpg::WaitTick()
{
    SetProgressPosition(position_ + 1);
}

void CCopyAndInstallPpg::Finish()
{
    SetProgressPosition(maximum_);
    nextAllowed_ = true;
    InstallWizard().RefreshPage();
    HVLog::Write(HVLog::kInfo, "CCopyAndInstallPpg::Finish", u"Installed (restart needed %d, %d deferred, %d changes)",
                 InstallWizard().Deferred().RestartNeeded(),
                 static_cast<int32_t>(InstallWizard().Deferred().PendingFiles().size()),
                 static_cast<int32_t>(InstallWizard().Changes().Changes().size()));
    InstallWizard().PressNext();
}

void CCopyAndInstallPpg::Fail()
{
    HVLog::Write(HVLog::kError, "CCopyAndInstallPpg::Fail", u"The install can't go on");
    InstallWizard().Close(CInstallWizard::kFailed);
}

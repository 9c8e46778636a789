#include "install/win/CFinishPpg.h"

#include "foundation/HVLog.h"
#include "install/win/CInstallWizard.h"
#include "install/win/CSystemShutdown.h"
#include "product/CWizardRules.h"
#include "toolkit/win/HVMessageBox.h"

bool CFinishPpg::CreateControls()
{
    return description_.Create(*this, T(u"Installation successfully completed."), HVPlacement());
}

HVString CFinishPpg::Title() const { return T(u"Install Complete"); }

HVString CFinishPpg::Subtitle() const { return T(u"Thank you for installing ") + Product().GetDisplayName(); }

bool CFinishPpg::EnterTest()
{
    Prepare();
    return CWizardPropertyPage::EnterTest();
}

bool CFinishPpg::SkipTest()
{
    return CWizardRules::SkipFinish(Options(), choice_);
}

void CFinishPpg::Prepare()
{
    CDeferredOperations& deferred = InstallWizard().Deferred();
    // Once: the enter test and the showing of the page both prepare it.
    if (!journalWritten_ && deferred.HasPending())
        deferred.WriteJournal(Product().GetRegistryRoot());
    journalWritten_ = true;
    restartNeeded_ = CFinishRules::RestartNeeded(deferred.RestartNeeded(), deferred.PendingFiles(),
                                                 deferred.PendingRegistrations());
    choice_ = CFinishRules::PrepareChoice(restartNeeded_, Options().noRun, Options().answers.runAtEnd.value_or(true));
    InstallWizard().SetRestartNeeded(restartNeeded_);
    HVLog::Write(HVLog::kInfo, "CFinishPpg::Prepare", u"Restart needed %d, finish choice %d", restartNeeded_, choice_);
}

void CFinishPpg::OnShowPage()
{
    CWizardPropertyPage::OnShowPage();
    description_.SetText(restartNeeded_ ? T(u"Install Wizard could not copy all files.  Windows must be restarted to complete setup.")
                                        : T(u"Installation successfully completed."));
    boxKind_ = CFinishRules::BoxShown(restartNeeded_, Options().noRun);
    box_.reset();
    if (boxKind_ != CFinishRules::Box::None) {
        HVPlacement place;
        place.gap = 10;
        box_.emplace();
        box_->Create(*this, boxKind_ == CFinishRules::Box::Restart ? T(u"Restart Windows now") : T(u"Run installed program now"),
                     place);
        box_->SetChecked(choice_ == (boxKind_ == CFinishRules::Box::Restart ? CFinishRules::kRestart : CFinishRules::kRun));
    }
    Layout();
}

bool CFinishPpg::NextPressed()
{
    choice_ = CFinishRules::ChoiceOnFinish(boxKind_, box_ && box_->IsChecked());
    if (boxKind_ == CFinishRules::Box::Run)
        Options().answers.runAtEnd = choice_ == CFinishRules::kRun;
    return LeaveCheck();
}

bool CFinishPpg::LeaveCheck()
{
    CInstallWizard& wizard = InstallWizard();
    switch (CFinishRules::LeaveAction(Options().silent, choice_)) {
    case CFinishRules::Leave::Now: return true;
    case CFinishRules::Leave::HandOver:
        CDeferredOperations::WriteFinishFile(wizard.SetupFolder(), wizard.Deferred().InstallFolder(), Product().GetLauncherName());
        return true;
    case CFinishRules::Leave::ConfirmRestart: break;
    }
    constexpr int kRestartId = 100;
    const HVString text = T(u"Please save your work and close any open programs.\r\n\r\n") +
                          T(u"Then click 'Restart' to restart your computer and finish installation.");
    const int answer = HVMessageBox::ShowButtons(wizard.Hwnd(), text, T(u"Confirm Restart"),
                                                 {{kRestartId, T(u"Restart")}, {IDCANCEL, T(u"Cancel")}}, kRestartId,
                                                 IDCANCEL, MB_ICONINFORMATION);
    if (answer != kRestartId) {
        HVLog::Write(HVLog::kInfo, "CFinishPpg::LeaveCheck", u"Restart put off: the page stays");
        return false;
    }
    if (CSystemShutdown::Shutdown(CSystemShutdown::Mode::Restart))
        wizard.SetRestarted();
    return true;
}

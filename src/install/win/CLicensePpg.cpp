#include "install/win/CLicensePpg.h"

#include "changes/win/CRegistryWriter.h"
#include "foundation/HVLog.h"
#include "foundation/HVTextFileReader.h"
#include "foundation/win/HVRegKey.h"
#include "install/win/CInstallWizard.h"
#include "product/CWizardRules.h"

#include <cstdlib>

namespace
{
// The countdown's counter lives for the process, as the wizard does.
int g_countdown = CWizardRules::kCountdownStart;
}   // namespace

UINT CLicensePpg::TimerDivisor()
{
    static const UINT divisor = [] {
        const wchar_t* text = ::_wgetenv(L"IW_TEST_ONLY_TIMER_DIVISOR");
        const long value = text ? std::wcstol(text, nullptr, 10) : 1;
        return value >= 2 && value <= 1000 ? static_cast<UINT>(value) : 1u;
    }();
    return divisor;
}

HVString CLicensePpg::ReadLicense(const HVString& setupFolder)
{
    const HVString path = setupFolder + u"license.txt";
    HVString text;
    if (!HVTextFileReader::Read(path, text)) {
        HVLog::Write(HVLog::kWarning, "CLicensePpg::ReadLicense", u"No agreement at %s", path);
        return T(u"The license agreement could not be shown: the file \"license.txt\" is missing from the setup folder.");
    }
    // The edit control breaks lines only at "\r\n".
    text.Replace(u"\r\n", u"\n");
    text.Replace(u"\r", u"\n");
    text.Replace(u"\n", u"\r\n");
    return text;
}

bool CLicensePpg::CreateControls()
{
    HVPlacement heading;
    HVPlacement box;
    box.gap = 4;
    box.cy = HVPlacement::kFillHeight;
    return heading_.Create(*this, T(u"Please read the following license agreement carefully."), heading) &&
           license_.Create(*this, ReadLicense(InstallWizard().SetupFolder()), box);
}

HVString CLicensePpg::Title() const
{
    return T(u"Welcome");
}

HVString CLicensePpg::Subtitle() const
{
    return T(u"Welcome to the Install Wizard.");
}

HVString CLicensePpg::NextButtonText() const
{
    return HVButton::WithAccelerator(T(u"Accept"), u'A');
}

void CLicensePpg::OnShowPage()
{
    CWizardPropertyPage::OnShowPage();
    if (!started_) {
        started_ = true;
        ::SetTimer(Hwnd(), kStartTimer, 10, nullptr);
    }
}

void CLicensePpg::OnHidePage()
{
    EndCountdown();
}

void CLicensePpg::OnCancelAsked()
{
    // Otherwise the last timer could go off under the question and start an install that
    // the user, answering "No", never asked for.
    EndCountdown();
}

void CLicensePpg::EndCountdown()
{
    // Left before the start timer went off (a quick Accept): its reading and its clean-up
    // still happen, without moving on or counting down.
    const bool startPending = started_ && !startDone_;
    StopTimers();
    if (startPending)
        Start(true);
}

void CLicensePpg::StopTimers()
{
    ::KillTimer(Hwnd(), kStartTimer);
    ::KillTimer(Hwnd(), kAutoInstallTimer);
    ::KillTimer(Hwnd(), kCountdownTimer);
    if (countingDown_) {
        countingDown_ = false;
        InstallWizard().SetText(InstallWizard().WizardTitle());
    }
}

void CLicensePpg::Start(bool leaving)
{
    ::KillTimer(Hwnd(), kStartTimer);
    startDone_ = true;
    CInstallWizard& wizard = InstallWizard();
    // Later pages need to know whether there is an earlier installation.
    wizard.EarlierInstallationFolder();
    // Read where it is, made by nobody: a run cancelled here leaves the machine as it was.
    CRegistryWriter installer(wizard.Changes(), Product().GetRegistryHive(), Product().GetInstallerKey());
    installer.OpenExisting();
    DWORD runAutoInstall = 0;
    if (installer.IsOpen())
        installer.Key().QueryDWORD(u"Run Auto Install", runAutoInstall);

    switch (CWizardRules::OnWelcomeStart(Options(), wizard.AutoInstallOffered(), runAutoInstall)) {
    case CWizardRules::WelcomeStart::MoveOn:
        if (!leaving)
            wizard.PressNext();
        break;
    case CWizardRules::WelcomeStart::ForgetAutoInstall:
        if (installer.IsOpen() && installer.Key().HasValue(u"Run Auto Install"))
            installer.DeleteValue(u"Run Auto Install");
        break;
    case CWizardRules::WelcomeStart::StartCountdown:
        if (leaving)
            break;
        HVLog::Write(HVLog::kInfo, "CLicensePpg::Start", u"Auto install in %d seconds", g_countdown);
        countingDown_ = true;
        ::SetTimer(Hwnd(), kAutoInstallTimer, kAutoInstallMs / TimerDivisor(), nullptr);
        ::SetTimer(Hwnd(), kCountdownTimer, kCountdownMs / TimerDivisor(), nullptr);
        break;
    case CWizardRules::WelcomeStart::Wait:
        break;
    }
}

void CLicensePpg::OnTimer(UINT_PTR id)
{
    switch (id) {
    case kStartTimer:
        Start(false);
        break;
    case kCountdownTimer:
        InstallWizard().SetText(CWizardRules::CountdownTitle(Product().GetDisplayName(), g_countdown));
        --g_countdown;
        break;
    case kAutoInstallTimer:
        HVLog::Write(HVLog::kInfo, "CLicensePpg::OnTimer", u"Auto install starts (counter at %d)", g_countdown);
        StopTimers();
        Options().express = true;
        Options().autoInstall = true;
        InstallWizard().PressNext();
        break;
    default:
        break;
    }
}

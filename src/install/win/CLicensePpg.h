#pragma once

#include "install/win/CWizardPropertyPage.h"
#include "toolkit/win/HVStaticText.h"
#include "toolkit/win/HVTextBox.h"

// The welcome page: the agreement of "license.txt" from the setup folder, accepted with the
// Next button ("Accept"). When the product offers it, and the user asked for it on the
// setup-type page of an earlier run ("Run Auto Install"), the page counts down from 30 in the
// window title and then starts an Express install by itself.
class CLicensePpg : public CWizardPropertyPage
{
public:
    // Timers of the page: 1 starts the page, 2 ends the countdown, 3 ticks it.
    static constexpr UINT_PTR kStartTimer = 1;
    static constexpr UINT_PTR kAutoInstallTimer = 2;
    static constexpr UINT_PTR kCountdownTimer = 3;
    static constexpr UINT kAutoInstallMs = 30000;
    static constexpr UINT kCountdownMs = 1000;

    explicit CLicensePpg(CInstallWizard& wizard) : CWizardPropertyPage(wizard) {}

    void OnTimer(UINT_PTR id) override;
    bool CreateControls() override;
    HVString Title() const override;
    HVString Subtitle() const override;
    HVString NextButtonText() const override;
    void OnShowPage() override;
    void OnHidePage() override;
    void OnCancelAsked() override;

    // Test-only: the environment variable IW_TEST_ONLY_TIMER_DIVISOR (a whole number from 2
    // to 1000), read once, divides the countdown's two intervals so that end-to-end tests
    // need not wait 30 seconds. The counter still starts at 30 and the install still starts
    // on timer 2, whatever the counter shows. Unset (as on every user's machine) it is 1.
    static UINT TimerDivisor();

    // The agreement's text, or a plain note when "license.txt" is missing or unreadable.
    static HVString ReadLicense(const HVString& setupFolder);

private:
    // Timer 1's work; `leaving`: the page is being left, so neither move on nor count down.
    void Start(bool leaving);
    void StopTimers();
    // Leaving the page or asking about Cancel: the countdown ends for good, and a start
    // still pending does its reading without moving on.
    void EndCountdown();

    HVStaticText heading_;
    HVTextBox license_;
    bool started_ = false;
    bool startDone_ = false;
    bool countingDown_ = false;
};

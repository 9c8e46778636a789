#pragma once

#include "foundation/HVString.h"
#include "product/IWizardStep.h"
#include "product/InstallOptions.h"

// The wizard's decisions that need no window: which page is passed over, what the enter test
// does with a page that is, what the setup-type choices store, what Cancel does on a page and
// what the welcome page does when it starts. The pages (Windows) ask these; tests drive them
// from tables.
class CWizardRules
{
public:
    // Positions of the pages in the wizard's page list (1-based, as users count them).
    static constexpr int kWelcomePosition = 1;
    static constexpr int kSetupTypePosition = 2;
    static constexpr int kCustomSetupTypePosition = 3;
    static constexpr int kDestinationPosition = 4;
    static constexpr int kCopyPosition = 5;

    // The enter test: true shows the page. A page whose skip test says no is shown. For a
    // skipped page the leave check runs in the user's place, on the page's defaults: when it
    // passes the page is passed over; when it fails the install is no longer Express and the
    // page is shown after all, so the user can put things right.
    static bool EnterTest(IWizardStep& step, InstallOptions& options);

    // Skip tests. The setup-type page takes Express by itself on an upgrade, so it writes
    // `express` then.
    static bool SkipSetupType(InstallOptions& options);
    static bool SkipCustomSetupType(const InstallOptions& options, bool portableInstallFeature);
    static bool SkipDestination(const InstallOptions& options);
    static bool SkipFileAssociations(const InstallOptions& options);
    // The file-association page is shown and asks: not skipped, and neither "/NoAssociations"
    // (nothing is to change) nor "/RegFileAssociations" (the kept choice, unasked).
    static bool FileAssociationPageAsks(const InstallOptions& options);
    static bool SkipShortcuts(const InstallOptions& options);
    // finishState 2: nothing is left to ask on the finish page.
    static bool SkipFinish(const InstallOptions& options, int finishState);

    // Next on the setup-type page: choice 0 is Express. Both record the choice in the answers.
    static void ApplySetupType(InstallOptions& options, int choice);
    // Next on the custom setup-type page: choice 1 is "Portable install".
    static void ApplyCustomSetupType(InstallOptions& options, int choice);

    enum class CancelAction
    {
        Confirm,  // ask "Confirm Cancellation"; Yes ends the wizard
        Refuse,   // "Cancel Unavailable": the install is under way
    };
    static CancelAction Cancel(int pagePosition);

    // What the welcome page's first timer does.
    enum class WelcomeStart
    {
        MoveOn,           // silent or upgrade: on at once, "Run Auto Install" untouched
        ForgetAutoInstall,// the feature isn't offered: delete "Run Auto Install"
        StartCountdown,   // the user asked for it last time: timers 2 and 3
        Wait,             // offered, not asked for: the user reads the agreement
    };
    // runAutoInstall: the "Run Auto Install" value, 0 when absent.
    static WelcomeStart OnWelcomeStart(const InstallOptions& options, bool autoInstallOffered, uint32_t runAutoInstall);

    // The countdown's window title, counter as it stands.
    static HVString CountdownTitle(const HVString& displayName, int seconds);
    static constexpr int kCountdownStart = 30;
};

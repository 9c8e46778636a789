#pragma once

#include "changes/win/CInstallRun.h"
#include "product/HVInstallDescription.h"
#include "product/InstallOptions.h"
#include "product/win/CProductIdentity.h"
#include "toolkit/win/HVWizardPopupWnd.h"

#include <optional>
#include <vector>

// The install wizard: the frame titled "Install Wizard" with the install pages in their
// order (welcome and agreement, setup type, custom setup type, destination, copy, file
// associations, shortcuts, finish). It owns its pages;
// the choices of all pages go into the one InstallOptions record of the run.
//
//   CInstallWizard wizard(options, description, product, setupFolder);
//   if (wizard.RunWizard(nullptr) == CInstallWizard::Result::Cancelled) ...
class CInstallWizard : public HVWizardPopupWnd
{
public:
    enum class Result
    {
        Finished,   // the last page was passed
        Cancelled,  // the user confirmed Cancel: nothing was changed
        Failed,     // the window could not be made, or the install could not go on
    };
    // Close result of an install that can't go on.
    static constexpr int kFailed = IDABORT;

    CInstallWizard(InstallOptions& options, const HVInstallDescription& description, const CProductIdentity& product,
                   const HVString& setupFolder);
    ~CInstallWizard() override;

    Result RunWizard(HWND owner);

    InstallOptions& Options() const { return options_; }
    const HVInstallDescription& Description() const { return description_; }
    const CProductIdentity& Product() const { return product_; }
    // Ends in a backslash.
    const HVString& SetupFolder() const { return setupFolder_; }
    // "/*/Installer/OfferAutoInstall" non-zero: the welcome page may count down.
    bool AutoInstallOffered() const { return autoInstallOffered_; }

    // The earlier installation's folder, read once (the first call sets "earlier installation
    // found" of the options); empty when there is none.
    const HVString& EarlierInstallationFolder();
    // The name of the product's own uninstall entry, as the installations record gives it
    // ("Uninstall Key"); empty when there is no record.
    const HVString& OwnUninstallKey();
    // Folders of other programs, read from the uninstall entries on first use and kept.
    const std::vector<HVString>& ProtectedFolders();

    // The frame's own title, translated.
    HVString WizardTitle() const;

    // What the install changed and what it left for the next restart or logon, with the record
    // on disk; alive for the whole run, so the pages after the copy page and the end of the run
    // can read them.
    CInstallRun& InstallRun() { return run_; }
    CInstallChangeLog& Changes() { return run_.Changes(); }
    CDeferredOperations& Deferred() { return run_.Deferred(); }
    // The finish page's findings: Windows must restart to complete the install, and whether
    // the restart was asked of Windows. A finished run needing one that wasn't done ends 3010.
    void SetRestartNeeded(bool needed) { restartNeeded_ = needed; }
    void SetRestarted() { restarted_ = true; }
    bool RestartPending() const { return restartNeeded_ && !restarted_; }

protected:
    void OnCancelRequest() override;
    LRESULT OnMessage(UINT message, WPARAM wParam, LPARAM lParam) override;

private:
    InstallOptions& options_;
    const HVInstallDescription& description_;
    const CProductIdentity& product_;
    HVString setupFolder_;
    bool autoInstallOffered_ = false;
    std::optional<HVString> ownUninstallKey_;
    std::optional<HVString> earlierFolder_;
    std::optional<std::vector<HVString>> protectedFolders_;
    CInstallRun run_;
    bool restartNeeded_ = false;
    bool restarted_ = false;
};

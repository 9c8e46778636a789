#pragma once

#include "engine/IComponentInstaller.h"
#include "engine/IInstallPage.h"
#include "engine/IShellIntegration.h"
#include "engine/win/CFileInstaller.h"
#include "engine/win/CInstallContext.h"
#include "engine/win/CProductRecords.h"

class CDependencyRunner;
class CInstallRun;

// The install's own work, in its order: the dependencies, then the copy (cleaning, records,
// launcher, system files, program files, tidying, registration, the registry action table and
// the uninstall entry), then the plug-ins. The install sequence calls one step at a time from
// its timers; each step reports through the page and asks it for the user's answers, and says
// whether the install can go on. The shell integration and the plug-in step come from above:
// the engine knows them only by their interfaces.
class CInstallSteps
{
public:
    enum class Outcome
    {
        Continue,
        Failed,     // the install can't go on; the user has been told why
        Cancelled,  // the dependencies were cancelled or failed: the wizard ends as cancelled
    };
    static constexpr const char16_t* kDependenciesTitle = u"Installing Dependencies";
    static constexpr const char16_t* kDependenciesSubtitle = u"Please wait while Install Wizard installs dependencies.";

    // `context` and everything it names outlive the steps; the install folder in it is the one
    // the files go to.
    CInstallSteps(const CInstallContext& context, CInstallRun& run, IInstallPage& page, IShellIntegration& shell,
                  IComponentInstaller& components);
    ~CInstallSteps();

    Outcome RunDependencies();
    // Whether the files need not be installed again (the copy and plug-in steps are left out).
    bool SkipInstall();
    Outcome RunCopy();
    Outcome RunPlugins();
    // The user's Cancel while a download runs stops it; false when nothing is downloading.
    bool CancelDownload();

private:
    bool SetupFolderIsComplete();
    // Room on every drive for what the copy will write; else the user is told which drive and
    // how much it needs, before anything is changed.
    bool EnoughSpace();
    // The disk filled up during a copy: told, and the install can't go on.
    bool DiskFilledUp();
    // Files an earlier run of this installation put in the install folder that this version no
    // longer installs: removed (kept aside until the end), while they are as that run left them.
    void RemoveWhatThisVersionLeftOut();
    bool CopyLauncherFiles();
    void CopySystemFiles();
    void StopServerEdition();
    void TidyProgramFolder();
    void RegisterFiles();
    void DeleteFolder(const HVString& folder);
    static bool FailsHere(const char16_t* step);
    void ShowError(const HVString& text, const char16_t* title);

    const CInstallContext& context_;
    CInstallRun& run_;
    IInstallPage& page_;
    IShellIntegration& shell_;
    IComponentInstaller& components_;
    CFileInstaller files_;
    CProductRecords records_;
    // While the dependency step runs.
    CDependencyRunner* dependencies_ = nullptr;
};

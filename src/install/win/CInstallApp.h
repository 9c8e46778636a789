#pragma once

#include "install/CEnvironmentChecks.h"
#include "install/CTranslationService.h"
#include "product/HVInstallDescription.h"
#include "product/InstallOptions.h"
#include "product/win/CProductIdentity.h"

#include "foundation/win/HVDebugLogger.h"
#include "foundation/win/HVExecutableApp.h"
#include "foundation/win/HVFileLogger.h"
#include "foundation/win/HVRegKey.h"
#include "foundation/win/HVUniqueResource.h"

#include <memory>

// The setup program's application object. Start-up makes sure this is the only installer
// running, reads the setup folder and the command line, checks that the machine can take the
// product and then runs the wizard. Start-up always reports failure to the framework, so the
// process ends as soon as the wizard has closed; the exit code says how it went
// (InstallExitCode.h).
class CInstallRun;

class CInstallApp : public HVExecutableApp
{
public:
    static constexpr const wchar_t* kMutexName = L"Global\\Halvard Installer";

    CInstallApp();
    ~CInstallApp() override;

    static CInstallApp* Get();

    InstallOptions& GetOptions() { return options_; }
    const HVInstallDescription& GetDescription() const { return description_; }
    // Valid from the reading of the setup folder on (start-up step 4).
    const CProductIdentity& GetProductIdentity() const { return *product_; }
    const HVString& GetSetupFolder() const { return GetModuleFolder(); }

    // The machine checks in order; true when all pass. Each failure has told the user why
    // and set the exit code.
    bool CheckEnvironment();

protected:
    bool InitInstance() override;
    bool Startup() override;
    void ExitInstance() override;

    // The wizard's look: the toolkit, and the title-bar icon of the skin.
    virtual void PrepareLook();
    // The wizard's language, asked when the install description wants it.
    virtual void PrepareLanguage();
    // Runs the wizard modally; sets the exit code from how it ended.
    virtual void RunWizard();
    // An install that failed or was cancelled is undone, and the user told so.
    void RollBack(CInstallRun& run);
    // "/Rollback": the install that was stopped before its end (the record's last run has no
    // end) is undone; nothing is installed.
    void RollBackStoppedInstall();
    void TellRollback(bool complete);

private:
    void SuppressMessagesIfAsked(bool suppress);
    void OpenLog(const InstallOptions& early);
    void TakeSingleInstanceMutex();
    void RemoveStaleVirtualStoreKeys();
    void ReadSetupFolder();
    bool JudgeSingleInstance();
    bool ShowHelpIfAsked();
    // "/LoadInf": the answer file's choices, then the command line again over them. False
    // (the run ends with 1603) when the file can't be read.
    bool LoadAnswers();
    // "/SaveInf": the run's choices as an answer file.
    void SaveAnswers() const;
    void PlaceLauncher();
    void ReportCheckFailure(CEnvironmentChecks::Result result);
    HVString ProductText(const char16_t* english) const;

    InstallOptions options_;
    HVInstallDescription description_;
    std::unique_ptr<CProductIdentity> product_;
    HVHandle mutex_;
    DWORD mutexError_ = ERROR_SUCCESS;
    HVRegKey virtualStore_;
    HVRegKey virtualStoreWow_;
    HVFileLogger fileLogger_;
    HVDebugLogger debugLogger_;
    bool productDeclined_ = false;
    // The chosen language; installed as the process's translator while the program runs.
    CTranslationService translations_;
};

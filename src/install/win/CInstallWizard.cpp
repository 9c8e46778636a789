#include "install/win/CInstallWizard.h"

#include "foundation/HVLog.h"
#include "foundation/HVTranslator.h"
#include "foundation/win/HVCrashHandler.h"
#include "foundation/win/HVFileSystem.h"
#include "foundation/win/HVProductPaths.h"
#include "foundation/win/HVRegKey.h"
#include "install/win/CCopyAndInstallPpg.h"
#include "install/win/CFileAssociationPpg.h"
#include "install/win/CFinishPpg.h"
#include "install/win/CLicensePpg.h"
#include "install/win/CProtectedFolders.h"
#include "install/win/CSelectPathPpg.h"
#include "install/win/CSetupTypeCustomPpg.h"
#include "install/win/CSetupTypePpg.h"
#include "install/win/CShortcutsPpg.h"
#include "product/CProductIdentityRules.h"
#include "product/CWizardRules.h"
#include "toolkit/win/HVButton.h"
#include "toolkit/win/HVMessageBox.h"

#include <cstdlib>

CInstallWizard::CInstallWizard(InstallOptions& options, const HVInstallDescription& description,
                               const CProductIdentity& product, const HVString& setupFolder)
    : options_(options), description_(description), product_(product), setupFolder_(setupFolder)
{
    if (!setupFolder_.IsEmpty() && !setupFolder_.EndsWith(u"\\"))
        setupFolder_ += u'\\';
    autoInstallOffered_ = description_.GetInteger(u"/*/Installer/OfferAutoInstall", 0) != 0;
    // Tests reach the journal, the fall-back of systems that can't replace files at restart.
    if (const wchar_t* value = ::_wgetenv(L"IW_TEST_ONLY_NO_RESTART_REPLACE"); value && *value == L'1')
        run_.Deferred().SetReplaceAtRestartAvailable(false);

    SetTitle(WizardTitle());
    SetMinimumClientSize({500, 300});
    SetButtonTexts(HVButton::WithAccelerator(HVTranslator::Translate(u"< Back"), u'B'),
                   HVButton::WithAccelerator(HVTranslator::Translate(u"Next >"), u'N'),
                   HVButton::WithAccelerator(HVTranslator::Translate(u"Finish"), u'F'),
                   HVTranslator::Translate(u"Cancel"));

    AddPage(std::make_unique<CLicensePpg>(*this));
    AddPage(std::make_unique<CSetupTypePpg>(*this));
    AddPage(std::make_unique<CSetupTypeCustomPpg>(*this));
    AddPage(std::make_unique<CSelectPathPpg>(*this));
    AddPage(std::make_unique<CCopyAndInstallPpg>(*this));
    if (product_.HasFeature(CProductIdentityRules::kFeatureFileAssociations))
        AddPage(std::make_unique<CFileAssociationPpg>(*this));
    AddPage(std::make_unique<CShortcutsPpg>(*this));
    AddPage(std::make_unique<CFinishPpg>(*this));
}

CInstallWizard::~CInstallWizard() = default;

HVString CInstallWizard::WizardTitle() const
{
    return HVTranslator::Translate(u"Install Wizard");
}

CInstallWizard::Result CInstallWizard::RunWizard(HWND owner)
{
    HVLog::Write(HVLog::kInfo, "CInstallWizard::RunWizard", u"Wizard starts (silent %d, upgrade %d, auto install offered %d)",
                 options_.silent, options_.upgrade, autoInstallOffered_);
    // A silent run that shows no boxes has nobody to watch its progress either.
    if (options_.silent && HVMessageBox::IsSuppressed())
        SetShown(false);
    const int result = Run(owner);
    const Result outcome = result == kFinished ? Result::Finished : result == kCancelled ? Result::Cancelled : Result::Failed;
    HVLog::Write(HVLog::kInfo, "CInstallWizard::RunWizard", u"Wizard ends: %s (destination %s, express %d, portable %d)",
                 outcome == Result::Finished ? u"finished" : outcome == Result::Cancelled ? u"cancelled" : u"failed",
                 options_.destinationFolder, options_.express, options_.portable);
    return outcome;
}

const HVString& CInstallWizard::OwnUninstallKey()
{
    if (!ownUninstallKey_) {
        HVString name;
        for (HVRegView view : {HVRegView::Key64, HVRegView::Key32}) {
            HVRegKey record;
            if (name.IsEmpty() &&
                record.Open(HKEY_LOCAL_MACHINE, HVProductPaths::kInstallationsKey + HVString(u"\\") + product_.GetInstallationKeyName(),
                            KEY_READ, view))
                record.QueryString(u"Uninstall Key", name);
        }
        ownUninstallKey_ = name.Trim();
    }
    return *ownUninstallKey_;
}

const HVString& CInstallWizard::EarlierInstallationFolder()
{
    if (earlierFolder_)
        return *earlierFolder_;
    // The installation record names the folder; failing that, the uninstall entry that the
    // record names.
    HVString folder = HVFileSystem::NormalizeFolderPath(product_.GetEarlierInstallationFolder().Trim());
    for (HVRegView view : {HVRegView::Key64, HVRegView::Key32}) {
        HVRegKey entry;
        HVString location;
        if (folder.IsEmpty() && !OwnUninstallKey().IsEmpty() &&
            entry.Open(HKEY_LOCAL_MACHINE, CProtectedFolders::kUninstallKey + HVString(u"\\") + OwnUninstallKey(), KEY_READ, view) &&
            entry.QueryString(u"InstallLocation", location))
            folder = CProtectedFolders::LocationFolder(location);
    }
    // A record whose folder was removed by hand is no earlier installation to install over.
    if (!folder.IsEmpty() && !HVFileSystem::FolderExists(folder)) {
        HVLog::Write(HVLog::kInfo, "CInstallWizard::EarlierInstallationFolder", u"Recorded folder %s is gone", folder);
        folder.Empty();
    }
    options_.earlierInstallationFound = !folder.IsEmpty();
    HVLog::Write(HVLog::kInfo, "CInstallWizard::EarlierInstallationFolder", u"Earlier installation: %s",
                 folder.IsEmpty() ? HVString(u"none") : folder);
    earlierFolder_ = folder;
    return *earlierFolder_;
}

const std::vector<HVString>& CInstallWizard::ProtectedFolders()
{
    if (!protectedFolders_) {
        const CProtectedFolders::Context context = CProtectedFolders::ThisMachine(OwnUninstallKey(), EarlierInstallationFolder());
        protectedFolders_ = CProtectedFolders::Read(context);
        HVLog::Write(HVLog::kInfo, "CInstallWizard::ProtectedFolders", u"%d protected folders",
                     static_cast<int>(protectedFolders_->size()));
    }
    return *protectedFolders_;
}

void CInstallWizard::OnCancelRequest()
{
    const HVString& name = product_.GetDisplayName();
    if (CWizardRules::Cancel(CurrentIndex() + 1) == CWizardRules::CancelAction::Refuse) {
        if (CurrentPage() && CurrentPage()->TakeCancel())
            return;
        const HVString text =
            HVString::Format(HVTranslator::Translate(u"%s installation can no longer be canceled.\r\n\r\n").c_str(), name) +
            HVTranslator::Translate(u"Once installation has completed, you can uninstall using Control Panel > Add or Remove Programs.");
        HVMessageBox::Show(Hwnd(), text, HVTranslator::Translate(u"Cancel Unavailable"), MB_OK | MB_ICONINFORMATION);
        return;
    }
    if (CurrentPage())
        CurrentPage()->OnCancelAsked();
    const HVString question =
        HVString::Format(HVTranslator::Translate(u"Are you sure you want to cancel %s installation?").c_str(), name);
    if (HVMessageBox::Show(Hwnd(), question, HVTranslator::Translate(u"Confirm Cancellation"),
                           MB_YESNO | MB_ICONQUESTION | MB_DEFBUTTON2) != IDYES)
        return;
    HVLog::Write(HVLog::kInfo, "CInstallWizard::OnCancelRequest", u"Cancelled by the user");
    if (CurrentPage())
        CurrentPage()->OnHidePage();
    Close(kCancelled);
}

LRESULT CInstallWizard::OnMessage(UINT message, WPARAM wParam, LPARAM lParam)
{
    // Test-only: with IW_TEST_ONLY_CRASH_ON_COMMAND set, the product's command message makes
    // the wizard die as a fault in a page would, so that end-to-end tests can follow a crash
    // out of the wizard's own message loop into the crash report. Unset on every user's
    // machine, where the wizard has no use for the message.
    static const bool crashOnCommand = ::_wgetenv(L"IW_TEST_ONLY_CRASH_ON_COMMAND") != nullptr;
    if (message == HVCrashHandler::kCommandMessage && crashOnCommand)
        ::RaiseException(EXCEPTION_ACCESS_VIOLATION, EXCEPTION_NONCONTINUABLE, 0, nullptr);
    return HVWizardPopupWnd::OnMessage(message, wParam, lParam);
}

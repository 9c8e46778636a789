#include "install/win/CCopyAndInstallPpg.h"

#include "engine/CInstallChangeLog.h"
#include "engine/win/CDeferredOperations.h"
#include "engine/win/CDependencyRunner.h"
#include "engine/win/CProductRecords.h"
#include "foundation/HVLog.h"
#include "foundation/HVLogTimer.h"
#include "foundation/HVTranslator.h"
#include "foundation/win/HVApp.h"
#include "foundation/win/HVFileSystem.h"
#include "foundation/win/HVProductPaths.h"
#include "install/win/CInstallWizard.h"
#include "integration/win/CComponentInstaller.h"
#include "integration/win/CShellIntegration.h"
#include "integration/win/RunProgram.h"
#include "toolkit/win/HVMessageBox.h"

#include <objbase.h>

namespace
{
const char16_t* const kDependenciesTitle = u"Installing Dependencies";
const char16_t* const kDependenciesSubtitle = u"Please wait while Install Wizard installs dependencies.";
const char16_t* const kCopyFailed = u"Install Wizard could not copy necessary files to the destination folder.";

// A folder of the install folder with its contents, noted when it was there.
void DeleteFolder(CInstallChangeLog& changes, const HVString& folder)
{
    if (!HVFileSystem::FolderExists(folder))
        return;
    HVFileSystem::DeleteFolderTree(folder);
    changes.Note(InstallChange::Kind::FolderDeleted, folder);
}

HVString SystemFolder(UINT (WINAPI* get)(LPWSTR, UINT))
{
    // Test-only: IW_TEST_ONLY_NO_SYSTEM_PATH=1 (the system folders) and IW_TEST_ONLY_NO_FONT_PATH=1
    // (the Windows folder, which holds the fonts) make the folder unobtainable, as a system can
    // answer, so that the boxes that say so can be tested end to end.
    const wchar_t* unobtainable = get == &::GetWindowsDirectoryW ? L"IW_TEST_ONLY_NO_FONT_PATH" : L"IW_TEST_ONLY_NO_SYSTEM_PATH";
    if (const wchar_t* value = ::_wgetenv(unobtainable); value && *value == L'1')
        return HVString();
    wchar_t buffer[MAX_PATH + 1] = {};
    const UINT length = get(buffer, MAX_PATH + 1);
    if (length == 0 || length > MAX_PATH)
        return HVString();
    return HVFileSystem::NormalizeFolderPath(HVString(buffer, static_cast<int32_t>(length)));
}
}

CCopyAndInstallPpg::CCopyAndInstallPpg(CInstallWizard& wizard)
    : CWizardPropertyPage(wizard), title_(T(kDependenciesTitle)), subtitle_(T(kDependenciesSubtitle))
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
    context_.emplace(CInstallContext{options, wizard.Description(), Product(), wizard.SetupFolder(), installFolder,
                                     wizard.Changes(), wizard.Deferred(), *this, wizard.Hwnd()});
    files_.emplace(wizard.Deferred(), wizard.Changes());
    files_->SetInstallFolder(installFolder);
    records_ = std::make_unique<CProductRecords>(*context_);
    shell_ = std::make_unique<CShellIntegration>(*context_);
    components_ = std::make_unique<CComponentInstaller>(*context_);

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

void CCopyAndInstallPpg::SetHeader(const char16_t* title, const char16_t* subtitle, bool refuseSecondButton)
{
    title_ = T(title);
    subtitle_ = T(subtitle);
    if (refuseSecondButton)
        secondButton_ = false;
    InstallWizard().RefreshPage();
}

bool CCopyAndInstallPpg::RunDependencies()
{
    SetHeader(kDependenciesTitle, kDependenciesSubtitle, true);
    // Before the dependencies, which already put the bundled media in place.
    if (!SetupFolderIsComplete()) {
        Fail();
        return false;
    }
    const InstallOptions& options = Options();
    if (options.noDependencies || options.portable) {
        HVLog::Write(HVLog::kInfo, "CCopyAndInstallPpg::RunDependencies", u"Dependencies left out (%s)",
                     options.portable ? u"portable" : u"NoDependencies");
        return true;
    }
    CDependencyRunner runner(*context_);
    dependencies_ = &runner;
    const CDependencyRunner::Outcome outcome =
        runner.Run(InstallWizard().Description().GetInteger(u"/*/Installer/InstallDirectX", 1) != 0);
    dependencies_ = nullptr;
    switch (outcome) {
    case CDependencyRunner::Outcome::Continue: return true;
    case CDependencyRunner::Outcome::Cancelled:
    case CDependencyRunner::Outcome::Failed:
        InstallWizard().Close(CInstallWizard::kCancelled);
        return false;
    }
    return false;
}

bool CCopyAndInstallPpg::TakeCancel()
{
    if (!dependencies_ || !dependencies_->IsDownloading())
        return false;
    HVLog::Write(HVLog::kInfo, "CCopyAndInstallPpg::TakeCancel", u"The download is to stop");
    dependencies_->RequestCancel();
    return true;
}

bool CCopyAndInstallPpg::SkipInstall()
{
    const InstallOptions& options = Options();
    const CVersionInfo installed(context_->installFolder + Product().GetMainProgramName());
    const bool skip = CInstallSequence::SkipInstall(options.allowDowngrade, options.earlierInstallationFound, installed,
                                                    Product().GetVersion());
    HVLog::Write(HVLog::kInfo, "CCopyAndInstallPpg::SkipInstall", u"Installed %s, this setup %s: %s",
                 installed.GetText(), Product().GetVersionText(), skip ? u"kept" : u"installed");
    // What the dependencies changed is still to be recorded, in the folder that is there.
    if (skip && !InstallWizard().Changes().Changes().empty())
        InstallWizard().StartRecord(context_->installFolder);
    return skip;
}

bool CCopyAndInstallPpg::RunCopy()
{
    HVLogTimer timer("CCopyAndInstallPpg::RunCopy");
    SetHeader(u"Copying Files", u"Please wait while Install Wizard copies and registers files.", true);
    const CInstallContext& context = *context_;
    // Before the first change to the install folder, so that a run ended anywhere after this
    // leaves a record of what it did; the install goes on without one (it is logged).
    InstallWizard().StartRecord(context.installFolder);
    files_->CleanInstallFolder(context.description.GetInteger(u"/*/Installer/CleanData", 0) != 0,
                               context.description.GetText(u"/*/Product/ObsoleteFiles"), Product().GetRegistryRoot(),
                               *this, [this] { records_->RemoveRetiredRecords(); });
    SetStatusText(u"Loading default library and settings...");
    records_->LoadDefaultSettings();
    SetStatusText(u"Upgrading from previous version...");
    records_->UpgradeFromPreviousVersion();
    if (!CopyLauncherFiles())
        return false;
    ::CoFreeUnusedLibraries();

    CopySystemFiles();
    StopServerEdition();

    SetProgressPosition(0);
    SetStatusText(HVString::Format(T(u"Installing %s program files...").c_str(), Product().GetDisplayName()));
    {
        HVLogTimer copyTimer("CCopyAndInstallPpg::CopyProgramFiles");
        files_->CopyTree(context.setupFolder + CProductIdentity::kProgramSourceFolder, context.installFolder,
                         kCopyAlwaysOverwrite, *this);
        copyTimer.SetResult(files_->FilesCopied());
    }
    TidyProgramFolder();
    RegisterFiles();

    HVProductPaths::SetInstallFolder(context.installFolder);
    SetProgressRange(0, 1);
    SetProgressPosition(0);
    SetStatusText(u"Creating registry settings...");
    if (!shell_->ApplyRegistryActions()) {
        Fail();
        return false;
    }
    SetProgressPosition(1);
    records_->WriteUninstallEntry();
    timer.SetResult(files_->FilesCopied());
    return true;
}

bool CCopyAndInstallPpg::SetupFolderIsComplete()
{
    // Checked before anything is cleaned or copied, so a broken setup folder leaves the
    // machine as it was.
    for (const char16_t* folder : {CProductIdentity::kProgramSourceFolder, u"System\\"}) {
        const HVString path = context_->setupFolder + folder;
        if (HVFileSystem::FolderExists(path))
            continue;
        HVLog::Write(HVLog::kError, "CCopyAndInstallPpg::SetupFolderIsComplete", u"%s is missing", path);
        const HVString text = T(kCopyFailed) + u"\r\n\r\n" +
                              HVString::Format(T(u"The folder \"%s\" is missing from the setup folder.").c_str(), path);
        HVMessageBox::Show(InstallWizard().Hwnd(), text, T(u"Install Error"), MB_OK | MB_ICONERROR);
        return false;
    }
    return true;
}

bool CCopyAndInstallPpg::CopyLauncherFiles()
{
    const CInstallContext& context = *context_;
    const HVString source = context.setupFolder + CProductIdentity::kProgramSourceFolder;
    for (const HVString& name : {Product().GetLauncherName(), Product().GetMainProgramName()}) {
        if (!HVFileSystem::Exists(source + name, false))
            continue;
        while (true) {
            bool inUse = false;
            const CFileInstaller::CopyResult result = files_->CopyCoreFile(source + name, context.installFolder + name, &inUse);
            if (result != CFileInstaller::CopyResult::Failed)
                break;
            if (!inUse) {
                HVMessageBox::Show(InstallWizard().Hwnd(), T(kCopyFailed), T(u"Install Error"), MB_OK | MB_ICONERROR);
                Fail();
                return false;
            }
            const HVString text =
                HVString::Format(T(u"Please ensure that the file '%s' is not in use.").c_str(), context.installFolder + name);
            if (HVMessageBox::Show(InstallWizard().Hwnd(), text, T(u"Failure Copying System File"),
                                   MB_RETRYCANCEL | MB_ICONWARNING) != IDRETRY) {
                HVLog::Write(HVLog::kInfo, "CCopyAndInstallPpg::CopyLauncherFiles", u"Cancelled at %s", name);
                Fail();
                return false;
            }
        }
    }
    if (!records_->RecordInstallation()) {
        HVMessageBox::Show(InstallWizard().Hwnd(), T(kCopyFailed), T(u"Install Error"), MB_OK | MB_ICONERROR);
        Fail();
        return false;
    }
    return true;
}

void CCopyAndInstallPpg::CopySystemFiles()
{
    SetProgressPosition(0);
    SetStatusText(u"Installing system files...");
    if (Options().portable)
        return;
    const CInstallContext& context = *context_;
    for (auto getFolder : {&::GetSystemDirectoryW, &::GetSystemWow64DirectoryW}) {
        const HVString system = SystemFolder(getFolder);
        if (system.IsEmpty()) {
            HVMessageBox::Show(InstallWizard().Hwnd(),
                               T(u"The install wizard can not obtain the Windows system path. System files will not be installed."),
                               T(u"Error"), MB_OK | MB_ICONERROR);
            continue;
        }
        files_->CopyTree(context.setupFolder + u"System\\Check Version\\", system, kCopyVersionCheck, *this);
        files_->CopyTree(context.setupFolder + u"System\\Always Overwrite\\", system, kCopyAlwaysOverwrite, *this);
        // Fonts go with each pass, so they are copied and added to the font table twice.
        const HVString windows = SystemFolder(&::GetWindowsDirectoryW);
        if (windows.IsEmpty()) {
            HVMessageBox::Show(InstallWizard().Hwnd(),
                               T(u"The install wizard can not obtain the system font path. Custom fonts will not be installed."),
                               T(u"Error"), MB_OK | MB_ICONERROR);
            continue;
        }
        files_->CopyTree(context.setupFolder + u"Fonts\\", windows + u"Fonts\\", kCopyFont, *this);
    }
}

void CCopyAndInstallPpg::StopServerEdition()
{
    if (!Product().IsServerEdition())
        return;
    const HVString& folder = context_->installFolder;
    const HVString server = folder + u"DynamoServer.exe";
    if (HVFileSystem::Exists(server, false))
        RunProgram(server, u"/Stop", SW_HIDE, true, true, nullptr, 5000);
    DeleteFolder(context_->changes, folder + u"Server\\");
    DeleteFolder(context_->changes, folder + u"Data\\Panel\\Root\\Default\\static\\");
}

void CCopyAndInstallPpg::TidyProgramFolder()
{
    const CInstallContext& context = *context_;
    const HVString& folder = context.installFolder;
    // Both names of the Chinese translation: the simplified one replaces the old folder.
    if (HVFileSystem::FolderExists(folder + u"Data\\Languages\\Chinese\\") &&
        HVFileSystem::FolderExists(folder + u"Data\\Languages\\Chinese (simplified)\\"))
        DeleteFolder(context.changes, folder + u"Data\\Languages\\Chinese\\");
    // Drivers are installed from the setup folder; copies in the program folder only mislead.
    DeleteFolder(context.changes, folder + u"Drivers\\32\\");
    DeleteFolder(context.changes, folder + u"Drivers\\64\\");
    context.deferred.DeferDelete(folder + u"Drivers\\HalvardWDMDriver.cat");
    context.deferred.DeferDelete(folder + u"Drivers\\HalvardWDMDriver.inf");
    for (const char16_t* license : {u"License.txt", u"License.LGPL2.1.txt", u"License.LGPL3.txt"}) {
        if (HVFileSystem::Exists(context.setupFolder + license, false))
            files_->CopyFile(context.setupFolder + license, folder + license, kCopyAlwaysOverwrite);
    }
}

void CCopyAndInstallPpg::RegisterFiles()
{
    const std::vector<HVString>& files = files_->FilesToRegister();
    SetProgressRange(0, static_cast<int32_t>(files.size()));
    SetProgressPosition(0);
    SetStatusText(u"Registering program files...");
    const bool server = Product().IsServerEdition();
    for (size_t i = 0; i < files.size(); ++i) {
        DrainMessages();
        const HVString& file = files[i];
        // The server edition's own modules are registered as a service by the plug-in step.
        if (!(server && CCopyRules::MentionsServer(file))) {
            components_->RegisterServer(file);
            if (CCopyRules::IsInputPlugin(file))
                components_->InstallInputPlugin(file);
        }
        SetProgressPosition(static_cast<int32_t>(i));
    }
}

void CCopyAndInstallPpg::RunPlugins()
{
    SetHeader(u"Installing Plugins", u"Please wait while Install Wizard installs and registers plug-ins.", false);
    SetStatusText(u"Initializing...");
    components_->RunPluginStep(*this);
}

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

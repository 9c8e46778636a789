#include "engine/win/CInstallSteps.h"

#include "changes/CInstallChangeLog.h"
#include "changes/win/CDeferredOperations.h"
#include "changes/win/CInstallRun.h"
#include "changes/win/RunProgram.h"
#include "engine/CInstallSequence.h"
#include "engine/win/CDependencyRunner.h"
#include "foundation/HVLog.h"
#include "foundation/HVLogTimer.h"
#include "foundation/HVTranslator.h"
#include "foundation/win/HVFileSystem.h"
#include "foundation/win/HVProductPaths.h"
#include "product/HVInstallDescription.h"
#include "product/InstallOptions.h"
#include "product/win/CProductIdentity.h"

#include <objbase.h>

#include <cwchar>
#include <map>
#include <set>

namespace
{
const char16_t* const kCopyFailed = u"Install Wizard could not copy necessary files to the destination folder.";

HVString StepsSystemFolder(UINT (WINAPI* get)(LPWSTR, UINT))
{
    // Test-only: IW_TEST_ONLY_NO_SYSTEM_PATH=1 (the system folders) and IW_TEST_ONLY_NO_FONT_PATH=1
    // (the Windows folder, which holds the fonts) make the folder unobtainable, as a system can
    // answer, so that the boxes that say so can be tested end to end.
    const wchar_t* unobtainable = get == &::GetWindowsDirectoryW ? L"IW_TEST_ONLY_NO_FONT_PATH" : L"IW_TEST_ONLY_NO_SYSTEM_PATH";
    if (const wchar_t* value = ::_wgetenv(unobtainable); value && *value == L'1')
        return HVString();
    return HVFileSystem::SystemFolder(get);
}
}

CInstallSteps::CInstallSteps(const CInstallContext& context, CInstallRun& run, IInstallPage& page,
                             IShellIntegration& shell, IComponentInstaller& components)
    : context_(context), run_(run), page_(page), shell_(shell), components_(components),
      files_(context.deferred, context.changes), records_(context)
{
    files_.SetInstallFolder(context.installFolder);
}

CInstallSteps::~CInstallSteps() = default;

void CInstallSteps::ShowError(const HVString& text, const char16_t* title)
{
    page_.Ask(text, HVTranslator::Translate(title), MB_OK | MB_ICONERROR);
}

// A folder of the install folder with its contents, kept aside until the install ended well.
void CInstallSteps::DeleteFolder(const HVString& folder) { files_.RemoveKeeping(folder); }

CInstallSteps::Outcome CInstallSteps::RunDependencies()
{
    page_.ShowStage(kDependenciesTitle, kDependenciesSubtitle, true);
    // Before the dependencies, which already put the bundled media in place.
    if (!SetupFolderIsComplete())
        return Outcome::Failed;
    // From the first change on, so that a run stopped anywhere leaves a record of what it did
    // (the bundled media are copied into the install folder here); the install goes on without
    // one (it is logged).
    run_.StartRecord(context_.installFolder);
    const InstallOptions& options = context_.options;
    if (options.noDependencies || options.portable) {
        HVLog::Write(HVLog::kInfo, "CInstallSteps::RunDependencies", u"Dependencies left out (%s)",
                     options.portable ? u"portable" : u"NoDependencies");
        return Outcome::Continue;
    }
    CDependencyRunner runner(context_);
    dependencies_ = &runner;
    const CDependencyRunner::Outcome outcome =
        runner.Run(context_.description.GetInteger(u"/*/Installer/InstallDirectX", 1) != 0);
    dependencies_ = nullptr;
    return outcome == CDependencyRunner::Outcome::Continue ? Outcome::Continue : Outcome::Cancelled;
}

bool CInstallSteps::CancelDownload()
{
    if (!dependencies_ || !dependencies_->IsDownloading())
        return false;
    HVLog::Write(HVLog::kInfo, "CInstallSteps::CancelDownload", u"The download is to stop");
    dependencies_->RequestCancel();
    return true;
}

bool CInstallSteps::SkipInstall()
{
    const InstallOptions& options = context_.options;
    const CProductIdentity& product = context_.product;
    const CVersionInfo installed(context_.installFolder + product.GetMainProgramName());
    const bool skip = CInstallSequence::SkipInstall(options.allowDowngrade, options.earlierInstallationFound, installed,
                                                    product.GetVersion());
    HVLog::Write(HVLog::kInfo, "CInstallSteps::SkipInstall", u"Installed %s, this setup %s: %s",
                 installed.GetText(), product.GetVersionText(), skip ? u"kept" : u"installed");
    // What the dependencies changed is still to be recorded, in the folder that is there.
    if (skip && !context_.changes.Changes().empty())
        run_.StartRecord(context_.installFolder);
    return skip;
}

CInstallSteps::Outcome CInstallSteps::RunCopy()
{
    HVLogTimer timer("CInstallSteps::RunCopy");
    page_.ShowStage(u"Copying Files", u"Please wait while Install Wizard copies and registers files.", true);
    const CInstallContext& context = context_;
    const CProductIdentity& product = context.product;
    // Before the first change to the install folder, so that a run ended anywhere after this
    // leaves a record of what it did; the install goes on without one (it is logged).
    if (!EnoughSpace())
        return Outcome::Failed;
    run_.StartRecord(context.installFolder);
    files_.CleanInstallFolder(context.description.GetInteger(u"/*/Installer/CleanData", 0) != 0,
                              context.description.GetText(u"/*/Product/ObsoleteFiles"), product.GetRegistryRoot(),
                              page_, [this] { records_.RemoveRetiredRecords(); });
    page_.SetStatusText(u"Loading default library and settings...");
    records_.LoadDefaultSettings();
    page_.SetStatusText(u"Upgrading from previous version...");
    records_.UpgradeFromPreviousVersion();
    if (!CopyLauncherFiles())
        return Outcome::Failed;
    ::CoFreeUnusedLibraries();

    CopySystemFiles();
    if (DiskFilledUp())
        return Outcome::Failed;
    StopServerEdition();

    page_.SetProgressPosition(0);
    page_.SetStatusText(HVString::Format(HVTranslator::Translate(u"Installing %s program files...").c_str(), product.GetDisplayName()));
    {
        HVLogTimer copyTimer("CInstallSteps::CopyProgramFiles");
        files_.CopyTree(context.setupFolder + CProductIdentity::kProgramSourceFolder, context.installFolder,
                        kCopyAlwaysOverwrite, page_);
        copyTimer.SetResult(files_.FilesCopied());
    }
    if (DiskFilledUp())
        return Outcome::Failed;
    TidyProgramFolder();
    RegisterFiles();

    HVProductPaths::SetInstallFolder(context.installFolder);
    page_.SetProgressRange(0, 1);
    page_.SetProgressPosition(0);
    page_.SetStatusText(u"Creating registry settings...");
    if (FailsHere(u"shell") || !shell_.ApplyRegistryActions())
        return Outcome::Failed;
    page_.SetProgressPosition(1);
    records_.WriteUninstallEntry();
    timer.SetResult(files_.FilesCopied());
    return Outcome::Continue;
}

bool CInstallSteps::SetupFolderIsComplete()
{
    // Checked before anything is cleaned or copied, so a setup folder without the program files
    // leaves the machine as it was. The system files and fonts are copied where they exist.
    const HVString path = context_.setupFolder + CProductIdentity::kProgramSourceFolder;
    if (HVFileSystem::FolderExists(path))
        return true;
    HVLog::Write(HVLog::kError, "CInstallSteps::SetupFolderIsComplete", u"%s is missing", path);
    ShowError(HVTranslator::Translate(kCopyFailed) + u"\r\n\r\n" +
                  HVString::Format(HVTranslator::Translate(u"The folder \"%s\" is missing from the setup folder.").c_str(), path),
              u"Install Error");
    return false;
}

bool CInstallSteps::CopyLauncherFiles()
{
    const CInstallContext& context = context_;
    const CProductIdentity& product = context.product;
    const HVString source = context.setupFolder + CProductIdentity::kProgramSourceFolder;
    for (const HVString& name : {product.GetLauncherName(), product.GetMainProgramName()}) {
        // A launcher file the setup folder lacks is a copy that failed: the product can't start.
        if (!HVFileSystem::Exists(source + name, false)) {
            HVLog::Write(HVLog::kError, "CInstallSteps::CopyLauncherFiles", u"%s is missing", source + name);
            ShowError(HVTranslator::Translate(kCopyFailed), u"Install Error");
            return false;
        }
        while (true) {
            bool inUse = false;
            const CFileInstaller::CopyResult result = files_.CopyCoreFile(source + name, context.installFolder + name, &inUse);
            if (result != CFileInstaller::CopyResult::Failed)
                break;
            if (!inUse) {
                ShowError(HVTranslator::Translate(kCopyFailed), u"Install Error");
                return false;
            }
            const HVString text =
                HVString::Format(HVTranslator::Translate(u"Please ensure that the file '%s' is not in use.").c_str(), context.installFolder + name);
            if (page_.Ask(text, HVTranslator::Translate(u"Failure Copying System File"), MB_RETRYCANCEL | MB_ICONWARNING) != IDRETRY) {
                HVLog::Write(HVLog::kInfo, "CInstallSteps::CopyLauncherFiles", u"Cancelled at %s", name);
                return false;
            }
        }
    }
    if (FailsHere(u"records") || !records_.RecordInstallation()) {
        ShowError(HVTranslator::Translate(kCopyFailed), u"Install Error");
        return false;
    }
    return true;
}

void CInstallSteps::CopySystemFiles()
{
    page_.SetProgressPosition(0);
    page_.SetStatusText(u"Installing system files...");
    if (context_.options.portable)
        return;
    const CInstallContext& context = context_;
    for (auto getFolder : {&::GetSystemDirectoryW, &::GetSystemWow64DirectoryW}) {
        const HVString system = StepsSystemFolder(getFolder);
        if (system.IsEmpty()) {
            ShowError(HVTranslator::Translate(u"The install wizard can not obtain the Windows system path. System files will not be installed."),
                      u"Error");
            continue;
        }
        files_.CopyTree(context.setupFolder + u"System\\Check Version\\", system, kCopyVersionCheck, page_);
        files_.CopyTree(context.setupFolder + u"System\\Always Overwrite\\", system, kCopyAlwaysOverwrite, page_);
        // Fonts go with each pass, so they are copied and added to the font table twice.
        const HVString windows = StepsSystemFolder(&::GetWindowsDirectoryW);
        if (windows.IsEmpty()) {
            ShowError(HVTranslator::Translate(u"The install wizard can not obtain the system font path. Custom fonts will not be installed."),
                      u"Error");
            continue;
        }
        files_.CopyTree(context.setupFolder + u"Fonts\\", windows + u"Fonts\\", kCopyFont, page_);
    }
}

void CInstallSteps::StopServerEdition()
{
    if (!context_.product.IsServerEdition())
        return;
    const HVString& folder = context_.installFolder;
    const HVString server = folder + u"DynamoServer.exe";
    if (HVFileSystem::Exists(server, false))
        RunProgram(server, u"/Stop", SW_HIDE, true, true, nullptr, 5000);
    DeleteFolder(folder + u"Server\\");
    DeleteFolder(folder + u"Data\\Panel\\Root\\Default\\static\\");
}

void CInstallSteps::TidyProgramFolder()
{
    const CInstallContext& context = context_;
    const HVString& folder = context.installFolder;
    // Both names of the Chinese translation: the simplified one replaces the old folder.
    if (HVFileSystem::FolderExists(folder + u"Data\\Languages\\Chinese\\") &&
        HVFileSystem::FolderExists(folder + u"Data\\Languages\\Chinese (simplified)\\"))
        DeleteFolder(folder + u"Data\\Languages\\Chinese\\");
    // Drivers are installed from the setup folder; copies in the program folder only mislead.
    DeleteFolder(folder + u"Drivers\\32\\");
    DeleteFolder(folder + u"Drivers\\64\\");
    context.deferred.DeferDelete(folder + u"Drivers\\HalvardWDMDriver.cat");
    context.deferred.DeferDelete(folder + u"Drivers\\HalvardWDMDriver.inf");
    for (const char16_t* license : {u"License.txt", u"License.LGPL2.1.txt", u"License.LGPL3.txt"}) {
        if (HVFileSystem::Exists(context.setupFolder + license, false))
            files_.CopyFile(context.setupFolder + license, folder + license, kCopyAlwaysOverwrite);
    }
}

void CInstallSteps::RegisterFiles()
{
    const std::vector<HVString>& files = files_.FilesToRegister();
    page_.SetProgressRange(0, static_cast<int32_t>(files.size()));
    page_.SetProgressPosition(0);
    page_.SetStatusText(u"Registering program files...");
    const bool server = context_.product.IsServerEdition();
    for (size_t i = 0; i < files.size(); ++i) {
        page_.DrainMessages();
        const HVString& file = files[i];
        // The server edition's own modules are registered as a service by the plug-in step.
        if (!(server && CCopyRules::MentionsServer(file))) {
            components_.RegisterServer(file);
            if (CCopyRules::IsInputPlugin(file))
                components_.InstallInputPlugin(file);
        }
        page_.SetProgressPosition(static_cast<int32_t>(i));
    }
}

CInstallSteps::Outcome CInstallSteps::RunPlugins()
{
    page_.ShowStage(u"Installing Plugins", u"Please wait while Install Wizard installs and registers plug-ins.", false);
    page_.SetStatusText(u"Initializing...");
    components_.RunPluginStep(page_);
    if (FailsHere(u"plugins"))
        return Outcome::Failed;
    RemoveWhatThisVersionLeftOut();
    return Outcome::Continue;
}

bool CInstallSteps::EnoughSpace()
{
    const CInstallContext& context = context_;
    // Per drive, what the copy writes there: the program files, and both passes of the system
    // files and fonts. What it replaces is kept until the end, so it frees nothing before then.
    std::map<HVString, uint64_t> needed;
    const auto add = [&](const HVString& destination, uint64_t bytes) {
        if (destination.GetLength() >= 3)
            needed[destination.Left(3).MakeUpper()] += bytes;
    };
    add(context.installFolder, CFileInstaller::TreeBytes(context.setupFolder + CProductIdentity::kProgramSourceFolder));
    if (!context.options.portable) {
        // Each tree listed once, counted once per pass.
        const uint64_t systemBytes = CFileInstaller::TreeBytes(context.setupFolder + u"System\\");
        const uint64_t fontBytes = CFileInstaller::TreeBytes(context.setupFolder + u"Fonts\\");
        const HVString windows = HVFileSystem::SystemFolder(&::GetWindowsDirectoryW);
        for (auto getFolder : {&::GetSystemDirectoryW, &::GetSystemWow64DirectoryW}) {
            const HVString system = HVFileSystem::SystemFolder(getFolder);
            if (system.IsEmpty())
                continue;
            add(system, systemBytes);
            add(windows, fontBytes);
        }
    }
    for (const auto& [drive, bytes] : needed) {
        uint64_t free = 0;
        const HVString at = drive == context.installFolder.Left(3).MakeUpper() ? context.installFolder : drive;
        if (bytes == 0 || !HVFileSystem::GetFreeDiskSpace(at, free) || free >= bytes)
            continue;
        HVLog::Write(HVLog::kError, "CInstallSteps::EnoughSpace", u"%s needs %I64u bytes, %I64u free", drive, bytes, free);
        ShowError(HVString::Format(HVTranslator::Translate(u"There is not enough space on drive %s to install %s.\r\n\r\n"
                                                           u"Setup needs %s there, and %s is free. Please make room and "
                                                           u"install again.").c_str(),
                                   drive.Left(2), context.product.GetDisplayName(), HVFileSystem::GetFileSizeText(bytes),
                                   HVFileSystem::GetFileSizeText(free)),
                  u"Install Error");
        return false;
    }
    return true;
}

bool CInstallSteps::DiskFilledUp()
{
    if (!files_.DiskFull())
        return false;
    ShowError(HVTranslator::Translate(kCopyFailed) + u"\r\n\r\n" +
                  HVTranslator::Translate(u"The disk is full. Please make room and install again."),
              u"Install Error");
    return true;
}

void CInstallSteps::RemoveWhatThisVersionLeftOut()
{
    const HVString& folder = context_.installFolder;
    std::set<HVString> written;
    for (const InstallChange& change : context_.changes.Changes())
        if (change.kind == InstallChange::Kind::FileWritten || change.kind == InstallChange::Kind::FileStarted)
            written.insert(HVString(change.path).MakeLower());
    // The latest note of each file the earlier runs copied into the install folder.
    std::map<HVString, const InstallChange*> earlier;
    for (const InstallChange& change : context_.changes.Earlier()) {
        const HVString key = HVString(change.path).MakeLower();
        if (change.kind == InstallChange::Kind::FileWritten && change.path.StartsWithNoCase(folder.view()))
            earlier[key] = &change;
        else if (change.kind == InstallChange::Kind::FileDeleted)
            earlier.erase(key);
    }
    for (const auto& [key, change] : earlier) {
        // Only what a copy of the program files wrote carries a fingerprint to tell it by.
        if (written.count(key) || change->after.Find(u':') == HVString::npos || !HVFileSystem::Exists(change->path, false))
            continue;
        if (CFileInstaller::FingerprintOf(change->path) != change->after) {
            HVLog::Write(HVLog::kInfo, "CInstallSteps::RemoveWhatThisVersionLeftOut", u"%s stays: it changed since", change->path);
            continue;
        }
        HVLog::Write(HVLog::kInfo, "CInstallSteps::RemoveWhatThisVersionLeftOut", u"%s is no longer installed", change->path);
        files_.RemoveKeeping(change->path);
    }
}

// Test-only: IW_TEST_ONLY_FAIL_STEP names a place where the install fails as if its step had
// ("records", "shell", "plugins"), so that the rollback is tested from each.
bool CInstallSteps::FailsHere(const char16_t* step)
{
    const wchar_t* value = ::_wgetenv(L"IW_TEST_ONLY_FAIL_STEP");
    if (!value || HVString(value) != step)
        return false;
    HVLog::Write(HVLog::kError, "CInstallSteps::FailsHere", u"The install fails at the step \"%s\" (a test asked)", step);
    return true;
}

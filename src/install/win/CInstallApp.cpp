#include "install/win/CInstallApp.h"

#include "changes/CInstallRecord.h"
#include "changes/win/CInstallRecordFile.h"
#include "engine/win/CInstallRollback.h"
#include "install/CInstallSettings.h"
#include "install/win/CInstallWizard.h"
#include "install/win/CLanguageSelectionDlg.h"
#include "install/win/CNeedInternetExplorerDlg.h"
#include "install/win/CStartupProbe.h"
#include "install/win/MachinePlaces.h"
#include "product/CAnswerFile.h"
#include "product/CCommandLineParser.h"
#include "product/CSetupFolders.h"
#include "product/InstallExitCode.h"

#include "foundation/HVFileSystemPath.h"
#include "foundation/HVLog.h"
#include "foundation/HVTextFileReader.h"
#include "foundation/HVTranslator.h"
#include "foundation/win/HVFileSystem.h"
#include "toolkit/win/HVMessageBox.h"
#include "toolkit/win/HVToolkit.h"

namespace
{
const char* const kInstallAppSource = "CInstallApp::Startup";

const char16_t* YesNo(bool value) { return value ? u"yes" : u"no"; }
}

CInstallApp::CInstallApp()
{
    // Until start-up has decided otherwise, an early end is a fatal error.
    SetExitCode(kExitFatalError);
}

CInstallApp::~CInstallApp()
{
    // The translator is ours; nothing may ask it once we are gone.
    if (HVTranslator::Get() == &translations_)
        HVTranslator::Set(nullptr);
}

CInstallApp* CInstallApp::Get() { return static_cast<CInstallApp*>(HVApp::Get()); }

bool CInstallApp::InitInstance()
{
    // The switches that govern the run's own output are read ahead of the real parse (step 4),
    // so that the steps before it are logged too and no box of theirs waits for a person who
    // isn't there. Parsing has no side effects, so reading twice is harmless.
    InstallOptions early;
    CCommandLineParser::Parse(GetCommandLine(), early);
    OpenLog(early);
    SuppressMessagesIfAsked(early.suppressMessages);
    if (!HVExecutableApp::InitInstance())
    {
        HVLog::Write(HVLog::kError, "CInstallApp::InitInstance", u"The application framework failed to start");
        return false;
    }
    HVLog::Write(HVLog::kInfo, "CInstallApp::InitInstance", u"Install Wizard %s", GetModulePath());
    HVLog::Write(HVLog::kInfo, "CInstallApp::InitInstance", u"Command line: %s", GetCommandLine());
    return true;
}

void CInstallApp::SuppressMessagesIfAsked(bool suppress)
{
    HVMessageBox::SetSuppressed(suppress);
    // The system's own boxes on our behalf (a crash, a drive without a disk) would wait for a
    // person just as ours would.
    if (!suppress)
        return;
    ::SetErrorMode(SEM_FAILCRITICALERRORS | SEM_NOGPFAULTERRORBOX | SEM_NOOPENFILEERRORBOX);
    HVLog::Write(HVLog::kInfo, "CInstallApp::InitInstance", u"Messages suppressed: no box is shown, each takes its default answer");
}

void CInstallApp::OpenLog(const InstallOptions& early)
{
    if (early.log)
    {
        HVString path = early.logPath;
        if (path.IsEmpty())
        {
            wchar_t temp[MAX_PATH + 1];
            const DWORD length = ::GetTempPathW(MAX_PATH + 1, temp);
            path = HVFileLogger::DatedName(length ? HVString(temp, static_cast<int32_t>(length)) : HVString(u".\\"),
                                           u"Install Wizard");
        }
        if (fileLogger_.Open(path))
        {
            SetLogger(&fileLogger_);
            return;
        }
        // No log file is no reason to stop an install: the debugger still gets the lines.
        SetLogger(&debugLogger_);
        HVLog::Write(HVLog::kWarning, "CInstallApp::OpenLog", u"Can't write the log file %s (error %d)", path,
                     ::GetLastError());
        return;
    }
    SetLogger(&debugLogger_);
}

bool CInstallApp::Startup()
{
    TakeSingleInstanceMutex();
    RemoveStaleVirtualStoreKeys();
    ReadSetupFolder();
    if (ShowHelpIfAsked() || !LoadAnswers())
        return false;
    PrepareLook();
    PrepareLanguage();
    if (!JudgeSingleInstance())
        return false;
    if (options_.rollback) {
        RollBackStoppedInstall();
        return false;
    }

    const bool ctrl = ::GetKeyState(VK_CONTROL) < 0;
    const bool shift = ::GetKeyState(VK_SHIFT) < 0;
    const bool f = ::GetKeyState('F') < 0;
    if (CEnvironmentChecks::SkipRequested(ctrl, shift, f))
    {
        HVLog::Write(HVLog::kWarning, kInstallAppSource, u"Ctrl+Shift+F held: environment checks skipped");
    }
    else if (!CheckEnvironment())
    {
        return false;
    }

    PlaceLauncher();
    RunWizard();
    // Also after a cancel: the choices made until then are what an administrator came for.
    SaveAnswers();
    virtualStore_.Close();
    virtualStoreWow_.Close();
    return false;
}

void CInstallApp::ExitInstance()
{
    virtualStore_.Close();
    virtualStoreWow_.Close();
    HVLog::Write(HVLog::kInfo, "CInstallApp::ExitInstance", u"Exit code %d", GetExitCode());
}

void CInstallApp::TakeSingleInstanceMutex()
{
    mutex_.Reset(::CreateMutexW(nullptr, FALSE, kMutexName));
    mutexError_ = ::GetLastError();
    HVLog::Write(HVLog::kInfo, kInstallAppSource, u"Single-instance mutex: %s (error %d)",
                 mutex_ ? u"created or opened" : u"not available", mutexError_);
}

void CInstallApp::RemoveStaleVirtualStoreKeys()
{
    // Old 32-bit installers running without elevation had their machine-wide writes
    // redirected here; left behind, they would shadow the real keys for the product.
    struct Store
    {
        HVRegKey& key;
        const char16_t* path;
    };
    Store stores[] = {
        {virtualStore_, u"Software\\Classes\\VirtualStore\\Machine\\Software"},
        {virtualStoreWow_, u"Software\\Classes\\VirtualStore\\Machine\\Software\\Wow6432Node"},
    };
    for (Store& store : stores)
    {
        if (!store.key.Open(HKEY_CURRENT_USER, store.path, KEY_READ | KEY_WRITE))
            continue;
        if (!HVRegKey::KeyExists(store.key.Get(), u"Halvard"))
            continue;
        const bool deleted = store.key.DeleteSubKey(u"Halvard");
        HVLog::Write(HVLog::kInfo, kInstallAppSource, u"VirtualStore %s\\Halvard: %s", store.path,
                     deleted ? u"deleted" : u"kept (it has subkeys)");
    }
}

void CInstallApp::ReadSetupFolder()
{
    CSetupFolders::Apply(GetSetupFolder(), [](const HVString& path) { return HVFileSystem::Exists(path, false); },
                         options_);
    HVLog::Write(HVLog::kInfo, kInstallAppSource, u"Setup folder: %s", GetSetupFolder());
    HVLog::Write(HVLog::kInfo, kInstallAppSource, u"Install description: %s", options_.installDescriptionPath);

    if (!description_.Load(options_.installDescriptionPath))
        HVLog::Write(HVLog::kWarning, kInstallAppSource, u"Install description not readable: the defaults apply");
    const CInstallSettings settings = CInstallSettings::Read(
        description_, options_.installDescriptionPath,
        [](const HVString& folder) { return HVFileSystem::FolderExists(folder); });
    if (!settings.GetSupportFolder().IsEmpty())
        options_.supportFolder = settings.GetSupportFolder();
    options_.allowDowngrade = settings.GetAllowDowngrade();
    options_.bundledMediaFolder = settings.GetBundledMediaFolder();
    HVLog::Write(HVLog::kInfo, kInstallAppSource, u"Install settings %s; support %s, library %s, bundled media \"%s\", allow downgrade %s",
                 settings.Applies() ? u"read" : u"not applicable", options_.supportFolder, options_.libraryFolder,
                 options_.bundledMediaFolder, YesNo(options_.allowDowngrade));

    product_ = std::make_unique<CProductIdentity>(GetSetupFolder(), description_.GetText(u"/*/Product/LauncherName"),
                                                  description_.GetText(u"/*/Product/Features"));

    for (const HVString& piece : CCommandLineParser::Parse(GetCommandLine(), options_))
        HVLog::Write(HVLog::kWarning, kInstallAppSource, u"Unknown option ignored: /%s", piece);
    HVLog::Write(HVLog::kInfo, kInstallAppSource,
                 u"Options: silent %s, upgrade %s, no associations %s, no dependencies %s, no upgrade %s, "
                 u"no driver %s, no run %s, distributor \"%s\"",
                 YesNo(options_.silent), YesNo(options_.upgrade), YesNo(options_.noAssociations),
                 YesNo(options_.noDependencies), YesNo(options_.noUpgrade), YesNo(options_.noDriver),
                 YesNo(options_.noRun), options_.distributorId);
}

bool CInstallApp::ShowHelpIfAsked()
{
    if (!options_.help)
        return false;
    HVLog::Write(HVLog::kInfo, kInstallAppSource, u"Switch list shown");
    HVMessageBox::Show(nullptr, HVTranslator::Translate(CCommandLineParser::HelpText()),
                       HVTranslator::Translate(u"Install Wizard"), MB_OK | MB_ICONINFORMATION);
    SetExitCode(kExitInstalled);
    return true;
}

void CInstallApp::PrepareLook()
{
    // The skin is the product's standard one, or the skin file the description names. Its
    // icon is in place before the toolkit starts, so the first window already wears it.
    HVString skinFile = GetSetupFolder() + u"Listenwell\\Skins\\Standard View\\main.xml";
    const HVString megaSkin = description_.GetText(u"/*/General/MegaSkin").Trim();
    if (!megaSkin.IsEmpty())
        skinFile = HVFileSystemPath::ResolveDots(HVFileSystemPath::IsAbsolute(megaSkin.view()) ? megaSkin
                                                                                              : GetSetupFolder() + megaSkin);
    HVToolkit::ApplySkin(skinFile);
    HVToolkit::Initialize();
}

void CInstallApp::PrepareLanguage()
{
    // An unattended run asks nothing, the language included; an answer file's language is
    // taken as it stands, or offered first when the question is asked.
    const bool ask = !options_.silent && description_.GetInteger(u"/*/Installer/ShowLanguageSelection", 0) != 0;
    const std::optional<HVString>& answered = options_.answers.language;
    if (!ask && !answered)
        return;
    const HVString folder = GetSetupFolder() + u"Languages\\";
    HVString file;
    if (ask) {
        file = CLanguageSelectionDlg::Run(nullptr, folder, answered.value_or(HVString()));
    } else {
        const std::vector<CLanguageInfo> languages = CLanguageSelectionDlg::ListLanguages(folder);
        file = languages[CLanguageSelectionDlg::IndexForLocale(languages, *answered)].path;
        if (file.IsEmpty() && !answered->EqualsNoCase(CTranslationService::kEnglishCode))
            HVLog::Write(HVLog::kWarning, "CInstallApp::PrepareLanguage", u"No language %s in %s: English", *answered, folder);
    }
    if (!file.IsEmpty())
        translations_.Load(file);
    HVTranslator::Set(&translations_);
    options_.answers.language = translations_.LanguageCode();
    HVLog::Write(HVLog::kInfo, "CInstallApp::PrepareLanguage", u"Language: %s", translations_.LanguageName());
}

bool CInstallApp::LoadAnswers()
{
    const HVString& path = options_.loadInfPath;
    if (!path.IsEmpty()) {
        HVString text;
        if (!HVTextFileReader::Read(path, text)) {
            HVLog::Write(HVLog::kError, "CInstallApp::LoadAnswers", u"The answer file %s can't be read: nothing is installed",
                         path);
            HVMessageBox::Show(nullptr,
                               HVString::Format(HVTranslator::Translate(u"The answer file %s can not be read.\r\n\r\n").c_str(),
                                                path) +
                                   HVTranslator::Translate(u"Please check the file named by /LoadInf and run setup again."),
                               HVTranslator::Translate(u"Install Error"), MB_OK | MB_ICONERROR);
            return false;
        }
        const int problems = CAnswerFile::Apply(text, options_);
        // Switches given on the command line win over the file's keys.
        CCommandLineParser::Parse(GetCommandLine(), options_);
        HVLog::Write(HVLog::kInfo, "CInstallApp::LoadAnswers", u"Answers read from %s (%d ignored)", path, problems);
    }
    if (!options_.destinationFolder.IsEmpty())
        options_.answers.folder = options_.destinationFolder;
    return true;
}

void CInstallApp::SaveAnswers() const
{
    if (options_.saveInfPath.IsEmpty())
        return;
    const HVString text = HVString(u"\xFEFF") + CAnswerFile::Write(options_);
    const std::string bytes = text.ToUtf8();
    const bool saved = HVFileSystem::WriteFile(options_.saveInfPath, bytes.data(), bytes.size());
    HVLog::Write(saved ? HVLog::kInfo : HVLog::kError, "CInstallApp::SaveAnswers", u"Answer file %s: %s",
                 options_.saveInfPath, saved ? u"written" : u"can't be written");
}

bool CInstallApp::JudgeSingleInstance()
{
    if (mutexError_ != ERROR_ALREADY_EXISTS && mutexError_ != ERROR_ACCESS_DENIED)
    {
        HVLog::Write(HVLog::kInfo, kInstallAppSource, u"No other installer is running");
        return true;
    }
    HVLog::Write(HVLog::kWarning, kInstallAppSource, u"Another installer is running (error %d)", mutexError_);
    const HVString text =
        HVTranslator::Translate(u"Another instance of the Halvard installer is already running on this system.\r\n\r\n") +
        HVTranslator::Translate(u"Please finish any other Halvard installations and try again.");
    HVMessageBox::Show(nullptr, text, HVTranslator::Translate(u"Halvard Installer"), MB_OK | MB_ICONWARNING);
    SetExitCode(kExitAnotherInstaller);
    return false;
}

bool CInstallApp::CheckEnvironment()
{
    CStartupProbe probe(*product_, description_, options_);
    const CEnvironmentChecks::Result result = CEnvironmentChecks::Run(probe);
    HVLog::Write(HVLog::kInfo, "CInstallApp::CheckEnvironment", u"Environment checks: %s",
                 CEnvironmentChecks::Name(result));
    if (result == CEnvironmentChecks::Result::Passed)
        return true;
    productDeclined_ = probe.ProductDeclined();
    ReportCheckFailure(result);
    return false;
}

HVString CInstallApp::ProductText(const char16_t* english) const
{
    return HVString::Format(HVTranslator::Translate(english).c_str(), product_->GetDisplayName());
}

void CInstallApp::ReportCheckFailure(CEnvironmentChecks::Result result)
{
    using Result = CEnvironmentChecks::Result;
    switch (result)
    {
    case Result::Passed: break;
    case Result::NoRights:
        HVMessageBox::Show(
            nullptr,
            HVTranslator::Translate(u"Sorry, but you do not have sufficient rights to install the program.\r\n") +
                HVTranslator::Translate(
                    u"Please make sure you have administrative rights before you begin the installation."),
            HVTranslator::Translate(u"Information"), MB_OK | MB_ICONINFORMATION);
        SetExitCode(kExitNoRights);
        break;
    case Result::ProductRunning:
        // The running-copy check has already told the user.
        SetExitCode(productDeclined_ ? kExitCancelled : kExitProductRunning);
        break;
    case Result::BrowserTooOld:
        CNeedInternetExplorerDlg().DoModal();
        SetExitCode(kExitBrowserTooOld);
        break;
    case Result::NoSSE2:
        HVMessageBox::Show(nullptr,
                           ProductText(u"The %s Install Wizard failed to detect an SSE2-capable CPU.\r\n\r\n") +
                               ProductText(u"%s requires SSE2 capabilities to run.  Setup will now abort."),
                           HVTranslator::Translate(u"SSE2 Not Available"), MB_OK | MB_ICONERROR);
        SetExitCode(kExitNotSupported);
        break;
    case Result::WindowsNotSupported:
        HVMessageBox::Show(
            nullptr,
            ProductText(u"The %s Install Wizard can not run on this version of Microsoft Windows.\r\n\r\n") +
                ProductText(u"%s requires Windows 2000 or later.  Setup will now abort."),
            HVTranslator::Translate(u"Operating System Not Supported"), MB_OK | MB_ICONERROR);
        SetExitCode(kExitNotSupported);
        break;
    }
}

void CInstallApp::PlaceLauncher()
{
    // The setup folder's product folder gets the launcher kept in "System\Always Overwrite\":
    // moved over it (one rename on the same volume), then copied back so that the copy rules
    // still find it where they look. A read-only medium leaves both as they are.
    const HVString& launcher = product_->GetLauncherName();
    const HVString source = GetSetupFolder() + u"System\\Always Overwrite\\" + launcher;
    const HVString target = GetSetupFolder() + CProductIdentity::kProgramSourceFolder + launcher;
    if (!HVFileSystem::Exists(source, false))
    {
        HVLog::Write(HVLog::kInfo, "CInstallApp::PlaceLauncher", u"No launcher in %s", source);
        return;
    }
    bool placed = false;
    if (HVFileSystem::MoveFile(source, target, true, false))
        placed = HVFileSystem::CopyFile(target, source, false);
    else
        placed = HVFileSystem::CopyFile(source, target, false);
    HVLog::Write(placed ? HVLog::kInfo : HVLog::kWarning, "CInstallApp::PlaceLauncher", u"Launcher %s: %s", target,
                 placed ? u"in place" : u"left as it was");
}

void CInstallApp::RunWizard()
{
    CInstallWizard wizard(options_, description_, *product_, GetSetupFolder());
    switch (wizard.RunWizard(nullptr))
    {
    case CInstallWizard::Result::Finished:
        SetExitCode(wizard.RestartPending() ? kExitRestartNeeded : kExitInstalled);
        break;
    case CInstallWizard::Result::Cancelled: SetExitCode(kExitCancelled); break;
    case CInstallWizard::Result::Failed:
        HVLog::Write(HVLog::kError, "CInstallApp::RunWizard", u"The wizard could not be shown or the install could not go on");
        SetExitCode(kExitFatalError);
        break;
    }
    if (GetExitCode() == kExitCancelled || GetExitCode() == kExitFatalError)
        RollBack(wizard.InstallRun());
    else
        wizard.InstallRun().EndRecord(GetExitCode());
    wizard.InstallRun().RemoveFoldersMadeEarly();
}

void CInstallApp::RollBackStoppedInstall()
{
    const HVString folder = HVFileSystem::NormalizeFolderPath(
        options_.destinationFolder.IsEmpty() ? product_->GetEarlierInstallationFolder() : options_.destinationFolder);
    std::vector<uint8_t> bytes;
    const CInstallRecord::Contents record =
        !folder.IsEmpty() && HVFileSystem::ReadFile(CInstallRecordFile::PathIn(folder), bytes)
            ? CInstallRecord::Parse(bytes)
            : CInstallRecord::Contents{.problem = u"There is no install record."};
    if (!record.problem.IsEmpty()) {
        HVLog::Write(HVLog::kError, "CInstallApp::RollBackStoppedInstall", u"Nothing undone in %s: %s", folder, record.problem);
        SetExitCode(kExitFatalError);
        return;
    }
    if (record.runs.empty() || record.runs.back().ended) {
        HVLog::Write(HVLog::kInfo, "CInstallApp::RollBackStoppedInstall", u"Nothing to undo in %s: the last install came to its end",
                     folder);
        SetExitCode(kExitInstalled);
        return;
    }
    const CInstallRecord::Contents::Run& stopped = record.runs.back();
    const std::vector<InstallChange> changes(record.changes.begin() + static_cast<std::ptrdiff_t>(stopped.firstChange),
                                             record.changes.end());
    HVLog::Write(HVLog::kInfo, "CInstallApp::RollBackStoppedInstall", u"Undoing the stopped install in %s (%d changes)",
                 folder, static_cast<int32_t>(changes.size()));
    const CInstallRollback::Outcome outcome =
        CInstallRollback::Run(changes, MachinePlaces(folder, record.userFolders), stopped.offset, GetModulePath());
    SetExitCode(!outcome.complete ? kExitFatalError : outcome.restartNeeded ? kExitRestartNeeded : kExitInstalled);
    TellRollback(outcome.complete);
}

void CInstallApp::TellRollback(bool complete)
{
    const HVString text = complete ? HVTranslator::Translate(CInstallRollback::kReturnedText)
                                   : HVTranslator::Translate(u"Setup did not complete, and some of its changes could not be "
                                                             u"undone. The log names them.");
    HVLog::Write(complete ? HVLog::kInfo : HVLog::kError, "CInstallApp::TellRollback", u"%s", text);
    if (!options_.silent)
        HVMessageBox::Show(nullptr, text, HVTranslator::Translate(u"Install Wizard"),
                           MB_OK | (complete ? MB_ICONINFORMATION : MB_ICONERROR));
}

void CInstallApp::RollBack(CInstallRun& run)
{
    const std::vector<InstallChange> changes = run.InstallChanges();
    if (changes.empty()) {
        HVLog::Write(HVLog::kInfo, "CInstallApp::RollBack", u"The install changed nothing: nothing to undo");
        // Nothing to undo; a record the run began for nothing goes with it.
        if (run.InstallBegun() && run.RecordLengthBefore() == 0 && !run.InstallFolder().IsEmpty()) {
            run.AbandonRecord();
            CInstallRecordFile::CutBack(run.InstallFolder(), 0);
        } else {
            run.EndRecord(GetExitCode());
        }
        return;
    }
    run.AbandonRecord();
    const HVString folder = run.InstallFolder().IsEmpty() ? HVFileSystem::NormalizeFolderPath(options_.destinationFolder)
                                                          : run.InstallFolder();
    const CInstallRollback::Outcome outcome =
        CInstallRollback::Run(changes, MachinePlaces(folder, CInstallRun::UserShortcutFolders()),
                              run.RecordLengthBefore(), GetModulePath());
    TellRollback(outcome.complete);
}

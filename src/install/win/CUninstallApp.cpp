#include "install/win/CUninstallApp.h"

#include "changes/CInstallRecord.h"
#include "engine/win/CUninstaller.h"
#include "install/win/CRunningCopyCheck.h"
#include "install/win/CUninstallConfirmWnd.h"
#include "install/win/CUninstallProgressWnd.h"
#include "install/win/MachinePlaces.h"
#include "product/InstallExitCode.h"
#include "product/win/CProductIdentity.h"

#include "foundation/HVFileSystemPath.h"
#include "foundation/HVLog.h"
#include "foundation/HVTranslator.h"
#include "foundation/win/HVFileSystem.h"
#include "foundation/win/HVProductPaths.h"
#include "toolkit/win/HVMessageBox.h"
#include "toolkit/win/HVToolkit.h"

#include <shellapi.h>
#include <shlobj.h>

#include <chrono>
#include <string>

namespace
{
const char* const kSource = "CUninstallApp";
// The Windows Installer's code for "another installation is in progress": what deployment tools
// expect when a removal can't start because the product is in use.
constexpr int kExitProductKeptRunning = kExitAnotherInstaller;

std::vector<HVString> Arguments(const HVString& commandLine)
{
    std::vector<HVString> arguments;
    int count = 0;
    LPWSTR* list = ::CommandLineToArgvW(reinterpret_cast<const wchar_t*>(commandLine.c_str()), &count);
    if (!list)
        return arguments;
    for (int i = 1; i < count; ++i)
        arguments.emplace_back(list[i]);
    ::LocalFree(list);
    return arguments;
}
}

bool CUninstallApp::InitInstance()
{
    options_ = CUninstallOptions::Parse(Arguments(HVString(::GetCommandLineW())));
    if (options_.log) {
        HVString path = options_.logPath;
        if (path.IsEmpty()) {
            wchar_t temp[MAX_PATH + 1] = {};
            const DWORD length = ::GetTempPathW(MAX_PATH + 1, temp);
            path = HVFileLogger::DatedName(length ? HVString(temp) : HVString(u".\\"), u"Sonora Uninstall");
        }
        SetLogger(fileLogger_.Open(path) ? static_cast<IHVLogger*>(&fileLogger_) : &debugLogger_);
    } else {
        SetLogger(&debugLogger_);
    }
    HVMessageBox::SetSuppressed(options_.suppressMessages);
    if (options_.suppressMessages)
        ::SetErrorMode(SEM_FAILCRITICALERRORS | SEM_NOGPFAULTERRORBOX | SEM_NOOPENFILEERRORBOX);
    if (!HVExecutableApp::InitInstance())
        return false;
    HVLog::Write(HVLog::kInfo, kSource, u"Uninstall %s", GetModulePath());
    HVLog::Write(HVLog::kInfo, kSource, u"Command line: %s", GetCommandLine());
    for (const HVString& unknown : options_.unknown)
        HVLog::Write(HVLog::kWarning, kSource, u"Unknown switch ignored: %s", unknown);
    return true;
}

bool CUninstallApp::Startup()
{
    if (options_.removeAfter) {
        const HVString file = options_.removeAfterPaths.empty() ? HVString() : options_.removeAfterPaths.front();
        const std::vector<HVString> folders(options_.removeAfterPaths.begin() + (file.IsEmpty() ? 0 : 1),
                                            options_.removeAfterPaths.end());
        // Only the uninstaller itself, never a file that merely has its name.
        if (HVFileSystemPath::GetFileName(file).EqualsNoCase(kProgramName))
            CUninstaller::FinishAfterExit(options_.removeAfter, file, folders);
        SetExitCode(kExitInstalled);
        return false;
    }
    SetExitCode(Uninstall());
    HVLog::Write(HVLog::kInfo, kSource, u"Exit code %d", GetExitCode());
    return false;
}

HVString CUninstallApp::Text(const char16_t* english) const
{
    const HVString name = CProductIdentity::kDisplayName;
    return HVString::Format(HVTranslator::Translate(english).c_str(), name, name);
}

int CUninstallApp::ShowBox(const HVString& text, UINT type) const
{
    return HVMessageBox::Show(nullptr, text, Text(u"Uninstall %s"), type);
}

int CUninstallApp::Uninstall()
{
    bool keepSettings = !options_.removeSettings;
    if (!options_.silent) {
        HVToolkit::Initialize();
        if (!Confirm(keepSettings)) {
            HVLog::Write(HVLog::kInfo, kSource, u"Cancelled at the question");
            return kExitCancelled;
        }
    }
    HVLog::Write(HVLog::kInfo, kSource, u"Library and settings: %s", keepSettings ? u"kept" : u"removed");
    if (!EnsureProductStopped())
        return kExitProductKeptRunning;

    const HVString recordPath = GetModuleFolder() + CInstallRecord::kFileName;
    std::vector<uint8_t> bytes;
    if (!HVFileSystem::ReadFile(recordPath, bytes))
        return Refuse(HVString::Format(HVTranslator::Translate(u"The install record \"%s\" is missing or can't be read.").c_str(),
                                       recordPath));
    const CInstallRecord::Contents record =
        CInstallRecord::Parse(bytes);
    HVLog::Write(HVLog::kInfo, kSource, u"Install record: %d change(s), %d damaged line(s)",
                 static_cast<int32_t>(record.changes.size()), static_cast<int32_t>(record.damagedLines));
    // A record that a reinstall could not read was kept beside this one: what it names can't be
    // told, so nothing is removed until someone has looked at it.
    std::vector<HVFileSystem::Entry> damaged;
    HVFileSystem::EnumerateFolder(GetModuleFolder(), damaged, u"Install Record (damaged*).txt");
    if (!damaged.empty())
        return Refuse(HVString::Format(
            HVTranslator::Translate(u"Beside the install record \"%s\" lies \"%s\", an earlier record that could not be read.").c_str(),
            recordPath, GetModuleFolder() + damaged.front().name));
    const CUninstallPlan plan = CUninstallPlan::Make(record, Places(record), keepSettings);
    if (plan.Refused())
        return Refuse(plan.Reason());

    CUninstaller uninstaller(GetModuleFolder(), GetModulePath());
    // Nobody may be there to see a window in an unattended run.
    if (options_.silent || options_.suppressMessages) {
        uninstaller.Run(plan);
    } else {
        CUninstallProgressWnd progress(Text(u"Removing %s..."), [&](CUninstallProgressWnd& window) {
            uninstaller.Run(plan, [&](size_t done, size_t total, const HVString& what) { window.Update(done, total, what); });
        });
        if (!progress.DoModal(nullptr))
            uninstaller.Run(plan);
    }
    // Explorer shows the file types' old programs and icons again.
    ::SHChangeNotify(SHCNE_ASSOCCHANGED, SHCNF_IDLIST, nullptr, nullptr);
    uninstaller.LeaveTheRestToACopy();
    return Report(uninstaller.Failures(), uninstaller.RestartNeeded());
}

bool CUninstallApp::Confirm(bool& keepSettings)
{
    const HVString question = Text(u"Do you want to remove %s from this computer?\r\n\r\n"
                                   u"Its program files, shortcuts and file associations are removed; file types it "
                                   u"took over go back to the programs that had them before.");
    const HVString keepText = HVTranslator::Translate(u"Keep my library and settings");
    if (HVMessageBox::SkipUnattended(Text(u"Uninstall %s"), question, HVTranslator::Translate(u"Uninstall")))
        return true;
    CUninstallConfirmWnd window(question, keepText, keepSettings);
    window.okText = HVTranslator::Translate(u"Uninstall");
    window.cancelText = HVTranslator::Translate(u"Cancel");
    if (window.Run(nullptr, Text(u"Uninstall %s")) != IDOK)
        return false;
    keepSettings = window.KeepSettings();
    return true;
}

bool CUninstallApp::EnsureProductStopped()
{
    CRunningCopyCheck::Product product;
    product.displayName = CProductIdentity::kDisplayName;
    product.isRunning = [] { return CProductIdentity::IsRunning(); };
    product.mainWindow = [] { return CProductIdentity::GetMainWindow(); };
    product.closeRunningCopy = [] {
        if (!CProductIdentity::CloseRunningCopy())
            return;
        const auto start = std::chrono::steady_clock::now();
        while (CProductIdentity::IsRunning() && std::chrono::steady_clock::now() - start <
                                                     std::chrono::milliseconds(CRunningCopyCheck::kPollMilliseconds))
            ::Sleep(20);
    };
    CRunningCopyCheck check(std::move(product), options_.silent);
    if (check.Run())
        return true;
    HVLog::Write(HVLog::kError, kSource, u"%s is still running: nothing removed", HVString(CProductIdentity::kDisplayName));
    return false;
}

CUninstallPlan::Places CUninstallApp::Places(const CInstallRecord::Contents& record) const
{
    return MachinePlaces(GetModuleFolder(), record.userFolders);
}

int CUninstallApp::Refuse(const HVString& reason)
{
    HVLog::Write(HVLog::kError, kSource, u"Nothing removed: %s", reason);
    if (!options_.silent)
        ShowBox(Text(u"%s can't be removed safely.\r\n\r\n") + reason + u"\r\n\r\n" +
                    HVTranslator::Translate(u"Nothing was removed."),
                MB_OK | MB_ICONERROR);
    return kExitFatalError;
}

int CUninstallApp::Report(size_t failures, bool restartNeeded)
{
    if (failures) {
        if (!options_.silent)
            ShowBox(Text(u"%s could not be removed completely.\r\n\r\n") +
                        HVTranslator::Translate(u"Some of its files or registry entries could not be removed. Its "
                                                u"uninstall entry was kept, so that you can try again."),
                    MB_OK | MB_ICONERROR);
        return kExitFatalError;
    }
    if (restartNeeded) {
        if (!options_.silent)
            ShowBox(Text(u"%s was removed from your computer.\r\n\r\n") +
                        HVTranslator::Translate(u"Some of its files were in use; they are deleted when Windows restarts."),
                    MB_OK | MB_ICONINFORMATION);
        return kExitRestartNeeded;
    }
    if (!options_.silent)
        ShowBox(Text(u"%s was removed from your computer."), MB_OK | MB_ICONINFORMATION);
    return kExitInstalled;
}

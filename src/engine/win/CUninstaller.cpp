#include "engine/win/CUninstaller.h"

#include "changes/win/CComponentRegistration.h"
#include "changes/win/RunProgram.h"
#include "foundation/HVFileSystemPath.h"
#include "foundation/HVLog.h"
#include "foundation/win/HVFileSystem.h"
#include "foundation/win/HVRegKey.h"
#include "foundation/win/HVSha256.h"
#include "foundation/win/HVUniqueResource.h"
#include "product/CProductRecordRules.h"

#include <algorithm>

namespace
{
const char* const kSource = "CUninstaller";
constexpr const char16_t* kSharedDlls = u"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\SharedDLLs";
// Long enough for any uninstaller to end once it has started its copy.
constexpr DWORD kWaitForExitMs = 60000;

const char16_t* ActionName(UninstallStep::Action action)
{
    static const char16_t* const names[] = {
        u"Leave", u"Unregister", u"Restore value", u"Delete value", u"Delete key", u"Delete shortcut", u"Remove font",
        u"Release shared file", u"Delete file", u"Put back file", u"Register again", u"Take back restart move",
        u"Remove library and settings", u"Delete record key",
        u"Remove key if empty", u"Remove empty keys", u"Delete install record", u"Remove folder",
    };
    static_assert(std::size(names) == static_cast<size_t>(UninstallStep::Action::RemoveFolder) + 1);
    return names[static_cast<int>(action)];
}

// What a value holds now in the ".reg" form; empty when there is no such value.
HVString CurrentData(HKEY root, const HVString& subKey, const HVString& name)
{
    HVRegKey key;
    DWORD type = 0;
    std::vector<uint8_t> data;
    if (!key.Open(root, subKey, KEY_READ) || !key.QueryValue(name, type, data))
        return HVString();
    return CProductRecordRules::DescribeData(type, data);
}

// The step's thing is still what the install left there; otherwise it is someone else's now.
bool StillOurs(const UninstallStep& step, const HVString& now, const char16_t* what)
{
    if (!step.check || now == step.expect)
        return true;
    HVLog::Write(HVLog::kInfo, kSource, u"%s %s%s%s is left: it changed since the install", what, step.path,
                 step.name.IsEmpty() ? u"" : u" | ", step.name);
    return false;
}

// A file outside the install folder goes only while its bytes are the ones written.
bool FileStillOurs(const UninstallStep& step)
{
    if (!step.check || !HVFileSystem::Exists(step.path, false))
        return true;
    return StillOurs(step, HVSha256::OfPath(step.path), u"The file");
}

void SplitLast(const HVString& path, HVString& parent, HVString& name)
{
    const int32_t slash = path.ReverseFind(u'\\');
    parent = slash == HVString::npos ? HVString() : path.Left(slash);
    name = slash == HVString::npos ? path : path.Mid(slash + 1);
}

// A key of the product's own with everything below it.
bool DeleteTree(HKEY root, const HVString& subKey)
{
    if (!HVRegKey::KeyExists(root, subKey))
        return true;
    HVString parentPath, name;
    SplitLast(subKey, parentPath, name);
    HVRegKey parent;
    return parent.Open(root, parentPath, KEY_READ | KEY_WRITE) && parent.DeleteSubKeyTree(name);
}

// The key when it holds nothing, after (with `below`) the keys below it that hold nothing: what
// others put there since keeps it.
bool RemoveIfEmpty(HKEY root, const HVString& subKey, bool below)
{
    HVRegKey key;
    if (!key.Open(root, subKey, KEY_READ))
        return true;
    if (below)
        for (const HVString& child : key.EnumSubKeys())
            RemoveIfEmpty(root, subKey + u"\\" + child, true);
    if (!key.EnumSubKeys().empty() || !key.EnumValueNames().empty()) {
        HVLog::Write(HVLog::kInfo, kSource, u"%s stays: something else is in it", subKey);
        return true;
    }
    key.Close();
    HVString parentPath, name;
    SplitLast(subKey, parentPath, name);
    HVRegKey parent;
    return parent.Open(root, parentPath, KEY_READ | KEY_WRITE) && parent.DeleteSubKey(name);
}
}

CUninstaller::CUninstaller(const HVString& installFolder, const HVString& ownPath)
    : installFolder_(installFolder), ownPath_(ownPath)
{
}

HKEY CUninstaller::SplitKey(const HVString& path, HVString& subKey)
{
    static const struct
    {
        const char16_t* name;
        HKEY root;
    } roots[] = {{u"HKLM", HKEY_LOCAL_MACHINE}, {u"HKCU", HKEY_CURRENT_USER}, {u"HKCR", HKEY_CLASSES_ROOT},
                 {u"HKU", HKEY_USERS}, {u"HKCC", HKEY_CURRENT_CONFIG}};
    const int32_t slash = path.Find(u'\\');
    const HVString rootName = slash == HVString::npos ? path : path.Left(slash);
    subKey = slash == HVString::npos ? HVString() : path.Mid(slash + 1);
    for (const auto& root : roots)
        if (rootName.EqualsNoCase(root.name))
            return root.root;
    return nullptr;
}

void CUninstaller::Run(const CUninstallPlan& plan, const Progress& progress)
{
    // The uninstaller in the install folder is the product's even when a run ended before the
    // record named it.
    ownFileLeft_ = CUninstallPlan::IsBelow(ownPath_, installFolder_);
    HVFileSystem::ListFiles(installFolder_, filesAtStart_);
    bool helpersDone = false;
    const std::vector<UninstallStep>& steps = plan.Steps();
    for (size_t i = 0; i < steps.size(); ++i) {
        const UninstallStep& step = steps[i];
        if (progress)
            progress(i, steps.size(), step.path);
        if (!helpersDone && step.action >= UninstallStep::Action::DeleteRecordFile) {
            RemoveWhatTheStepsLeft();
            helpersDone = true;
        }
        const bool record = step.action == UninstallStep::Action::DeleteRecordKey ||
                            step.action == UninstallStep::Action::DeleteRecordFile;
        if (record && failures_) {
            HVLog::Write(HVLog::kWarning, kSource, u"%s %s: kept, because %d step(s) failed", ActionName(step.action),
                         step.path, static_cast<int32_t>(failures_));
            continue;
        }
        const bool done = Do(step);
        HVLog::Write(done ? HVLog::kInfo : HVLog::kError, kSource, u"%s %s%s%s: %s", ActionName(step.action), step.path,
                     step.name.IsEmpty() ? u"" : u" | ", step.name, done ? u"done" : u"failed");
        failures_ += done ? 0 : 1;
    }
    if (progress)
        progress(steps.size(), steps.size(), HVString());
}

bool CUninstaller::Do(const UninstallStep& step)
{
    using Action = UninstallStep::Action;
    HVString subKey;
    const HKEY root = SplitKey(step.path, subKey);
    switch (step.action) {
    case Action::Leave:
        HVLog::Write(HVLog::kInfo, kSource, u"%s%s%s is left: %s", step.path, step.name.IsEmpty() ? u"" : u" | ", step.name,
                     step.data);
        return true;
    case Action::Unregister:
    case Action::Reregister: {
        const bool undo = step.action == Action::Unregister;
        if (!HVFileSystem::Exists(step.path, false)) {
            if (step.name.EqualsNoCase(InstallChange::kRegisteredAsDriver))
                HVLog::Write(HVLog::kWarning, kSource, u"The driver stays: its description %s is gone", step.path);
            return true;
        }
        // A module that won't unregister still goes: leaving its file would not undo its entries;
        // one given back registers as well as it can.
        if (!Register(step, undo))
            HVLog::Write(HVLog::kWarning, kSource, undo ? u"%s did not unregister" : u"%s did not register again", step.path);
        return true;
    }
    case Action::RestoreFile:
        return RestoreFile(step);
    case Action::CancelRestart:
        HVFileSystem::CancelMoveAtRestart(step.path, installFolder_);
        return true;
    case Action::RestoreValue: {
        uint32_t type = 0;
        std::vector<uint8_t> data;
        HVRegKey key;
        if (!root || !CProductRecordRules::ReadData(step.data, type, data))
            return false;
        if (!StillOurs(step, CurrentData(root, subKey, step.name), u"The value"))
            return true;
        return key.Create(root, subKey) && key.SetValue(step.name, type, data.data(), data.size());
    }
    case Action::DeleteValue: {
        HVRegKey key;
        if (!root || !key.Open(root, subKey, KEY_READ | KEY_WRITE))
            return root != nullptr;
        if (!key.HasValue(step.name) || !StillOurs(step, CurrentData(root, subKey, step.name), u"The value"))
            return true;
        return key.DeleteValue(step.name);
    }
    case Action::DeleteKey:
    case Action::DeleteRecordKey:
        return root && !subKey.IsEmpty() && DeleteTree(root, subKey);
    case Action::RemoveEmptyKey:
        return root && !subKey.IsEmpty() && RemoveIfEmpty(root, subKey, false);
    case Action::PruneKey:
        return root && !subKey.IsEmpty() && RemoveIfEmpty(root, subKey, true);
    case Action::DeleteShortcut:
        return RemoveShortcut(step);
    case Action::RemoveFile:
        return !FileStillOurs(step) || RemoveFile(step.path);
    case Action::DeleteRecordFile:
        return RemoveFile(step.path);
    case Action::RemoveFont:
        return RemoveFont(step);
    case Action::ReleaseSharedFile:
        return ReleaseSharedFile(step);
    case Action::RemoveSettings: {
        bool done = root && !subKey.IsEmpty() && DeleteTree(root, subKey);
        if (!step.name.IsEmpty() && HVFileSystem::FolderExists(step.name))
            done &= HVFileSystem::DeleteFolderTree(step.name);
        // The maker's key and folder above them go too when no other product of the maker is
        // left in them.
        HVString vendorKey, name;
        SplitLast(subKey, vendorKey, name);
        if (done && vendorKey.Find(u'\\') != HVString::npos)
            RemoveIfEmpty(root, vendorKey, false);
        if (done && !step.name.IsEmpty())
            HVFileSystem::RemoveFolder(HVFileSystemPath::GetFolder(HVFileSystemPath::RemoveBackslash(step.name)));
        return done;
    }
    case Action::RemoveFolder:
        if (!HVFileSystem::FolderExists(step.path) || HVFileSystem::RemoveFolder(step.path))
            return true;
        if (ownFileLeft_ && CUninstallPlan::IsBelow(ownPath_, step.path))
            foldersLeft_.push_back(step.path);
        else
            HVLog::Write(HVLog::kInfo, kSource, u"%s is kept: something not installed is in it", step.path);
        return true;
    }
    return false;
}

void CUninstaller::RemoveFoldersOf(const CUninstallPlan& plan)
{
    for (const UninstallStep& step : plan.Steps())
        if (step.action == UninstallStep::Action::RemoveFolder && HVFileSystem::FolderExists(step.path))
            HVFileSystem::RemoveFolder(step.path);
}

void CUninstaller::RemoveWhatTheStepsLeft()
{
    std::vector<HVString> now;
    HVFileSystem::ListFiles(installFolder_, now);
    for (const HVString& file : now) {
        const bool old = std::any_of(filesAtStart_.begin(), filesAtStart_.end(),
                                     [&](const HVString& was) { return was.EqualsNoCase(file.view()); });
        if (!old && !file.EqualsNoCase(ownPath_.view())) {
            HVLog::Write(HVLog::kInfo, kSource, u"%s was written while the uninstall ran: removed", file);
            RemoveFile(file);
        }
    }
}

bool CUninstaller::Register(const UninstallStep& step, bool undo)
{
    if (step.name.EqualsNoCase(InstallChange::kRegisteredAsDriver))
        return CComponentRegistration::RunPackageInstaller(installFolder_, undo ? u"/RemoveWDMDriver" : u"/InstallWDMDriver",
                                                           step.path);
    if (step.name.EqualsNoCase(InstallChange::kRegisteredAsService))
        return CComponentRegistration::RunServiceControl(step.path, undo);
    if (step.name.EqualsNoCase(InstallChange::kRegisteredByRegSvr32))
        return CComponentRegistration::RegisterWithRegSvr32(step.path, undo ? u"/u " : u"");
    if (step.name.EqualsNoCase(InstallChange::kRegisteredByPackageInstaller))
        return CComponentRegistration::RegisterWithPackageInstaller(installFolder_, step.path, undo);
    return undo ? CComponentRegistration::UnregisterServer(step.path) : CComponentRegistration::RegisterServer(step.path);
}

bool CUninstaller::RestoreFile(const UninstallStep& step)
{
    const bool folder = step.data.EndsWith(u"\\");
    const auto exists = [folder](const HVString& path) {
        return folder ? HVFileSystem::FolderExists(path) : HVFileSystem::Exists(path, false);
    };
    if (!exists(step.data)) {
        // Noted before the move: a run that ended before it never moved the file away.
        if (exists(step.path))
            return true;
        HVLog::Write(HVLog::kWarning, kSource, u"%s can't come back: %s is gone", step.path, step.data);
        return false;
    }
    if (folder) {
        // A folder that was removed whole: what the run put there since goes first.
        if (HVFileSystem::FolderExists(step.path) && !HVFileSystem::DeleteFolderTree(step.path))
            return false;
        return HVFileSystem::MoveFile(HVFileSystemPath::RemoveBackslash(step.data), HVFileSystemPath::RemoveBackslash(step.path),
                                      false, false);
    }
    if (HVFileSystem::MoveFile(step.data, step.path, true, false))
        return true;
    DWORD error = 0;
    if (!HVFileSystem::MoveFileAtRestart(step.data, step.path, &error))
        return false;
    HVLog::Write(HVLog::kWarning, kSource, u"%s is in use: it comes back at the next restart", step.path);
    restartNeeded_ = true;
    return true;
}

bool CUninstaller::RemoveFile(const HVString& path)
{
    if (!HVFileSystem::Exists(path, false))
        return true;
    if (path.EqualsNoCase(ownPath_.view())) {
        ownFileLeft_ = true;
        return true;
    }
    if (HVFileSystem::DeleteFile(path))
        return true;
    DWORD error = 0;
    if (!HVFileSystem::MoveFileAtRestart(path, HVString(), &error)) {
        HVLog::Write(HVLog::kError, kSource, u"%s can't be deleted, not even at the next restart (error %d)", path,
                     static_cast<int32_t>(error));
        return false;
    }
    HVLog::Write(HVLog::kWarning, kSource, u"%s is in use: deleted at the next restart", path);
    restartNeeded_ = true;
    return true;
}

bool CUninstaller::ReleaseSharedFile(const UninstallStep& step)
{
    HVRegKey key;
    DWORD count = 0;
    if (key.Open(HKEY_LOCAL_MACHINE, kSharedDlls, KEY_READ | KEY_WRITE) && key.QueryDWORD(step.path, count) &&
        count > 1) {
        HVLog::Write(HVLog::kInfo, kSource, u"%s is still used by %d other program(s)", step.path,
                     static_cast<int32_t>(count - 1));
        return key.SetDWORD(step.path, count - 1);
    }
    if (key.IsOpen() && key.HasValue(step.path) && !key.DeleteValue(step.path))
        return false;
    return !step.created || !FileStillOurs(step) || RemoveFile(step.path);
}

bool CUninstaller::RemoveShortcut(const UninstallStep& step)
{
    if (!FileStillOurs(step))
        return true;
    if (!RemoveFile(step.path))
        return false;
    // The link it replaced comes back, where the user had it.
    if (!step.data.IsEmpty() && HVFileSystem::Exists(step.data, false) && !HVFileSystem::Exists(step.path, false))
        return HVFileSystem::MoveFile(step.data, step.path, false, true);
    return true;
}

bool CUninstaller::RemoveFont(const UninstallStep& step)
{
    if (!step.created || !FileStillOurs(step))
        return true;
    ::RemoveFontResourceW(reinterpret_cast<const wchar_t*>(step.path.c_str()));
    return RemoveFile(step.path);
}

bool CUninstaller::LeaveTheRestToACopy()
{
    // After a failure the uninstaller stays with the records, for the next try.
    if (!ownFileLeft_ || failures_)
        return false;
    wchar_t temp[MAX_PATH + 1] = {};
    if (!::GetTempPathW(MAX_PATH, temp))
        return false;
    const HVString copy = HVString(temp) + HVString::Format(u"HVMediaUninstall-%u.exe", ::GetCurrentProcessId());
    if (!HVFileSystem::CopyFile(ownPath_, copy, false))
        return false;
    HVString parameters = HVString::Format(u"/RemoveAfter=%u \"%s\"", ::GetCurrentProcessId(), ownPath_);
    for (const HVString& folder : foldersLeft_)
        parameters += HVString::Format(u" \"%s\"", HVFileSystemPath::RemoveBackslash(folder));
    return RunProgram(copy, parameters, SW_HIDE, false, false);
}

void CUninstaller::FinishAfterExit(DWORD processId, const HVString& file, const std::vector<HVString>& folders)
{
    // Waited for only while the id still names the uninstaller: an id is reused once its
    // process is gone.
    if (const HVHandle process(::OpenProcess(SYNCHRONIZE | PROCESS_QUERY_LIMITED_INFORMATION, FALSE, processId)); process) {
        wchar_t image[MAX_PATH + 1] = {};
        DWORD length = MAX_PATH;
        if (::QueryFullProcessImageNameW(process.Get(), 0, image, &length) &&
            HVString(image, static_cast<int32_t>(length)).EqualsNoCase(file.view()))
            ::WaitForSingleObject(process.Get(), kWaitForExitMs);
    }
    // The file's handle can outlive the process by a moment.
    for (int attempt = 0; attempt < 100 && HVFileSystem::Exists(file, false) && !HVFileSystem::DeleteFile(file); ++attempt)
        ::Sleep(100);
    if (HVFileSystem::Exists(file, false))
        HVFileSystem::MoveFileAtRestart(file, HVString());
    for (const HVString& folder : folders)
        HVFileSystem::RemoveFolder(HVFileSystemPath::AddBackslash(folder));
    wchar_t self[MAX_PATH + 1] = {};
    if (::GetModuleFileNameW(nullptr, self, MAX_PATH))
        HVFileSystem::MoveFileAtRestart(HVString(self), HVString());
}

#include "engine/win/CFileInstaller.h"

#include "changes/CInstallChangeLog.h"
#include "changes/win/CComponentRegistration.h"
#include "changes/win/CDeferredOperations.h"
#include "changes/win/CRegistryWriter.h"
#include "changes/win/RunProgram.h"
#include "engine/CRetiredFiles.h"
#include "engine/CSharedFileRules.h"
#include "engine/IInstallProgress.h"
#include "foundation/CVersionInfo.h"
#include "foundation/HVFileSystemPath.h"
#include "foundation/HVLog.h"
#include "foundation/HVLogTimer.h"
#include "foundation/win/HVFileSystem.h"
#include "foundation/win/HVRegKey.h"
#include "foundation/win/HVSha256.h"

#include <cwchar>
#include <string>

namespace
{
// Attributes a copy brings along that would stop the next install from replacing the file.
constexpr DWORD kBlockingAttributes = FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM;
constexpr DWORD kUnknownAttributes = INVALID_FILE_ATTRIBUTES;

// The files of a tree, relative to its root, in one character pool: a large tree costs a few
// dozen bytes per file instead of a string object each.
struct SourceList
{
    struct Item
    {
        uint32_t offset;
        uint32_t length;
        DWORD attributes;
        uint64_t size;
        uint64_t lastWrite;
    };
    std::u16string names;
    std::vector<Item> items;
    uint64_t totalBytes = 0;

    std::u16string_view Name(const Item& item) const { return std::u16string_view(names).substr(item.offset, item.length); }
};

// Files of a folder before its subfolders, so that each destination folder is made once.
bool Collect(const HVString& root, const HVString& relative, SourceList& list)
{
    std::vector<HVFileSystem::Entry> entries;
    if (!HVFileSystem::EnumerateFolder(root + relative, entries, u"*.*"))
        return false;
    std::vector<HVString> folders;
    for (HVFileSystem::Entry& entry : entries) {
        if (entry.isFolder) {
            folders.push_back(relative + entry.name + u"\\");
            continue;
        }
        const auto offset = static_cast<uint32_t>(list.names.size());
        list.names.append(relative.view()).append(entry.name.view());
        list.items.push_back(
            {offset, static_cast<uint32_t>(list.names.size() - offset), entry.attributes, entry.size, entry.lastWrite});
        list.totalBytes += entry.size;
    }
    entries = {};
    bool ok = true;
    for (const HVString& folder : folders)
        ok = Collect(root, folder, list) && ok;
    return ok;
}


bool IsDiskFull(DWORD error) { return error == ERROR_DISK_FULL || error == ERROR_HANDLE_DISK_FULL; }

// Test-only: IW_TEST_ONLY_FAIL_COPY_AT=<n> makes the n-th program file fail as on a full disk,
// so that a rollback can be tested after any file of the copy.
int32_t FailCopyAt()
{
    const wchar_t* value = ::_wgetenv(L"IW_TEST_ONLY_FAIL_COPY_AT");
    return value ? static_cast<int32_t>(std::wcstol(value, nullptr, 10)) : 0;
}

bool IsInUseError(DWORD error)
{
    return error == ERROR_SHARING_VIOLATION || error == ERROR_LOCK_VIOLATION || error == ERROR_ACCESS_DENIED ||
           error == ERROR_USER_MAPPED_FILE;
}
}

CFileInstaller::CFileInstaller(CDeferredOperations& deferred, CInstallChangeLog& changes)
    : deferred_(deferred), changes_(changes),
      systemFolders_{HVFileSystem::SystemFolder(&::GetSystemDirectoryW), HVFileSystem::SystemFolder(&::GetSystemWow64DirectoryW)},
      failCopyAt_(FailCopyAt())
{
}

HVString CFileInstaller::TemporaryName(const HVString& destination)
{
    return destination + InstallChange::kTemporarySuffix;
}

HVString CFileInstaller::Fingerprint(uint64_t size, uint64_t lastWrite)
{
    return HVString::Format(u"%I64u:%I64u", size, lastWrite);
}

uint64_t CFileInstaller::TreeBytes(const HVString& folder)
{
    SourceList list;
    return HVFileSystem::FolderExists(folder) && Collect(HVFileSystem::NormalizeFolderPath(folder), HVString(), list)
               ? list.totalBytes
               : 0;
}

HVString CFileInstaller::FingerprintOf(const HVString& path)
{
    std::vector<HVFileSystem::Entry> entries;
    const HVString name = HVFileSystemPath::GetFileName(path);
    if (!HVFileSystem::EnumerateFolder(HVFileSystemPath::GetFolder(path), entries, name) || entries.size() != 1 ||
        entries[0].isFolder)
        return HVString();
    return Fingerprint(entries[0].size, entries[0].lastWrite);
}

bool CFileInstaller::CopyTree(const HVString& sourceFolder, const HVString& destinationFolder, int32_t mode,
                              IInstallProgress& progress)
{
    HVLogTimer timer("CFileInstaller::CopyTree");
    const HVString sourceRoot = HVFileSystem::NormalizeFolderPath(sourceFolder);
    const HVString destinationRoot = HVFileSystem::NormalizeFolderPath(destinationFolder);
    SourceList list;
    const bool listed = Collect(sourceRoot, HVString(), list);
    if (!listed)
        HVLog::Write(HVLog::kError, "CFileInstaller::CopyTree", u"Could not read all of %s", sourceRoot);

    progress.SetProgressRange(0, 100);
    progress.SetProgressPosition(0);
    uint64_t copied = 0;
    HVString relative;
    for (const SourceList::Item& item : list.items) {
        progress.DrainMessages();
        relative = HVString(list.Name(item));
        Copy(sourceRoot + relative, destinationRoot + relative, mode, true, item.attributes, item.size, item.lastWrite,
             nullptr);
        if (diskFull_) {
            HVLog::Write(HVLog::kError, "CFileInstaller::CopyTree", u"The disk is full at %s", destinationRoot + relative);
            return false;
        }
        copied += item.size;
        if (list.totalBytes > 0)
            progress.SetProgressPosition(static_cast<int32_t>(copied * 100 / list.totalBytes));
    }
    HVLog::Write(HVLog::kInfo, "CFileInstaller::CopyTree", u"%d files, %I64u bytes from %s", int(list.items.size()),
                 list.totalBytes, sourceRoot);
    return listed;
}

CFileInstaller::CopyResult CFileInstaller::CopyFile(const HVString& source, const HVString& destination, int32_t mode)
{
    return Copy(source, destination, mode, true, kUnknownAttributes, kUnknownSize, 0, nullptr);
}

CFileInstaller::CopyResult CFileInstaller::CopyCoreFile(const HVString& source, const HVString& destination,
                                                        bool* inUse)
{
    return Copy(source, destination, kCopyAlwaysOverwrite, false, kUnknownAttributes, kUnknownSize, 0, inUse);
}

CFileInstaller::CopyResult CFileInstaller::Copy(const HVString& source, const HVString& destination, int32_t mode,
                                                bool allowDeferral, DWORD sourceAttributes, uint64_t size,
                                                uint64_t lastWrite, bool* inUse)
{
    if (inUse)
        *inUse = false;
    MakeFolderFor(destination);
    if (CCopyRules::IsServerProgram(destination))
        StopServer();

    const DWORD destinationAttributes = HVFileSystem::GetAttributes(destination);
    const bool existed = destinationAttributes != INVALID_FILE_ATTRIBUTES;
    if (existed && HVFileSystem::IsSameFile(source, destination))
        return CopyResult::Skipped;
    // Versions only where they decide something: reading them costs a load of the file.
    if (mode == kCopyVersionCheck && CCopyRules::IsVersionChecked(destination)) {
        CVersionInfo installed;
        if (existed)
            installed.Read(destination);
        if (!CCopyRules::ShouldCopy(mode, destination, CVersionInfo(source), installed)) {
            // Kept, as newer, yet this product uses it from now on as well.
            CountSharedFile(destination, existed);
            return CopyResult::Skipped;
        }
    }

    // What is replaced is kept beside it until the install has ended well, for a rollback.
    HVString kept = existed ? destination + InstallChange::kKeptSuffix : HVString();
    if (existed && !HVFileSystem::MakeUniqueName(kept))
        kept.Empty();
    NoteStarted(destination, existed, kept);
    DWORD error = ERROR_SUCCESS;
    const bool inInstallFolder = IsInInstallFolder(destination);
    const bool failHere = failCopyAt_ > 0 && inInstallFolder && ++copyAttempts_ == failCopyAt_;
    const bool placed = !failHere && PutInPlace(source, destination, destinationAttributes, kept, error);
    if (failHere)
        error = ERROR_DISK_FULL;
    CopyResult result = CopyResult::Copied;
    if (placed) {
        if (sourceAttributes == kUnknownAttributes || (sourceAttributes & kBlockingAttributes))
            HVFileSystem::SetNormalAttributes(destination);
        // Outside the install folder the uninstall takes a file back only while it is as written;
        // inside it an upgrade removes what a later version no longer installs by the same test.
        changes_.Note({.kind = InstallChange::Kind::FileWritten, .path = destination, .existedBefore = existed,
                       .before = kept,
                       .after = !inInstallFolder ? HVSha256::OfPath(destination)
                                : lastWrite && size != kUnknownSize ? Fingerprint(size, lastWrite)
                                                                   : FingerprintOf(destination)});
        ++filesCopied_;
        if (size == kUnknownSize && !HVFileSystem::GetFileSize(destination, size))
            size = 0;
        bytesCopied_ += size;
    } else if (IsDiskFull(error)) {
        // A full disk is no reason to wait for a restart: the install can't go on.
        diskFull_ = true;
        return CopyResult::Failed;
    } else {
        if (inUse)
            *inUse = IsInUseError(error);
        // Deferred even when neither Windows nor the journal could take the new file: the old
        // one stays in use, and a module's registration still waits for the next logon.
        result = CopyResult::Failed;
        if (allowDeferral) {
            deferred_.DeferCopy(source, destination);
            result = CopyResult::Deferred;
        }
    }
    if (result == CopyResult::Failed)
        return result;

    CountSharedFile(destination, existed);
    if (CCopyRules::IsFontMode(mode))
        AddFont(destination);
    if (CCopyRules::MayRegister(source) && CComponentRegistration::IsSelfRegistering(source)) {
        if (result == CopyResult::Deferred)
            deferred_.DeferRegistration(destination);
        else
            filesToRegister_.push_back(destination);
    }
    return result;
}

void CFileInstaller::NoteStarted(const HVString& destination, bool existed, const HVString& kept)
{
    // In one write: the temporary that replaces a file that is there (a leftover of a stopped run
    // is no one's but the install's), the name the old file is kept under, and the file itself.
    using Kind = InstallChange::Kind;
    const InstallChange file{.kind = Kind::FileStarted, .path = destination, .existedBefore = existed, .before = kept};
    if (!existed)
        changes_.Note(file);
    else if (kept.IsEmpty())
        changes_.Note({InstallChange{.kind = Kind::FileStarted, .path = TemporaryName(destination)}, file});
    else
        changes_.Note({InstallChange{.kind = Kind::FileStarted, .path = TemporaryName(destination)},
                       InstallChange{.kind = Kind::FileStarted, .path = kept}, file});
}

bool CFileInstaller::IsInInstallFolder(const HVString& path) const
{
    return !installFolder_.IsEmpty() && path.StartsWithNoCase(installFolder_.view());
}

void CFileInstaller::AddFont(const HVString& destination)
{
    // Noted first, and the font table's value through the writer: a run ended half way still
    // names the font for the uninstall.
    const HVString name = CCopyRules::FontTableName(destination);
    changes_.Note({.kind = InstallChange::Kind::FontAdded, .path = destination, .name = name});
    if (::AddFontResourceW(destination.w()) == 0) {
        HVLog::Write(HVLog::kWarning, "CFileInstaller::AddFont", u"Could not add the font %s", destination);
        return;
    }
    // The font table makes the font stay after a restart; the uninstall takes both back.
    CRegistryWriter fonts(changes_, HKEY_LOCAL_MACHINE, u"SOFTWARE\\Microsoft\\Windows NT\\CurrentVersion\\Fonts");
    if (fonts.Open())
        fonts.SetString(name, HVFileSystemPath::GetFileName(destination));
    HVLog::Write(HVLog::kInfo, "CFileInstaller::AddFont", u"%s added to the font table as \"%s\"", destination, name);
}

void CFileInstaller::CountSharedFile(const HVString& destination, bool existed)
{
    if (!CSharedFileRules::IsShared(destination, systemFolders_))
        return;
    // One use per installation: a reinstall or repair of this one already counts.
    if (changes_.Noted(InstallChange::Kind::SharedFileCounted, destination)) {
        HVLog::Write(HVLog::kInfo, "CFileInstaller::CountSharedFile", u"%s is counted for this installation already",
                     destination);
        return;
    }
    CRegistryWriter counts(changes_, HKEY_LOCAL_MACHINE, CSharedFileRules::kSharedDllsKey);
    if (!counts.Open())
        return;
    std::optional<uint32_t> before;
    DWORD type = 0;
    DWORD count = 0;
    if (counts.Key().QueryValueType(destination, type) && type == REG_DWORD && counts.Key().QueryDWORD(destination, count))
        before = count;
    const uint32_t raised = CSharedFileRules::RaisedCount(before, existed);
    changes_.Note({.kind = InstallChange::Kind::SharedFileCounted, .path = destination, .existedBefore = before.has_value(),
                   .before = before ? HVString::Format(u"%u", *before) : HVString(),
                   .after = HVString::Format(u"%u", raised)});
    if (!counts.SetDWORD(destination, raised))
        return;
    HVLog::Write(HVLog::kInfo, "CFileInstaller::CountSharedFile", u"%s used by %u", destination, raised);
}

bool CFileInstaller::PutInPlace(const HVString& source, const HVString& destination, DWORD destinationAttributes,
                                const HVString& kept, DWORD& error)
{
    // The new file is whole beside the old one before the old one goes, and a rename within one
    // folder replaces it in one step: whenever the process ends, the destination is old or new.
    const bool blocked = destinationAttributes != INVALID_FILE_ATTRIBUTES && (destinationAttributes & kBlockingAttributes);
    // A new file is written where it goes: there is no old one to keep whole, and a copy cut
    // short is named in the record for the next run, a rollback or the uninstall.
    if (destinationAttributes == INVALID_FILE_ATTRIBUTES)
        return HVFileSystem::CopyFileWhole(source, destination, &error);
    if (kept.IsEmpty())
        return HVFileSystem::CopyFileByRename(source, destination, TemporaryName(destination), blocked, &error);
    const HVString temporary = TemporaryName(destination);
    if (!HVFileSystem::CopyFileWhole(source, temporary, &error))
        return false;
    if (blocked)
        HVFileSystem::SetNormalAttributes(destination);
    // A file that another program holds can't be replaced now; a second name made for it could
    // then not be taken back either.
    if (!HVFileSystem::OpenFile(destination, DELETE, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, OPEN_EXISTING)) {
        error = ::GetLastError();
        HVFileSystem::DeleteFile(temporary);
        return false;
    }
    // The old file keeps a second name until the end: the rename over the destination then
    // replaces it in one step as before, and no byte is copied for the keeping.
    const bool keptNow = ::CreateHardLinkW(HVFileSystemPath::ToLongPath(kept).w(), HVFileSystemPath::ToLongPath(destination).w(),
                                           nullptr) ||
                         HVFileSystem::CopyFileWhole(destination, kept, &error);
    if (keptNow && HVFileSystem::MoveFile(temporary, destination, true, false, &error))
        return true;
    if (keptNow)
        HVFileSystem::DeleteFile(kept);
    HVFileSystem::DeleteFile(temporary);
    return false;
}

void CFileInstaller::MakeFolderFor(const HVString& destination)
{
    const HVString folder = HVFileSystemPath::GetFolder(destination);
    if (folder.IsEmpty() || folder == lastFolderMade_)
        return;
    // The change log names each folder made.
    std::vector<HVString> made;
    if (!HVFileSystem::MakeDirectoryTree(folder, made))
        return;
    for (const HVString& one : made)
        changes_.Note(InstallChange::Kind::FolderCreated, one);
    lastFolderMade_ = folder;
}

void CFileInstaller::StopServer()
{
    if (installFolder_.IsEmpty())
        return;
    const HVString server = installFolder_ + u"DynamoServer.exe";
    if (HVFileSystem::Exists(server, false))
        RunProgram(server, u"stop", SW_HIDE, true, true);
}

void CFileInstaller::DeleteFolder(const HVString& relativeFolder) { RemoveKeeping(installFolder_ + relativeFolder); }

void CFileInstaller::RemoveKeeping(const HVString& path)
{
    const bool folder = path.EndsWith(u"\\");
    if (folder ? !HVFileSystem::FolderExists(path) : !HVFileSystem::Exists(path, false))
        return;
    const InstallChange::Kind kind = folder ? InstallChange::Kind::FolderDeleted : InstallChange::Kind::FileDeleted;
    // Kept aside under a free name until the install ended well, so that a rollback puts it back;
    // noted first, so that a run ended here still names where it went.
    HVString kept = HVFileSystemPath::RemoveBackslash(path) + InstallChange::kKeptSuffix;
    if (HVFileSystem::MakeUniqueName(kept)) {
        changes_.Note({.kind = kind, .path = path, .existedBefore = true, .before = folder ? kept + u"\\" : kept});
        if (HVFileSystem::MoveFile(HVFileSystemPath::RemoveBackslash(path), kept, false, false))
            return;
    }
    // What can't be moved aside (in use, say) goes as it did before there were rollbacks.
    if (!folder) {
        deferred_.DeferDelete(path);
        return;
    }
    if (!HVFileSystem::DeleteFolderTree(path))
        HVLog::Write(HVLog::kWarning, "CFileInstaller::RemoveKeeping", u"Could not remove all of %s", path);
    changes_.Note(kind, path);
}

void CFileInstaller::CleanInstallFolder(bool cleanData, const HVString& obsoleteFiles,
                                        const HVString& productRegistryRoot, IInstallProgress& progress,
                                        const std::function<void()>& removeRetiredRecords)
{
    progress.SetStatusText(u"Cleaning installation directory...");
    progress.SetProgressRange(0, 1);
    progress.SetProgressPosition(0);
    // Every path below is relative to the install folder; without one they would name files
    // wherever the process happens to stand.
    if (installFolder_.IsEmpty()) {
        HVLog::Write(HVLog::kError, "CFileInstaller::CleanInstallFolder", u"No install folder");
        return;
    }

    for (const HVString& entry : CRetiredFiles::Entries()) {
        if (entry.EndsWith(u"\\"))
            DeleteFolder(entry);
        else
            RemoveKeeping(installFolder_ + entry);
    }
    if (removeRetiredRecords)
        removeRetiredRecords();
    if (cleanData)
        for (const HVString& folder : CRetiredFiles::DataFolders())
            DeleteFolder(folder);
    for (const HVString& folder : CRetiredFiles::AlwaysCleanedFolders())
        DeleteFolder(folder);

    DeleteFolder(u"Setup\\");
    const HVString journalKey = productRegistryRoot + u"\\Installer\\Finalize";
    HVRegKey root;
    if (!productRegistryRoot.IsEmpty() && HVRegKey::KeyExists(HKEY_CURRENT_USER, journalKey) &&
        root.Open(HKEY_CURRENT_USER, productRegistryRoot, KEY_READ | KEY_WRITE) &&
        root.DeleteSubKeyTree(u"Installer\\Finalize"))
        changes_.Note(InstallChange::Kind::KeyDeleted, u"HKCU\\" + journalKey);

    std::vector<HVString> refused;
    for (const HVString& item : CRetiredFiles::SplitObsoleteFiles(obsoleteFiles, &refused))
        RemoveKeeping(installFolder_ + item);
    for (const HVString& item : refused)
        HVLog::Write(HVLog::kWarning, "CFileInstaller::CleanInstallFolder",
                     u"Obsolete file refused, it lies outside the install folder: %s", item);

    progress.SetProgressPosition(1);
}

#include "foundation/win/HVFileSystem.h"

#include "foundation/HVLog.h"
#include "foundation/win/HVRegKey.h"

namespace
{
using Path = HVFileSystemPath;

const wchar_t* Long(const HVString& longPath) { return longPath.w(); }

// A rename that logs nothing: the callers below log in their own words.
bool Rename(const HVString& from, const HVString& to)
{
    return ::MoveFileExW(Path::ToLongPath(from).w(), Path::ToLongPath(to).w(), 0) != FALSE;
}

// Where the walk up a folder path stops: the drive root or the network share.
bool IsAtRoot(const HVString& path)
{
    return path.GetLength() <= Path::RootLength(path.view());
}

constexpr int kMaximumUniqueNameTries = 100000;

using MoveFileExFunction = BOOL(WINAPI*)(LPCWSTR, LPCWSTR, DWORD);

MoveFileExFunction LookUpMoveFileEx()
{
    static const MoveFileExFunction function = [] {
        const HMODULE kernel = ::GetModuleHandleW(L"kernel32.dll");
        return kernel ? reinterpret_cast<MoveFileExFunction>(
                            reinterpret_cast<void*>(::GetProcAddress(kernel, "MoveFileExW")))
                      : nullptr;
    }();
    return function;
}
}

bool HVFileSystem::DeleteFile(const HVString& path)
{
    if (path.IsEmpty())
        return false;
    const HVString longPath = Path::ToLongPath(path);
    ::SetFileAttributesW(Long(longPath), FILE_ATTRIBUTE_NORMAL);
    if (::DeleteFileW(Long(longPath)))
        return true;
    const DWORD error = ::GetLastError();
    if (Exists(path, true))
        HVLog::Write(HVLog::kError, "HVFileSystem::DeleteFile", u"Error %d deleting existing file: %s", error, path);
    return false;
}

bool HVFileSystem::SafeReplaceFile(const HVString& originalPath, const HVString& newPath)
{
    if (originalPath.IsEmpty() || newPath.IsEmpty())
        return false;
    if (!Exists(originalPath, true))
        return Rename(newPath, originalPath);

    HVString backup = originalPath;
    if (!MakeUniqueName(backup) || !Rename(originalPath, backup)) {
        HVLog::Write(HVLog::kError, "HVFileSystem::SafeReplaceFile", u"Error renaming original file");
        return false;
    }
    if (!Rename(newPath, originalPath)) {
        Rename(backup, originalPath);
        HVLog::Write(HVLog::kError, "HVFileSystem::SafeReplaceFile", u"Error moving new file into place of original name");
        return false;
    }
    DeleteFile(backup);
    return true;
}

bool HVFileSystem::MakeDirectoryTree(const HVString& folderPath)
{
    if (folderPath.IsEmpty() || !Path::IsAbsolute(folderPath.view()))
        return false;
    const HVString folder = Path::RemoveBackslash(Path::ResolveDots(folderPath));

    ::CreateDirectoryW(Path::ToLongPath(folder).w(), nullptr);
    if (FolderExists(folder))
        return true;

    std::vector<HVString> missing;
    HVString parent = folder;
    while (true) {
        const int32_t slash = parent.ReverseFind(u'\\');
        if (slash <= 0)
            break;
        parent = Path::RemoveBackslash(parent.Left(slash + 1));
        if (IsAtRoot(parent) || FolderExists(parent))
            break;
        missing.push_back(parent);
    }
    // Outermost first. A parent made by somebody else meanwhile is as good as our own.
    for (auto it = missing.rbegin(); it != missing.rend(); ++it)
        ::CreateDirectoryW(Path::ToLongPath(*it).w(), nullptr);
    ::CreateDirectoryW(Path::ToLongPath(folder).w(), nullptr);

    if (FolderExists(folder))
        return true;
    HVLog::Write(HVLog::kError, "HVFileSystem::MakeDirectoryTree", u"Failed! Path=%s", folderPath);
    return false;
}

bool HVFileSystem::MakeDirectoryTree(const HVString& folderPath, std::vector<HVString>& made)
{
    const HVString folder = Path::AddBackslash(folderPath);
    std::vector<HVString> missing;
    for (HVString at = folder; !at.IsEmpty() && !FolderExists(at);) {
        missing.insert(missing.begin(), at);
        const HVString parent = at.Left(at.GetLength() - 1);
        at = parent.Left(parent.ReverseFind(u'\\') + 1);
    }
    if (!missing.empty() && !MakeDirectoryTree(folder))
        return false;
    made.insert(made.end(), missing.begin(), missing.end());
    return true;
}

bool HVFileSystem::IsDirectoryWritable(const HVString& folderPath)
{
    if (folderPath.IsEmpty())
        return false;
    // A drive root keeps its backslash: "D:" alone is the current folder of that drive.
    const HVString stripped = Path::RemoveBackslash(folderPath);
    if (stripped.IsEmpty())
        return false;

    {
        HVFileHandle folder(::CreateFileW(Path::ToLongPath(stripped).w(), FILE_ADD_FILE,
                                          FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                                          OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr));
        if (folder)
            return true;
    }

    // The thread's id keeps two threads testing one folder from colliding.
    const HVString testFile = HVString::Format(u"%sDirectory Write Test (%d).tmp",
                                               Path::AddBackslash(folderPath), ::GetCurrentThreadId());
    bool writable = false;
    {
        HVFileHandle file(OpenFile(testFile, GENERIC_WRITE, 0, CREATE_ALWAYS));
        writable = file.IsValid();
    }
    if (writable)
        DeleteFile(testFile);
    return writable;
}

bool HVFileSystem::IsFolderEmpty(const HVString& folderPath, bool recurse)
{
    std::vector<Entry> entries;
    if (!EnumerateFolder(folderPath, entries)) {
        // A missing folder holds nothing; one that is there but can't be read may hold
        // anything, and callers remove folders they were told are empty.
        const DWORD error = ::GetLastError();
        if (!FolderExists(folderPath))
            return true;
        HVLog::Write(HVLog::kError, "HVFileSystem::IsFolderEmpty", u"Error %d reading folder: %s", error, folderPath);
        return false;
    }
    const HVString folder = Path::AddBackslash(folderPath);
    for (const Entry& entry : entries) {
        if (entry.isFolder) {
            if (!recurse || !IsFolderEmpty(folder + entry.name, true))
                return false;
        } else if (!Path::IsThumbsDb(entry.name.view())) {
            return false;
        }
    }
    return true;
}

bool HVFileSystem::MakeUniqueName(HVString& path)
{
    if (path.IsEmpty())
        return false;
    for (int tries = 0; tries < kMaximumUniqueNameTries; ++tries) {
        if (!Exists(path, true))
            return true;
        path = Path::NextUniqueName(path);
    }
    return false;
}

DWORD HVFileSystem::GetAttributes(const HVString& path)
{
    if (path.IsEmpty())
        return INVALID_FILE_ATTRIBUTES;
    return ::GetFileAttributesW(Path::ToLongPath(path).w());
}

HVString HVFileSystem::SystemFolder(UINT (WINAPI* get)(LPWSTR, UINT))
{
    wchar_t buffer[MAX_PATH + 1] = {};
    const UINT length = get(buffer, MAX_PATH + 1);
    if (length == 0 || length > MAX_PATH)
        return HVString();
    return NormalizeFolderPath(HVString(buffer, static_cast<int32_t>(length)));
}

bool HVFileSystem::Exists(const HVString& path, bool acceptFolders)
{
    const DWORD attributes = GetAttributes(path);
    if (attributes == INVALID_FILE_ATTRIBUTES)
        return false;
    return acceptFolders || !(attributes & FILE_ATTRIBUTE_DIRECTORY);
}

bool HVFileSystem::FolderExists(const HVString& path)
{
    const DWORD attributes = GetAttributes(path);
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY);
}

bool HVFileSystem::SetNormalAttributes(const HVString& path)
{
    return !path.IsEmpty() && ::SetFileAttributesW(Path::ToLongPath(path).w(), FILE_ATTRIBUTE_NORMAL);
}

bool HVFileSystem::GetFileSize(const HVString& path, uint64_t& size)
{
    WIN32_FILE_ATTRIBUTE_DATA data;
    if (path.IsEmpty() || !::GetFileAttributesExW(Path::ToLongPath(path).w(), GetFileExInfoStandard, &data) ||
        (data.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY))
        return false;
    size = (uint64_t(data.nFileSizeHigh) << 32) | data.nFileSizeLow;
    return true;
}

bool HVFileSystem::CopyFile(const HVString& source, const HVString& target, bool failIfExists, DWORD* error)
{
    DWORD code = ERROR_INVALID_PARAMETER;
    if (!source.IsEmpty() && !target.IsEmpty()) {
        code = ::CopyFileW(Path::ToLongPath(source).w(), Path::ToLongPath(target).w(), failIfExists)
                   ? ERROR_SUCCESS
                   : ::GetLastError();
    }
    if (error)
        *error = code;
    if (code != ERROR_SUCCESS)
        HVLog::Write(HVLog::kWarning, "HVFileSystem::CopyFile", u"Error %d copying %s to %s", code, source, target);
    return code == ERROR_SUCCESS;
}

bool HVFileSystem::MoveFile(const HVString& source, const HVString& target, bool replaceExisting, bool allowCopy,
                            DWORD* error)
{
    DWORD code = ERROR_INVALID_PARAMETER;
    if (!source.IsEmpty() && !target.IsEmpty()) {
        const DWORD flags = (replaceExisting ? MOVEFILE_REPLACE_EXISTING : 0) | (allowCopy ? MOVEFILE_COPY_ALLOWED : 0);
        code = ::MoveFileExW(Path::ToLongPath(source).w(), Path::ToLongPath(target).w(), flags) ? ERROR_SUCCESS
                                                                                                 : ::GetLastError();
    }
    if (error)
        *error = code;
    if (code != ERROR_SUCCESS)
        HVLog::Write(HVLog::kWarning, "HVFileSystem::MoveFile", u"Error %d moving %s to %s", code, source, target);
    return code == ERROR_SUCCESS;
}

bool HVFileSystem::CopyFileWhole(const HVString& source, const HVString& target, DWORD* error)
{
    DWORD code = ERROR_INVALID_PARAMETER;
    if (!CopyFile(source, target, false, &code) && code == ERROR_ACCESS_DENIED && Exists(target, false) &&
        DeleteFile(target))
        CopyFile(source, target, false, &code);
    // A partial copy would pass for the file itself to whoever finds it later.
    if (code != ERROR_SUCCESS && code != ERROR_INVALID_PARAMETER)
        DeleteFile(target);
    if (error)
        *error = code;
    return code == ERROR_SUCCESS;
}

bool HVFileSystem::CopyFileByRename(const HVString& source, const HVString& target, const HVString& temporary,
                                    bool clearTarget, DWORD* error)
{
    if (!CopyFileWhole(source, temporary, error))
        return false;
    if (clearTarget)
        SetNormalAttributes(target);
    if (MoveFile(temporary, target, true, false, error))
        return true;
    DeleteFile(temporary);
    return false;
}

bool HVFileSystem::IsSameFile(const HVString& first, const HVString& second)
{
    BY_HANDLE_FILE_INFORMATION info[2];
    const HVString* paths[2] = {&first, &second};
    for (int i = 0; i < 2; ++i) {
        // No access at all is asked for, so a file held open without sharing can still be compared.
        HVFileHandle file = OpenFile(*paths[i], 0, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                                     OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS);
        if (!file || !::GetFileInformationByHandle(file.Get(), &info[i]))
            return false;
    }
    return info[0].dwVolumeSerialNumber == info[1].dwVolumeSerialNumber &&
           info[0].nFileIndexHigh == info[1].nFileIndexHigh && info[0].nFileIndexLow == info[1].nFileIndexLow;
}

bool HVFileSystem::CanMoveFileAtRestart()
{
    return LookUpMoveFileEx() != nullptr;
}

bool HVFileSystem::MoveFileAtRestart(const HVString& source, const HVString& target, DWORD* error)
{
    DWORD code = ERROR_INVALID_PARAMETER;
    const MoveFileExFunction moveFileEx = LookUpMoveFileEx();
    if (!moveFileEx) {
        code = ERROR_CALL_NOT_IMPLEMENTED;
    } else if (!source.IsEmpty()) {
        const HVString longTarget = target.IsEmpty() ? HVString() : Path::ToLongPath(target);
        const DWORD flags = MOVEFILE_DELAY_UNTIL_REBOOT | (target.IsEmpty() ? 0 : MOVEFILE_REPLACE_EXISTING);
        code = moveFileEx(Path::ToLongPath(source).w(), target.IsEmpty() ? nullptr : longTarget.w(), flags)
                   ? ERROR_SUCCESS
                   : ::GetLastError();
    }
    if (error)
        *error = code;
    if (code != ERROR_SUCCESS)
        HVLog::Write(HVLog::kWarning, "HVFileSystem::MoveFileAtRestart", u"Error %d scheduling %s for restart", code,
                     source);
    return code == ERROR_SUCCESS;
}

void HVFileSystem::CancelMoveAtRestart(const HVString& target, const HVString& sourceFolder)
{
    constexpr const char16_t* kSessionManager = u"SYSTEM\\CurrentControlSet\\Control\\Session Manager";
    constexpr const char16_t* kPending = u"PendingFileRenameOperations";
    HVRegKey key;
    std::vector<HVString> pairs;
    if (sourceFolder.IsEmpty() || !key.Open(HKEY_LOCAL_MACHINE, kSessionManager, KEY_READ | KEY_WRITE) ||
        !key.QueryMultiString(kPending, pairs))
        return;
    // The system writes "\??\C:\..." for a source and "!\??\C:\..." for a target it may replace.
    const auto plain = [](HVString path) {
        if (path.StartsWith(u"!"))
            path = path.Mid(1);
        return path.StartsWith(u"\\??\\") ? path.Mid(4) : path;
    };
    std::vector<HVString> kept;
    size_t dropped = 0;
    for (size_t i = 0; i + 1 < pairs.size(); i += 2) {
        const HVString source = plain(pairs[i]);
        const bool ours = source.StartsWithNoCase(sourceFolder.view());
        if (ours && ((!target.IsEmpty() && plain(pairs[i + 1]).EqualsNoCase(target.view())) || !Exists(source, false))) {
            ++dropped;
            continue;
        }
        kept.push_back(pairs[i]);
        kept.push_back(pairs[i + 1]);
    }
    if (dropped == 0)
        return;
    const bool written = kept.empty() ? key.DeleteValue(kPending) : key.SetMultiString(kPending, kept);
    HVLog::Write(written ? HVLog::kInfo : HVLog::kWarning, "HVFileSystem::CancelMoveAtRestart",
                 u"%d move(s) at the next restart taken back (%s)", static_cast<int32_t>(dropped), target);
}

bool HVFileSystem::GetFreeDiskSpace(const HVString& path, uint64_t& freeBytes)
{
    if (!Path::IsAbsolute(path.view()))
        return false;
    HVString folder = Path::RemoveBackslash(Path::ResolveDots(path));
    while (!FolderExists(folder)) {
        const int32_t slash = folder.ReverseFind(u'\\');
        if (slash <= 0 || IsAtRoot(folder))
            return false;
        folder = Path::RemoveBackslash(folder.Left(slash + 1));
    }
    ULARGE_INTEGER available;
    if (!::GetDiskFreeSpaceExW(Path::ToLongPath(Path::AddBackslash(folder)).w(), &available, nullptr, nullptr))
        return false;
    freeBytes = available.QuadPart;
    return true;
}

bool HVFileSystem::EnumerateFolder(const HVString& folderPath, std::vector<Entry>& entries, const HVString& pattern)
{
    entries.clear();
    if (folderPath.IsEmpty())
        return false;
    const HVString search = Path::ToLongPath(Path::AddBackslash(folderPath) + pattern);
    WIN32_FIND_DATAW data;
    HVFindHandle find(::FindFirstFileExW(search.w(), FindExInfoBasic, &data, FindExSearchNameMatch, nullptr, 0));
    if (!find) {
        // No match in a folder that is there is an empty answer, not a failure.
        return ::GetLastError() == ERROR_FILE_NOT_FOUND && FolderExists(folderPath);
    }
    do {
        const std::wstring_view name(data.cFileName);
        if (name == L"." || name == L"..")
            continue;
        Entry entry;
        entry.name = HVString(data.cFileName);
        entry.attributes = data.dwFileAttributes;
        entry.isFolder = (data.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
        entry.size = (uint64_t(data.nFileSizeHigh) << 32) | data.nFileSizeLow;
        entry.lastWrite = (uint64_t(data.ftLastWriteTime.dwHighDateTime) << 32) | data.ftLastWriteTime.dwLowDateTime;
        entries.push_back(std::move(entry));
    } while (::FindNextFileW(find.Get(), &data));
    return true;
}

void HVFileSystem::ListFiles(const HVString& folderPath, std::vector<HVString>& files)
{
    std::vector<Entry> entries;
    if (!EnumerateFolder(folderPath, entries))
        return;
    for (const Entry& entry : entries) {
        if (!entry.isFolder)
            files.push_back(folderPath + entry.name);
        else if (!(entry.attributes & FILE_ATTRIBUTE_REPARSE_POINT))
            ListFiles(folderPath + entry.name + u"\\", files);
    }
}

bool HVFileSystem::RemoveFolder(const HVString& folderPath)
{
    return !folderPath.IsEmpty() && ::RemoveDirectoryW(Path::ToLongPath(Path::RemoveBackslash(folderPath)).w());
}

bool HVFileSystem::DeleteFolderTree(const HVString& folderPath)
{
    std::vector<Entry> entries;
    if (!EnumerateFolder(folderPath, entries))
        return !FolderExists(folderPath);
    const HVString folder = Path::AddBackslash(folderPath);
    bool ok = true;
    for (const Entry& entry : entries) {
        const HVString path = folder + entry.name;
        if (entry.attributes & FILE_ATTRIBUTE_REPARSE_POINT) {
            SetNormalAttributes(path);
            ok = (entry.isFolder ? RemoveFolder(path) : DeleteFile(path)) && ok;
        } else if (entry.isFolder) {
            ok = DeleteFolderTree(path) && ok;
        } else {
            ok = DeleteFile(path) && ok;
        }
    }
    SetNormalAttributes(folder);
    return RemoveFolder(folder) && ok;
}

HVFileHandle HVFileSystem::OpenFile(const HVString& path, DWORD access, DWORD share, DWORD disposition, DWORD flags)
{
    if (path.IsEmpty()) {
        ::SetLastError(ERROR_INVALID_PARAMETER);
        return HVFileHandle();
    }
    return HVFileHandle(::CreateFileW(Path::ToLongPath(path).w(), access, share, nullptr, disposition, flags, nullptr));
}

bool HVFileSystem::ReadFile(const HVString& path, std::vector<uint8_t>& data)
{
    HVFileHandle file = OpenFile(path, GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE, OPEN_EXISTING);
    LARGE_INTEGER size;
    if (!file || !::GetFileSizeEx(file.Get(), &size) || size.QuadPart > 0x7FFFFFFF)
        return false;
    data.resize(static_cast<size_t>(size.QuadPart));
    DWORD read = 0;
    if (!data.empty() && (!::ReadFile(file.Get(), data.data(), static_cast<DWORD>(data.size()), &read, nullptr) ||
                          read != data.size())) {
        data.clear();
        return false;
    }
    return true;
}

bool HVFileSystem::WriteFile(const HVString& path, const void* data, size_t size)
{
    if (size > 0x7FFFFFFF)
        return false;
    HVFileHandle file = OpenFile(path, GENERIC_WRITE, 0, CREATE_ALWAYS);
    if (!file)
        return false;
    DWORD written = 0;
    return size == 0 || (::WriteFile(file.Get(), data, static_cast<DWORD>(size), &written, nullptr) && written == size);
}

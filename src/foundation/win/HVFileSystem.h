#pragma once

#include "foundation/HVFileSystemPath.h"
#include "foundation/HVString.h"
#include "foundation/win/HVUniqueResource.h"

// <windows.h> (through HVUniqueResource.h) comes first on purpose: it maps DeleteFile,
// CopyFile and MoveFile to their W forms, and every user of this header must see the same
// names for the members below.
#include <windows.h>

#include <cstdint>
#include <vector>

// The one file system layer of the installer: nothing else calls the Win32 file functions.
// Every call reaches the system with the long-path form of the caller's path, so paths of any
// length work; logs and callers only ever see the plain form. The operations keep no state
// and may run on any thread. They return false on failure and log where a failure is news
// (a missing file on delete is an ordinary answer and logs nothing); none shows a message.
class HVFileSystem
{
public:
    struct Entry
    {
        HVString name;   // the name alone, without the folder
        bool isFolder = false;
        uint64_t size = 0;
        DWORD attributes = 0;
        uint64_t lastWrite = 0;  // FILETIME as one number
    };

    // Clears read-only, hidden and system first, so that such files can be deleted too.
    static bool DeleteFile(const HVString& path);
    // Puts a new file in place of an original so that the original is never lost: the
    // original is renamed aside, the new file moved in, and only then the original deleted.
    // When the new file can't be moved the original goes back under its own name.
    static bool SafeReplaceFile(const HVString& originalPath, const HVString& newPath);
    // Makes a folder and every missing parent. The path must be absolute ("C:\..." or a
    // network path); a relative one fails without a log line.
    static bool MakeDirectoryTree(const HVString& folderPath);
    // The same, adding to `made` each folder that was missing, outermost first and with its
    // trailing backslash, so that whoever made them can name them (and take them away again).
    static bool MakeDirectoryTree(const HVString& folderPath, std::vector<HVString>& made);
    // Whether new files can be made in the folder (a destination folder before installing).
    static bool IsDirectoryWritable(const HVString& folderPath);
    // Whether the folder holds nothing but "Thumbs.db" (any case); subfolders count unless
    // `recurse`, in which case they are tested the same way. A missing folder holds nothing.
    static bool IsFolderEmpty(const HVString& folderPath, bool recurse);
    // Changes the path by the unique-name rule until nothing exists under it. False only when
    // the rule runs out of numbers to try.
    static bool MakeUniqueName(HVString& path);
    static void CleanPath(HVString& path) { HVFileSystemPath::CleanPath(path); }
    static HVString GetFileSizeText(uint64_t bytes) { return HVFileSystemPath::FileSizeText(bytes); }
    static HVString NormalizeFolderPath(const HVString& path) { return HVFileSystemPath::NormalizeFolderPath(path); }

    // A folder of Windows as one of the system's getters names it (GetSystemDirectoryW,
    // GetSystemWow64DirectoryW, GetWindowsDirectoryW), with a backslash; empty when the system
    // has none or can't say.
    static HVString SystemFolder(UINT (WINAPI* get)(LPWSTR, UINT));
    static bool Exists(const HVString& path, bool acceptFolders);
    static bool FolderExists(const HVString& path);
    // INVALID_FILE_ATTRIBUTES when nothing is there.
    static DWORD GetAttributes(const HVString& path);
    static bool SetNormalAttributes(const HVString& path);
    static bool GetFileSize(const HVString& path, uint64_t& size);

    // CopyFileW. `error` receives the system's error code (0 on success); a failure is logged
    // as a warning because callers usually have a fall-back (copy at restart, a retry box).
    static bool CopyFile(const HVString& source, const HVString& target, bool failIfExists, DWORD* error = nullptr);
    // CopyFileW over whatever is at `target`, for copies that must be whole or absent: a copy
    // that fails part way (a full disk) removes what it wrote, and a read-only leftover at the
    // target is removed and the copy tried once more.
    static bool CopyFileWhole(const HVString& source, const HVString& target, DWORD* error = nullptr);
    // A whole copy at `temporary` first, then one rename over `target` (its read-only, hidden
    // and system attributes cleared first when `clearTarget`): whenever the process ends,
    // `target` is the old file or the new one, never a part. No temporary is left on failure.
    static bool CopyFileByRename(const HVString& source, const HVString& target, const HVString& temporary,
                                 bool clearTarget, DWORD* error = nullptr);
    // Whether two paths name one file (the same volume and file index), through links,
    // short names and different spellings. False when either can't be opened.
    static bool IsSameFile(const HVString& first, const HVString& second);
    // A rename, or with `allowCopy` a copy and delete across volumes.
    static bool MoveFile(const HVString& source, const HVString& target, bool replaceExisting, bool allowCopy,
                         DWORD* error = nullptr);
    // Whether this Windows can replace files at the next restart: MoveFileExW is looked up in
    // kernel32 at run time, because the oldest systems the product ran on lack it.
    static bool CanMoveFileAtRestart();
    // Replaces `target` by `source` at the next restart; an empty target deletes `source` then.
    // Fails with ERROR_CALL_NOT_IMPLEMENTED where CanMoveFileAtRestart is false.
    static bool MoveFileAtRestart(const HVString& source, const HVString& target, DWORD* error = nullptr);
    // Takes back the moves at the next restart onto `target` whose source lies below
    // `sourceFolder` (with a backslash), and every move whose source below it is gone: a
    // rerun's own earlier moves, and moves that would find nothing. Moves of others stay.
    static void CancelMoveAtRestart(const HVString& target, const HVString& sourceFolder);

    // Free bytes for the caller on the drive of a path. The path need not exist yet: the
    // nearest existing parent is asked. False when the drive can't be read, which callers
    // must tell from a small number.
    static bool GetFreeDiskSpace(const HVString& path, uint64_t& freeBytes);

    // The entries of a folder ("." and ".." left out) matching a pattern. False when the
    // folder can't be read; an existing folder with no match gives true and no entries.
    static bool EnumerateFolder(const HVString& folderPath, std::vector<Entry>& entries,
                                const HVString& pattern = u"*");
    // Every file below `folderPath` (with a backslash), folders searched in turn; appended to
    // `files` with their full paths. Links to folders are not followed.
    static void ListFiles(const HVString& folderPath, std::vector<HVString>& files);
    // An empty folder.
    static bool RemoveFolder(const HVString& folderPath);
    // A folder with everything in it. Links inside are removed, never followed.
    static bool DeleteFolderTree(const HVString& folderPath);

    // CreateFileW on the long-path form; an invalid handle on failure (last error kept).
    static HVFileHandle OpenFile(const HVString& path, DWORD access, DWORD share, DWORD disposition,
                                 DWORD flags = FILE_ATTRIBUTE_NORMAL);
    // Whole-file reading and writing for small files (descriptions, hand-over files).
    static bool ReadFile(const HVString& path, std::vector<uint8_t>& data);
    static bool WriteFile(const HVString& path, const void* data, size_t size);
};

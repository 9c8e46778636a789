#pragma once

#include "foundation/HVString.h"
#include "product/CCopyRules.h"

// <windows.h> first, as for HVFileSystem.h: it maps CopyFile to CopyFileW, and every user of
// this class must see the member under the same name.
#include <windows.h>

#include <cstdint>
#include <functional>
#include <vector>

class CDeferredOperations;
class CInstallChangeLog;
class IInstallProgress;

// Copies the product's files from the setup folder by the copy rules and cleans the install
// folder of what earlier versions left. No destination file is ever missing or half-written:
// a file is copied to a temporary name beside its destination and put in place by one rename
// that replaces the old file, so a process ended at any moment leaves the old or the new file,
// and a rerun completes the install. A file in use is deferred (CDeferredOperations).
class CFileInstaller
{
public:
    // Outcome of one file.
    enum class CopyResult
    {
        Copied,    // the new file is in place
        Skipped,   // version check: the installed file is as new or newer; or the same file
        Deferred,  // in use: replaced at restart or journaled (or, when neither could take it, left)
        Failed,    // neither copied nor deferred (the old file, if any, is untouched)
    };

    CFileInstaller(CDeferredOperations& deferred, CInstallChangeLog& changes);

    // The folder the program files go to (with a backslash); used by the server stop and the
    // cleaning.
    void SetInstallFolder(const HVString& installFolder) { installFolder_ = installFolder; }
    const HVString& InstallFolder() const { return installFolder_; }

    // Every file under `sourceFolder` to the same relative path under `destinationFolder`.
    // Progress 0..100 by bytes; the message queue is drained before each file. False when the
    // source folder can't be read; a file that fails is deferred, never reported here.
    bool CopyTree(const HVString& sourceFolder, const HVString& destinationFolder, int32_t mode,
                  IInstallProgress& progress);
    // One file by the rule of `mode`.
    CopyResult CopyFile(const HVString& source, const HVString& destination, int32_t mode);

    // Same as CopyFile without deferral, for the core files that must be in place now (the
    // launcher): a file in use gives Failed with `inUse` set, so the caller can ask the user.
    CopyResult CopyCoreFile(const HVString& source, const HVString& destination, bool* inUse = nullptr);

    // The cleaning step: the retired files and folders, the retired registry records (the
    // callback, when set), the data folders when `cleanData`, the saved views, the staging
    // folder and the journal key under `productRegistryRoot`, and the install description's
    // obsolete files (`obsoleteFiles`, ";"-separated, relative to the install folder).
    void CleanInstallFolder(bool cleanData, const HVString& obsoleteFiles, const HVString& productRegistryRoot,
                            IInstallProgress& progress, const std::function<void()>& removeRetiredRecords = {});

    // Copied modules that export DllRegisterServer, in copy order, to be registered once all
    // files are in place.
    const std::vector<HVString>& FilesToRegister() const { return filesToRegister_; }
    // Counts since the object was made, for the log and the benchmark.
    uint64_t BytesCopied() const { return bytesCopied_; }
    int32_t FilesCopied() const { return filesCopied_; }

    // The temporary name a file is copied to before it is put in place; a leftover one from an
    // ended run is removed when its file is copied again.
    static HVString TemporaryName(const HVString& destination);

    // A file or folder (with a backslash) of the install that goes: moved aside under a free
    // name and kept until the install ended well, noted with where it went; what can't be moved
    // aside is deleted (a file in use at the next restart).
    void RemoveKeeping(const HVString& path);
    // A copy failed because its disk is full: the install can't go on (the copy of the tree
    // stopped there).
    bool DiskFull() const { return diskFull_; }
    // What the record keeps of a file of the install folder, so that a later version can tell
    // whether it is still as this install left it: its size and time of last writing.
    static HVString Fingerprint(uint64_t size, uint64_t lastWrite);
    static HVString FingerprintOf(const HVString& path);
    // The bytes of every file below `folder` (with a backslash); 0 when there is none.
    static uint64_t TreeBytes(const HVString& folder);

private:
    static constexpr uint64_t kUnknownSize = ~uint64_t(0);

    // The rule for one file. sourceAttributes and size are what the tree's listing knew
    // (INVALID_FILE_ATTRIBUTES / kUnknownSize when nothing), so no file is asked twice.
    CopyResult Copy(const HVString& source, const HVString& destination, int32_t mode, bool allowDeferral,
                    DWORD sourceAttributes, uint64_t size, uint64_t lastWrite, bool* inUse);
    // A new file is copied where it goes. Over a file that is there: a whole copy at the
    // temporary name, then one rename over the destination; the old file,
    // when `kept` names where, is kept there first as a second name of the same file (its bytes
    // as they are; a copy where the volume has no such names). Whenever the process ends, the
    // destination is old or new. On failure the destination is as it was, neither a temporary
    // nor the kept name is left, and `error` says why.
    bool PutInPlace(const HVString& source, const HVString& destination, DWORD destinationAttributes,
                    const HVString& kept, DWORD& error);
    // The destination's folder and its missing parents, each noted; once per folder in a row.
    void MakeFolderFor(const HVString& destination);
    // Noted before a copy starts: the file and its temporary sibling, so that a run ended during
    // the copy still names what it may have left.
    void NoteStarted(const HVString& destination, bool existed, const HVString& kept);
    bool IsInInstallFolder(const HVString& path) const;
    // A font put in place: added to the running system and to the font table.
    void AddFont(const HVString& destination);
    // A file in a shared system folder: its use count raised (CSharedFileRules).
    void CountSharedFile(const HVString& destination, bool existed);
    // The installed "DynamoServer.exe" is asked to stop, so that its file can be replaced.
    void StopServer();
    // A folder of the install folder with its contents.
    void DeleteFolder(const HVString& relativeFolder);

    CDeferredOperations& deferred_;
    CInstallChangeLog& changes_;
    HVString installFolder_;
    HVString lastFolderMade_;
    std::vector<HVString> systemFolders_;
    std::vector<HVString> filesToRegister_;
    uint64_t bytesCopied_ = 0;
    int32_t filesCopied_ = 0;
    bool diskFull_ = false;
    int32_t failCopyAt_ = 0;
    int32_t copyAttempts_ = 0;
};

#include "changes/win/CDeferredOperations.h"

#include "changes/CInstallChangeLog.h"
#include "changes/CJournalFormat.h"
#include "changes/win/CRegistryWriter.h"
#include "foundation/HVFileSystemPath.h"
#include "foundation/HVLog.h"
#include "foundation/win/HVFileSystem.h"
#include "product/CCopyRules.h"

CDeferredOperations::CDeferredOperations(const HVString& installFolder, CInstallChangeLog* changes)
    : changes_(changes)
{
    SetInstallFolder(installFolder);
}

void CDeferredOperations::SetInstallFolder(const HVString& installFolder)
{
    installFolder_ = installFolder.IsEmpty() ? installFolder : HVFileSystem::NormalizeFolderPath(installFolder);
}

HVString CDeferredOperations::StagingFolder() const
{
    return installFolder_ + u"Setup\\";
}

HVString CDeferredOperations::StagedPath(const HVString& source, const HVString& destination)
{
    // One numbered folder per destination folder: two files of one name bound for different
    // folders never share a staged copy, and the staged file keeps its own name.
    const HVString folder = HVFileSystemPath::GetFolder(destination);
    size_t number = 0;
    while (number < stagedFor_.size() && !stagedFor_[number].EqualsNoCase(folder))
        ++number;
    if (number == stagedFor_.size())
        stagedFor_.push_back(folder);
    return HVString::Format(u"%s%d\\", StagingFolder(), static_cast<int32_t>(number + 1)) +
           HVFileSystemPath::GetFileName(source);
}

HVString CDeferredOperations::Stage(const HVString& source, const HVString& destination)
{
    if (installFolder_.IsEmpty())
        return HVString();
    const HVString staged = StagedPath(source, destination);
    const HVString folder = HVFileSystemPath::GetFolder(staged);
    for (const HVString& made : {StagingFolder(), folder}) {
        if (HVFileSystem::FolderExists(made))
            continue;
        if (!HVFileSystem::MakeDirectoryTree(made))
            return HVString();
        if (changes_)
            changes_->Note(InstallChange::Kind::FolderCreated, made);
    }

    // Whole under a temporary name first: a pending rename must never find a part of the file.
    const HVString temporary = staged + InstallChange::kTemporarySuffix;
    const bool existed = HVFileSystem::Exists(staged, false);
    if (changes_) {
        changes_->NoteStarted(temporary, HVFileSystem::Exists(temporary, false));
        changes_->NoteStarted(staged, existed);
    }
    if (!HVFileSystem::CopyFileByRename(source, staged, temporary, false)) {
        HVLog::Write(HVLog::kWarning, "CDeferredOperations::Stage", u"Could not stage %s", source);
        return HVString();
    }
    if (changes_)
        changes_->NoteFile(staged, existed);
    return staged;
}

bool CDeferredOperations::ReplaceAtRestart(const HVString& source, const HVString& destination)
{
    if (!replaceAtRestartAvailable_ || !HVFileSystem::CanMoveFileAtRestart())
        return false;
    const HVString staged = Stage(source, destination);
    if (staged.IsEmpty())
        return false;
    // One move per file: a rerun's own earlier one for this file, and any whose staged copy is
    // gone, are taken back first.
    HVFileSystem::CancelMoveAtRestart(destination, StagingFolder());
    if (changes_)
        changes_->NoteFile(destination, HVFileSystem::Exists(destination, false), true);
    return HVFileSystem::MoveFileAtRestart(staged, destination);
}

bool CDeferredOperations::DeferInstall(const HVString& source, const HVString& destination)
{
    const HVString staged = Stage(source, destination);
    if (staged.IsEmpty())
        return false;
    pendingFiles_.push_back(CJournalFormat::InstallEntry(staged, destination));
    if (changes_)
        changes_->NoteFile(destination, HVFileSystem::Exists(destination, false), true);
    return true;
}

bool CDeferredOperations::DeferCopy(const HVString& source, const HVString& destination)
{
    const bool taken = ReplaceAtRestart(source, destination) || DeferInstall(source, destination);
    if (!taken)
        HVLog::Write(HVLog::kError, "CDeferredOperations::DeferCopy", u"%s stays as it is: the new file could not be staged",
                     destination);
    if (CCopyRules::IsShellExtension(destination))
        shellExtensionRegistered_ = false;
    if (!CCopyRules::IsInFontsFolder(destination))
        restartNeeded_ = true;
    return taken;
}

void CDeferredOperations::DeferDelete(const HVString& path)
{
    if (!HVFileSystem::Exists(path, false))
        return;
    // HVFileSystem::DeleteFile clears read-only, hidden and system itself.
    if (HVFileSystem::DeleteFile(path)) {
        if (changes_)
            changes_->NoteDeleted(path);
        return;
    }
    pendingFiles_.push_back(CJournalFormat::DeleteEntry(path));
    if (changes_)
        changes_->NoteDeleted(path, true);
}

void CDeferredOperations::DeferRegistration(const HVString& path)
{
    pendingRegistrations_.push_back(CJournalFormat::RegisterEntry(path));
    if (changes_)
        changes_->Note({.kind = InstallChange::Kind::ModuleRegistered, .path = path,
                        .name = InstallChange::kRegisteredByExport, .deferred = true});
}

bool CDeferredOperations::WriteJournal(const HVString& productRegistryRoot) const
{
    if (!HasPending())
        return true;
    // Without a log of the run's own (a test of the journal alone) the notes go nowhere.
    CInstallChangeLog unrecorded;
    CInstallChangeLog& changes = changes_ ? *changes_ : unrecorded;
    CRegistryWriter journal(changes, HKEY_CURRENT_USER, productRegistryRoot + u"\\" + CJournalFormat::kJournalKey);
    CRegistryWriter runOnce(changes, HKEY_CURRENT_USER, CJournalFormat::kRunOnceKey);
    if (!journal.Open() || !runOnce.Open()) {
        HVLog::Write(HVLog::kError, "CDeferredOperations::WriteJournal", u"Could not open the journal keys under %s",
                     productRegistryRoot);
        return false;
    }
    bool ok = true;
    for (const CJournalFormat::Value& value : CJournalFormat::FileValues(pendingFiles_))
        ok = journal.SetString(value.name, value.data) && ok;
    ok = runOnce.SetString(CJournalFormat::kRunOnceValue, CJournalFormat::RunOnceCommand(installFolder_)) && ok;
    for (const CJournalFormat::Value& value : CJournalFormat::RegisterValues(pendingRegistrations_))
        ok = journal.SetString(value.name, value.data) && ok;
    return ok;
}

bool CDeferredOperations::WriteFinishFile(const HVString& setupFolder, const HVString& installFolder,
                                          const HVString& launcherName)
{
    const HVString launcher = HVFileSystem::NormalizeFolderPath(installFolder) + launcherName;
    if (launcherName.IsEmpty() || !HVFileSystem::Exists(launcher, false))
        return false;
    const HVString text = CJournalFormat::FinishText(launcher);
    std::vector<uint8_t> bytes = {0xFF, 0xFE};
    bytes.reserve(2 + size_t(text.GetLength()) * 2);
    for (char16_t ch : text.view()) {
        bytes.push_back(static_cast<uint8_t>(ch & 0xFF));
        bytes.push_back(static_cast<uint8_t>(ch >> 8));
    }
    const HVString path = HVFileSystem::NormalizeFolderPath(setupFolder) + CJournalFormat::kFinishFileName;
    if (HVFileSystem::WriteFile(path, bytes.data(), bytes.size()))
        return true;
    HVLog::Write(HVLog::kError, "CDeferredOperations::WriteFinishFile", u"Could not write %s", path);
    return false;
}

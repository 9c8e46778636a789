#include "changes/win/CInstallRun.h"

#include "changes/CInstallRecord.h"
#include "foundation/HVLog.h"
#include "foundation/win/HVFileSystem.h"

#include <shlobj.h>

#include <algorithm>
#include <set>
#include <vector>

CInstallRun::CInstallRun() : deferred_(HVString(), &changes_) {}

bool CInstallRun::StartRecord(const HVString& installFolder)
{
    if (record_.IsOpen())
        return true;
    const HVString folder = HVFileSystem::NormalizeFolderPath(installFolder);
    // The record names each folder made for the install, those the destination page made
    // while checking the choice included, outermost first.
    std::vector<HVString> made;
    for (const HVString& early : madeEarly_)
        if (folder.StartsWithNoCase(early.view()) && HVFileSystem::FolderExists(early))
            made.push_back(early);
    std::sort(made.begin(), made.end(), [](const HVString& a, const HVString& b) { return a.GetLength() < b.GetLength(); });
    if (!HVFileSystem::MakeDirectoryTree(folder, made)) {
        HVLog::Write(HVLog::kError, "CInstallRun::StartRecord", u"Could not make %s", folder);
        return false;
    }
    for (const HVString& one : made)
        changes_.Note(InstallChange::Kind::FolderCreated, one);
    std::erase_if(madeEarly_, [&](const HVString& early) {
        return std::find(made.begin(), made.end(), early) != made.end();
    });
    const HVString path = CInstallRecordFile::PathIn(folder);
    std::vector<uint8_t> bytes;
    if (HVFileSystem::Exists(path, false) && HVFileSystem::ReadFile(path, bytes) && !bytes.empty()) {
        CInstallRecord::Contents found =
            CInstallRecord::Parse(bytes);
        if (found.problem.IsEmpty()) {
            if (!found.runs.empty() && !found.runs.back().ended)
                HVLog::Write(HVLog::kWarning, "CInstallRun::StartRecord",
                             u"The last install run did not come to its end (%d changes noted): this run completes it",
                             static_cast<int32_t>(found.changes.size() - found.runs.back().firstChange));
            changes_.SetEarlier(std::move(found.changes));
        } else {
            // Its "before" data may be all that is left of what the machine had: never lost.
            HVString kept = folder + kDamagedRecordName;
            if (!HVFileSystem::MakeUniqueName(kept) || !HVFileSystem::MoveFile(path, kept, false, false)) {
                HVLog::Write(HVLog::kError, "CInstallRun::StartRecord", u"%s can't be read nor kept aside: %s", path,
                             found.problem);
                return false;
            }
            HVLog::Write(HVLog::kWarning, "CInstallRun::StartRecord", u"%s can't be read (%s): kept as %s", path,
                         found.problem, kept);
            bytes.clear();
        }
    }
    if (!record_.Open(folder, changes_.Changes(), UserShortcutFolders(), !bytes.empty() && bytes.back() != '\n'))
        return false;
    installFolder_ = folder;
    recordLengthBefore_ = bytes.size();
    HVFileSystem::ListFiles(folder, filesAtStart_);
    changes_.SetSink(&record_);
    return true;
}

std::vector<InstallChange> CInstallRun::InstallChanges() const
{
    const std::vector<InstallChange>& all = changes_.Changes();
    return InstallBegun() ? std::vector<InstallChange>(all.begin() + static_cast<std::ptrdiff_t>(installStart_), all.end())
                          : std::vector<InstallChange>();
}

void CInstallRun::DropWhatWasKept()
{
    using Kind = InstallChange::Kind;
    // This run's, and what earlier runs that were stopped before their end left kept: this run
    // completed them.
    std::vector<InstallChange> drops;
    for (const std::vector<InstallChange>* run : {&changes_.Earlier(), &changes_.Changes()})
        for (const InstallChange& change : *run) {
            if ((change.kind == Kind::FileStarted || change.kind == Kind::FileWritten || change.kind == Kind::FileDeleted ||
                 change.kind == Kind::FolderDeleted) &&
                !change.before.IsEmpty())
                drops.push_back(change);
            // A temporary a stopped run left beside a file it was replacing goes the same way.
            if (change.kind == Kind::FileStarted && change.path.EndsWith(InstallChange::kTemporarySuffix))
                drops.push_back({.kind = Kind::FileStarted, .before = change.path});
        }
    for (const InstallChange& change : drops) {
        const HVString& kept = change.before;
        if (change.kind == Kind::FolderDeleted) {
            if (HVFileSystem::FolderExists(kept)) {
                changes_.Note(Kind::FolderDeleted, kept);
                HVFileSystem::DeleteFolderTree(kept);
            }
        } else if (HVFileSystem::Exists(kept, false)) {
            // A file that was in use when it was replaced may still be: it goes at the next restart.
            const bool now = HVFileSystem::DeleteFile(kept);
            if (!now)
                HVFileSystem::MoveFileAtRestart(kept, HVString());
            changes_.NoteDeleted(kept, !now);
        }
    }
}

bool CInstallRun::MakeFolderEarly(const HVString& folder)
{
    return HVFileSystem::MakeDirectoryTree(HVFileSystem::NormalizeFolderPath(folder), madeEarly_);
}

void CInstallRun::RemoveFoldersMadeEarly()
{
    // Innermost first, and only while empty: a folder the user filled meanwhile is theirs.
    for (auto it = madeEarly_.rbegin(); it != madeEarly_.rend(); ++it)
        if (HVFileSystem::FolderExists(*it) && HVFileSystem::RemoveFolder(*it))
            HVLog::Write(HVLog::kInfo, "CInstallRun::RemoveFoldersMadeEarly", u"%s removed", *it);
    madeEarly_.clear();
}

void CInstallRun::AbandonRecord()
{
    changes_.SetSink(nullptr);
    record_.Finish();
}

void CInstallRun::EndRecord(int exitCode)
{
    if (!record_.IsOpen())
        return;
    if (exitCode == 0 || exitCode == 3010) {
        DropWhatWasKept();
        // Moves at the next restart whose staged copy is gone (an earlier run's, cleaned away)
        // would only fail then.
        HVFileSystem::CancelMoveAtRestart(HVString(), deferred_.StagingFolder());
    }
    std::vector<HVString> now;
    HVFileSystem::ListFiles(installFolder_, now);
    const auto folded = [](HVString path) { return path.MakeLower(); };
    std::set<HVString> known;
    for (const InstallChange& change : changes_.Changes())
        known.insert(folded(change.path));
    for (const HVString& file : filesAtStart_)
        known.insert(folded(file));
    known.insert(folded(record_.Path()));
    for (const HVString& file : now)
        if (known.insert(folded(file)).second)
            changes_.NoteFile(file, false);
    changes_.Note(InstallChange::Kind::InstallEnded, HVString::Format(u"%d", exitCode));
    changes_.SetSink(nullptr);
    record_.Finish();
}

std::vector<HVString> CInstallRun::UserShortcutFolders()
{
    std::vector<HVString> folders;
    for (const auto& [csidl, below] : {std::pair{CSIDL_DESKTOPDIRECTORY, u""}, std::pair{CSIDL_PROGRAMS, u""},
                                        std::pair{CSIDL_APPDATA, u"Microsoft\\Internet Explorer\\Quick Launch\\"}}) {
        wchar_t path[MAX_PATH + 1] = {};
        if (SUCCEEDED(::SHGetFolderPathW(nullptr, csidl, nullptr, SHGFP_TYPE_CURRENT, path)) && path[0])
            folders.push_back(HVFileSystem::NormalizeFolderPath(HVString(path)) + below);
    }
    return folders;
}

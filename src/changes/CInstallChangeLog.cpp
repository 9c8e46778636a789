#include "changes/CInstallChangeLog.h"

#include <algorithm>

void CInstallChangeLog::Note(const InstallChange& change)
{
    changes_.push_back(change);
    if (sink_)
        sink_->Append(change);
}

void CInstallChangeLog::Note(std::initializer_list<InstallChange> changes)
{
    changes_.insert(changes_.end(), changes.begin(), changes.end());
    if (sink_)
        sink_->Append(std::span<const InstallChange>(changes.begin(), changes.size()));
}

void CInstallChangeLog::Note(InstallChange::Kind kind, const HVString& path)
{
    Note({.kind = kind, .path = path});
}

void CInstallChangeLog::NoteFile(const HVString& path, bool existedBefore, bool deferred, const HVString& after)
{
    Note({.kind = InstallChange::Kind::FileWritten, .path = path, .existedBefore = existedBefore, .after = after,
          .deferred = deferred});
}

bool CInstallChangeLog::Noted(InstallChange::Kind kind, const HVString& path) const
{
    const auto matches = [&](const InstallChange& change) { return change.kind == kind && change.path.EqualsNoCase(path.view()); };
    return std::any_of(earlier_.begin(), earlier_.end(), matches) || std::any_of(changes_.begin(), changes_.end(), matches);
}

void CInstallChangeLog::NoteDeleted(const HVString& path, bool deferred)
{
    Note({.kind = InstallChange::Kind::FileDeleted, .path = path, .existedBefore = true, .deferred = deferred});
}

void CInstallChangeLog::NoteStarted(const HVString& path, bool existedBefore)
{
    Note({.kind = InstallChange::Kind::FileStarted, .path = path, .existedBefore = existedBefore});
}

void CInstallChangeLog::NoteRegistered(const HVString& path, const HVString& how)
{
    Note({.kind = InstallChange::Kind::ModuleRegistered, .path = path, .name = how});
}

size_t CInstallChangeLog::Count(InstallChange::Kind kind) const
{
    return static_cast<size_t>(
        std::count_if(changes_.begin(), changes_.end(), [kind](const InstallChange& c) { return c.kind == kind; }));
}

const char16_t* CInstallChangeLog::KindName(InstallChange::Kind kind)
{
    switch (kind) {
    case InstallChange::Kind::FileWritten: return u"FileWritten";
    case InstallChange::Kind::FileDeleted: return u"FileDeleted";
    case InstallChange::Kind::FolderCreated: return u"FolderCreated";
    case InstallChange::Kind::FolderDeleted: return u"FolderDeleted";
    case InstallChange::Kind::KeyCreated: return u"KeyCreated";
    case InstallChange::Kind::KeyDeleted: return u"KeyDeleted";
    case InstallChange::Kind::ValueWritten: return u"ValueWritten";
    case InstallChange::Kind::ValueDeleted: return u"ValueDeleted";
    case InstallChange::Kind::ShortcutCreated: return u"ShortcutCreated";
    case InstallChange::Kind::FileStarted: return u"FileStarted";
    case InstallChange::Kind::FontAdded: return u"FontAdded";
    case InstallChange::Kind::ModuleRegistered: return u"ModuleRegistered";
    case InstallChange::Kind::SharedFileCounted: return u"SharedFileCounted";
    case InstallChange::Kind::InstallEnded: return u"InstallEnded";
    }
    return u"";
}

#include "engine/CInstallChangeLog.h"

#include <algorithm>

namespace
{
InstallChange MakeChange(InstallChange::Kind kind, const HVString& path, bool existedBefore = false, bool deferred = false,
                         const HVString& name = HVString())
{
    InstallChange change;
    change.kind = kind;
    change.path = path;
    change.name = name;
    change.existedBefore = existedBefore;
    change.deferred = deferred;
    return change;
}
}  // namespace

void CInstallChangeLog::Note(const InstallChange& change)
{
    changes_.push_back(change);
    if (sink_)
        sink_->Append(change);
}

void CInstallChangeLog::Note(InstallChange::Kind kind, const HVString& path)
{
    Note(MakeChange(kind, path));
}

void CInstallChangeLog::NoteFile(const HVString& path, bool existedBefore, bool deferred)
{
    Note(MakeChange(InstallChange::Kind::FileWritten, path, existedBefore, deferred));
}

void CInstallChangeLog::NoteDeleted(const HVString& path, bool deferred)
{
    Note(MakeChange(InstallChange::Kind::FileDeleted, path, true, deferred));
}

void CInstallChangeLog::NoteStarted(const HVString& path, bool existedBefore)
{
    Note(MakeChange(InstallChange::Kind::FileStarted, path, existedBefore));
}

void CInstallChangeLog::NoteRegistered(const HVString& path, const HVString& how)
{
    Note(MakeChange(InstallChange::Kind::ModuleRegistered, path, false, false, how));
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

#include "engine/CUninstallPlan.h"

#include "product/CProductRecordRules.h"

#include <algorithm>
#include <map>
#include <set>

namespace
{
using Kind = InstallChange::Kind;
using Action = UninstallStep::Action;

// The table of use counts belongs to every program that shares a file: its values go by the
// counting rules, never by what the install wrote.
constexpr const char16_t* kSharedCountKey = u"HKLM\\SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\SharedDLLs";

HVString Folded(const HVString& text)
{
    HVString folded = text;
    return folded.MakeLower();
}

bool IsBelowOrEqual(const HVString& path, const HVString& folder)
{
    return !folder.IsEmpty() && (path.EqualsNoCase(folder.view()) || CUninstallPlan::IsBelow(path, folder));
}

bool IsKeyBelowOrEqual(const HVString& key, const HVString& parent) { return CUninstallPlan::IsKeyBelowOrEqual(key, parent); }

// A drive path with no "." or ".." levels, no empty level and no forward slash: the only form
// the install writes, so anything else was not written by it.
bool IsPlainPath(const HVString& path, bool folder)
{
    const std::u16string_view view = path.view();
    if (view.size() < 4 || !((view[0] | 0x20) >= u'a' && (view[0] | 0x20) <= u'z') || view[1] != u':' ||
        view[2] != u'\\' || view.find(u'/') != view.npos || (view.back() == u'\\' && !folder))
        return false;
    size_t start = 3;
    while (start < view.size()) {
        size_t end = view.find(u'\\', start);
        if (end == view.npos)
            end = view.size();
        HVString level(view.substr(start, end - start));
        level.Trim();
        if (level.IsEmpty() || level.Trim(u" .").IsEmpty())
            return false;
        start = end + 1;
    }
    return true;
}

// A place is a key with what lies below it; ending in a backslash, only what lies below it;
// ending in "*", the keys whose path begins with what comes before it.
bool MatchesPlace(const HVString& key, const HVString& place)
{
    if (place.EndsWith(u"*")) {
        const HVString prefix = place.Left(place.GetLength() - 1);
        return key.GetLength() > prefix.GetLength() && key.StartsWithNoCase(prefix.view());
    }
    if (place.EndsWith(u"\\"))
        return CUninstallPlan::IsBelow(key, place);
    return IsKeyBelowOrEqual(key, place);
}

bool IsRegistryPlace(const HVString& key, const std::vector<HVString>& places)
{
    if (key.Find(u"\\\\") != HVString::npos || key.EndsWith(u"\\"))
        return false;
    return std::any_of(places.begin(), places.end(), [&](const HVString& place) { return MatchesPlace(key, place); });
}

// A key made on the way to a place ("HKCU\\Software\\Netscape" for a value of the browser's
// table): others may have put things below it since, so only what is left empty goes. Never
// a root or a key right below one.
bool IsAboveRegistryPlace(const HVString& key, const std::vector<HVString>& places)
{
    int32_t levels = 0;
    for (char16_t ch : key.view())
        levels += ch == u'\\';
    if (levels < 2 || key.Find(u"\\\\") != HVString::npos || key.EndsWith(u"\\"))
        return false;
    return std::any_of(places.begin(), places.end(),
                       [&](const HVString& place) { return CUninstallPlan::IsBelow(place, key + u"\\"); });
}

bool IsRegistryKind(Kind kind)
{
    return kind == Kind::KeyCreated || kind == Kind::KeyDeleted || kind == Kind::ValueWritten || kind == Kind::ValueDeleted;
}

struct FileNotes
{
    bool existedBefore = false;
    bool confirmed = false; // written, not only begun
    bool gone = false;      // the install itself deleted it last
    bool counted = false;   // a shared file with a reference count
    bool font = false;
    bool shortcut = false;
    // The latest confirmation's digest; known only from records that keep one.
    HVString after = {};
    bool afterKnown = false;
    // Where the file that was there before was kept, until the install ended well.
    HVString kept = {};
    bool deferred = false;
};

// A value as the record tells it: the earliest note holds what the machine had before the
// install, the latest what the install left there.
struct ValueNotes
{
    InstallChange first;
    HVString after;
    bool afterKnown = false;
};

struct ShortcutNotes
{
    HVString path;
    HVString kept;         // the link it replaced, kept by the first run that replaced one
    bool replaced = false; // the first run found a link there
    HVString after;
    bool afterKnown = false;
};

class Planner
{
public:
    Planner(const CUninstallPlan::Places& places, bool keepSettings, bool rollback)
        : places_(places), keepSettings_(keepSettings || rollback), rollback_(rollback)
    {
    }

    HVString Check(const InstallChange& change) const
    {
        const HVString& path = change.path;
        if (IsRegistryKind(change.kind)) {
            if (!IsRegistryPlace(path, places_.registry) &&
                !(change.kind == Kind::KeyCreated && IsAboveRegistryPlace(path, places_.registry)))
                return path;
            if (change.kind == Kind::ValueWritten || change.kind == Kind::ValueDeleted) {
                uint32_t type = 0;
                std::vector<uint8_t> data;
                if ((change.existedBefore || change.kind == Kind::ValueDeleted) &&
                    !CProductRecordRules::ReadData(change.before, type, data))
                    return path + u"\\" + change.name + u" = " + change.before;
            }
            return HVString();
        }
        if (change.kind == Kind::InstallEnded)
            return HVString();
        // A driver is taken out by its description in the setup folder: a file that is read,
        // never removed, so it may lie outside the places the install wrote to.
        if (change.kind == Kind::ModuleRegistered && change.name.EqualsNoCase(InstallChange::kRegisteredAsDriver))
            return IsPlainPath(path, false) ? HVString() : path;
        if (change.kind == Kind::FolderCreated || change.kind == Kind::FolderDeleted)
            return IsFolderPlace(path) ? HVString() : path;
        // A replaced shortcut is kept in the install folder, and put back from there; a file
        // or folder the run replaced or removed is kept beside it until the run has ended well.
        if (change.kind == Kind::ShortcutCreated && !change.before.IsEmpty() &&
            !(IsPlainPath(change.before, false) && IsBelow(change.before, places_.installFolder)))
            return change.before;
        const bool fileKind = change.kind == Kind::FileWritten || change.kind == Kind::FileStarted ||
                              change.kind == Kind::FileDeleted || change.kind == Kind::FolderDeleted;
        if (fileKind && !change.before.IsEmpty() &&
            !(IsPlainPath(change.before, change.kind == Kind::FolderDeleted) &&
              (change.kind == Kind::FolderDeleted ? IsFolderPlace(change.before) : IsFilePlace(change.before))))
            return change.before;
        return IsPlainPath(path, false) && IsFilePlace(path) ? HVString() : path;
    }

    void Note(const InstallChange& change)
    {
        const HVString key = Folded(change.path);
        switch (change.kind) {
        case Kind::FileWritten:
        case Kind::FileStarted: {
            auto [it, added] = files_.try_emplace(key);
            if (added) {
                it->second.existedBefore = change.existedBefore;
                order_.push_back(change.path);
            }
            if (change.kind == Kind::FileWritten) {
                it->second.confirmed = true;
                it->second.after = change.after;
                it->second.afterKnown = change.afterKnown && !change.after.IsEmpty();
                it->second.deferred |= change.deferred;
            }
            if (it->second.kept.IsEmpty())
                it->second.kept = change.before;
            it->second.gone = false;
            break;
        }
        case Kind::FileDeleted:
        case Kind::FolderDeleted:
            if (auto it = files_.find(key); it != files_.end()) {
                it->second.gone = true;
            } else if (rollback_ && !change.before.IsEmpty()) {
                // Removed by this run, but kept: it comes back.
                FileNotes& notes = files_[key];
                notes.existedBefore = notes.gone = true;
                notes.kept = change.before;
                order_.push_back(change.path);
            }
            break;
        case Kind::SharedFileCounted:
            if (sharedSeen_.insert(key).second)
                shared_.push_back(change.path);
            break;
        case Kind::FontAdded:
            if (fontsSeen_.insert(key).second)
                fonts_.push_back(change);
            break;
        case Kind::ShortcutCreated: {
            auto [it, added] = shortcuts_.try_emplace(key);
            ShortcutNotes& notes = it->second;
            if (added) {
                notes.path = change.path;
                notes.replaced = change.existedBefore;
                notes.kept = change.before;
                shortcutOrder_.push_back(key);
            }
            notes.after = change.after;
            notes.afterKnown = change.afterKnown;
            break;
        }
        case Kind::ModuleRegistered:
            if (modulesSeen_.insert(key).second) {
                Add(Action::Unregister, change.path, change.name);
                modules_.push_back(change);
            }
            break;
        case Kind::FolderCreated:
            if (!IsSettings(change.path) && foldersSeen_.insert(key).second)
                folders_.push_back(change.path);
            break;
        case Kind::KeyCreated:
            if (IsSettings(change.path) || change.path.EqualsNoCase(kSharedCountKey) || !keysSeen_.insert(key).second)
                break;
            keys_.push_back(change);
            break;
        case Kind::ValueWritten:
        case Kind::ValueDeleted: {
            if (IsSettings(change.path) || change.path.EqualsNoCase(kSharedCountKey))
                break;
            auto [it, added] = values_.try_emplace(key + u"\n" + Folded(change.name));
            if (added) {
                it->second.first = change;
                valueOrder_.push_back(it->first);
            }
            it->second.after = change.kind == Kind::ValueDeleted ? HVString() : change.after;
            it->second.afterKnown = change.afterKnown;
            break;
        }
        default:
            break;
        }
    }

    std::vector<UninstallStep> Finish()
    {
        // The keys first: a value in a key that goes whole goes with it.
        for (const InstallChange& key : keys_)
            PlanKey(key);
        for (const HVString& id : valueOrder_)
            PlanValue(values_[id]);
        if (!rollback_)
            for (const HVString& record : places_.recordKeys)
                Add(Action::DeleteRecordKey, record);
        if (keepSettings_ && !rollback_)
            for (const auto& [key, name] : places_.forgetValues)
                Add(Action::DeleteValue, key, name);
        for (const HVString& id : shortcutOrder_)
            PlanShortcut(shortcuts_[id]);
        for (const InstallChange& font : fonts_) {
            FileNotes& notes = files_[Folded(font.path)];
            notes.font = true;
            if (Unverifiable(font.path, notes))
                continue;
            Expect(Add(Action::RemoveFont, font.path, font.name), notes).created = !notes.existedBefore;
        }
        for (const HVString& path : shared_) {
            FileNotes& notes = files_[Folded(path)];
            notes.counted = true;
            UninstallStep& step = Add(Action::ReleaseSharedFile, path);
            // The count goes down in any case; the file only while it is the one put there.
            step.created = !notes.existedBefore && (notes.afterKnown || !notes.confirmed);
            Expect(step, notes);
        }
        std::set<HVString> kept;
        for (const auto& [key, notes] : files_)
            if (!notes.kept.IsEmpty())
                kept.insert(Folded(notes.kept));
        for (const HVString& path : order_) {
            const FileNotes& notes = files_[Folded(path)];
            // What was kept goes back in its place, or (by the uninstall) with the install folder.
            if (rollback_ && kept.count(Folded(path)))
                continue;
            if (rollback_ && PlanRollbackOf(path, notes))
                continue;
            if (notes.gone || notes.counted || notes.font || notes.shortcut || IsSettings(path))
                continue;
            // In a shared folder only what a copy cut short left: nothing counts on it yet.
            if (IsShared(path) && (notes.confirmed || notes.existedBefore))
                continue;
            // Outside the install folder a file that was there before is not ours to take.
            if (IsBelow(path, places_.installFolder))
                Add(Action::RemoveFile, path);
            else if (!notes.existedBefore && !Unverifiable(path, notes))
                Expect(Add(Action::RemoveFile, path), notes);
        }
        if (!keepSettings_)
            Add(Action::RemoveSettings, places_.settingsKey, places_.dataFolder);
        if (!rollback_) {
            Add(Action::DeleteRecordFile, places_.installFolder + CInstallRecord::kFileName);
            // The install folder goes when nothing is left in it, whoever made it.
            if (foldersSeen_.insert(Folded(places_.installFolder)).second)
                folders_.push_back(places_.installFolder);
        }
        // Deepest first, so that a folder is empty when its turn comes.
        std::stable_sort(folders_.begin(), folders_.end(),
                         [](const HVString& a, const HVString& b) { return a.GetLength() > b.GetLength(); });
        for (const HVString& folder : folders_)
            Add(Action::RemoveFolder, folder);
        // Keys deepest first too: a key made on the way is empty once those below it are gone.
        std::stable_sort(steps_.begin(), steps_.end(), [](const UninstallStep& a, const UninstallStep& b) {
            if (a.action != b.action)
                return a.action < b.action;
            return a.action == Action::RemoveEmptyKey && a.path.GetLength() > b.path.GetLength();
        });
        return std::move(steps_);
    }

    // What an uninstall leaves to its settings choice; a rollback undoes this run there too.
    bool IsSettings(const HVString& path) const
    {
        return !rollback_ && (IsKeyBelowOrEqual(path, places_.settingsKey) || IsBelowOrEqual(path, places_.dataFolder));
    }

private:
    // A file this run replaced, removed or left to the next restart: back as it was. True when
    // that is all there is to do for it.
    bool PlanRollbackOf(const HVString& path, const FileNotes& notes)
    {
        if (notes.deferred)
            Add(Action::CancelRestart, path);
        if (!notes.existedBefore)
            return notes.deferred;
        if (notes.kept.IsEmpty()) {
            Add(Action::Leave, path).data = u"what was there before was not kept";
            return true;
        }
        Add(Action::RestoreFile, path).data = notes.kept;
        for (const InstallChange& module : modules_)
            if (module.path.EqualsNoCase(path.view()))
                Add(Action::Reregister, path, module.name);
        return true;
    }

    UninstallStep& Add(Action action, const HVString& path, const HVString& name = HVString())
    {
        UninstallStep step;
        step.action = action;
        step.path = path;
        step.name = name;
        steps_.push_back(step);
        return steps_.back();
    }

    UninstallStep& Expect(UninstallStep& step, const FileNotes& notes)
    {
        step.expect = notes.after;
        step.check = notes.afterKnown && !IsBelow(step.path, places_.installFolder);
        return step;
    }

    bool IsOwnKey(const HVString& key) const { return IsRegistryPlace(key, places_.ownKeys); }

    // The product's records go whole at an uninstall; a rollback undoes only what its run did there.
    bool IsRecordKey(const HVString& key) const
    {
        return !rollback_ && std::any_of(places_.recordKeys.begin(), places_.recordKeys.end(),
                           [&](const HVString& record) { return IsKeyBelowOrEqual(key, record); });
    }

    bool InsideDeletedTree(const HVString& key) const
    {
        return IsRecordKey(key) || std::any_of(treeKeys_.begin(), treeKeys_.end(),
                                               [&](const HVString& tree) { return IsKeyBelowOrEqual(key, tree); });
    }

    // A file outside the install folder written by an install that kept no digest: it may be
    // someone else's by now.
    bool Unverifiable(const HVString& path, const FileNotes& notes)
    {
        if (IsBelow(path, places_.installFolder) || !notes.confirmed || notes.afterKnown)
            return false;
        Add(Action::Leave, path).data = u"the install record does not say what was written there";
        return true;
    }

    void PlanValue(const ValueNotes& notes)
    {
        const InstallChange& first = notes.first;
        if (InsideDeletedTree(first.path))
            return;
        if (!notes.afterKnown && !IsOwnKey(first.path)) {
            Add(Action::Leave, first.path, first.name).data = u"the install record does not say what was written there";
            return;
        }
        UninstallStep& step = first.kind == Kind::ValueWritten && !first.existedBefore
                                  ? Add(Action::DeleteValue, first.path, first.name)
                                  : Add(Action::RestoreValue, first.path, first.name);
        if (step.action == Action::RestoreValue)
            step.data = first.before;
        step.expect = notes.after;
        step.check = notes.afterKnown;
    }

    void PlanKey(const InstallChange& key)
    {
        if (IsRecordKey(key.path) || InsideDeletedTree(key.path))
            return;
        if (key.afterKnown) {
            Add(Action::RemoveEmptyKey, key.path);
            return;
        }
        // The first format noted only the topmost key it made, and went on below it unnoted.
        if (IsOwnKey(key.path) && IsRegistryPlace(key.path, places_.registry)) {
            treeKeys_.push_back(key.path);
            Add(Action::DeleteKey, key.path);
        } else {
            Add(Action::PruneKey, key.path);
        }
    }

    void PlanShortcut(const ShortcutNotes& notes)
    {
        files_[Folded(notes.path)].shortcut = true;
        if (!notes.afterKnown) {
            Add(Action::Leave, notes.path).data = u"the install record does not say what was written there";
            return;
        }
        UninstallStep& step = Add(Action::DeleteShortcut, notes.path);
        step.expect = notes.after;
        step.check = true;
        if (notes.replaced)
            step.data = notes.kept;
    }

    bool IsShared(const HVString& path) const
    {
        for (size_t i = 0; i < places_.sharedFolderCount && i < places_.folders.size(); ++i)
            if (IsBelow(path, places_.folders[i]))
                return true;
        return false;
    }

    bool IsFilePlace(const HVString& path) const
    {
        if (IsBelow(path, places_.installFolder) || IsBelow(path, places_.dataFolder))
            return true;
        return std::any_of(places_.folders.begin(), places_.folders.end(),
                           [&](const HVString& folder) { return IsBelow(path, folder); });
    }

    // A folder below a place, or one the install made on the way to the install folder; removed
    // only when empty, so a parent such as "Program Files" is never at risk.
    bool IsFolderPlace(const HVString& path) const
    {
        if (!IsPlainPath(path, true) || !path.EndsWith(u"\\"))
            return false;
        if (IsBelowOrEqual(path, places_.installFolder) || IsBelowOrEqual(path, places_.dataFolder))
            return true;
        if (IsBelow(places_.installFolder, path) || IsBelow(places_.dataFolder, path))
            return true;
        return std::any_of(places_.folders.begin(), places_.folders.end(),
                           [&](const HVString& folder) { return IsBelow(path, folder); });
    }

    static bool IsBelow(const HVString& path, const HVString& folder) { return CUninstallPlan::IsBelow(path, folder); }

    const CUninstallPlan::Places& places_;
    bool keepSettings_;
    bool rollback_;
    std::vector<InstallChange> modules_;
    std::vector<UninstallStep> steps_;
    std::map<HVString, FileNotes> files_;
    std::map<HVString, ValueNotes> values_;
    std::map<HVString, ShortcutNotes> shortcuts_;
    std::vector<HVString> order_, shared_, folders_, valueOrder_, shortcutOrder_, treeKeys_;
    std::vector<InstallChange> fonts_, keys_;
    std::set<HVString> sharedSeen_, fontsSeen_, modulesSeen_, foldersSeen_, keysSeen_;
};
}

bool CUninstallPlan::IsBelow(const HVString& path, const HVString& folder)
{
    return !folder.IsEmpty() && folder.EndsWith(u"\\") && path.GetLength() > folder.GetLength() &&
           path.StartsWithNoCase(folder.view());
}

bool CUninstallPlan::IsKeyBelowOrEqual(const HVString& key, const HVString& parent)
{
    return !parent.IsEmpty() && (key.EqualsNoCase(parent.view()) || IsBelow(key, parent + u"\\"));
}

CUninstallPlan CUninstallPlan::Make(const CInstallRecord::Contents& record, const Places& places, bool keepSettings)
{
    return Plan(record, places, keepSettings, false);
}

CUninstallPlan CUninstallPlan::Rollback(const std::vector<InstallChange>& run, const Places& places)
{
    CInstallRecord::Contents record;
    record.changes = run;
    return Plan(record, places, true, true);
}

CUninstallPlan CUninstallPlan::Plan(const CInstallRecord::Contents& record, const Places& places, bool keepSettings,
                                    bool rollback)
{
    CUninstallPlan plan;
    if (!record.problem.IsEmpty()) {
        plan.reason_ = u"The install record is damaged: " + record.problem;
        return plan;
    }
    if (!IsPlainPath(places.installFolder, true) || !places.installFolder.EndsWith(u"\\")) {
        plan.reason_ = u"The install folder can't be told from its path: " + places.installFolder;
        return plan;
    }
    Planner planner(places, keepSettings, rollback);
    for (const InstallChange& change : record.changes) {
        const HVString outside = planner.Check(change);
        if (!outside.IsEmpty()) {
            plan.reason_ = u"The install record names a place the install does not write to: " + outside;
            return plan;
        }
        planner.Note(change);
    }
    plan.steps_ = planner.Finish();
    return plan;
}

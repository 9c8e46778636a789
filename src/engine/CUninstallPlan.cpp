#include "engine/CUninstallPlan.h"

#include "product/CProductRecordRules.h"

#include <algorithm>
#include <map>
#include <set>

namespace
{
using Kind = InstallChange::Kind;
using Action = UninstallStep::Action;

// The keys that say the product is installed: they must outlive everything that could fail, so
// that the user can start the uninstall again.
// The use counts of shared files go down by one, whatever other installs did to them since.
constexpr const char16_t* kSharedCountKey = u"HKLM\\SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\SharedDLLs";

constexpr const char16_t* kRecordKeys[] = {
    u"HKLM\\SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Uninstall\\",
    u"HKLM\\Software\\Halvard\\Corvale\\Installations\\",
};

HVString Folded(const HVString& text)
{
    HVString folded = text;
    return folded.MakeLower();
}

bool IsBelowOrEqual(const HVString& path, const HVString& folder)
{
    return !folder.IsEmpty() && (path.EqualsNoCase(folder.view()) || CUninstallPlan::IsBelow(path, folder));
}

// Registry keys are written without a closing backslash.
bool IsKeyBelowOrEqual(const HVString& key, const HVString& parent)
{
    return !parent.IsEmpty() && (key.EqualsNoCase(parent.view()) || CUninstallPlan::IsBelow(key, parent + u"\\"));
}

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

bool IsRegistryPlace(const HVString& key, const std::vector<HVString>& places)
{
    if (key.Find(u"\\\\") != HVString::npos || key.EndsWith(u"\\"))
        return false;
    return std::any_of(places.begin(), places.end(), [&](const HVString& place) {
        if (place.EndsWith(u"\\"))
            return CUninstallPlan::IsBelow(key, place);
        return IsKeyBelowOrEqual(key, place);
    });
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

bool IsRecordKey(const HVString& key)
{
    for (const char16_t* recordKey : kRecordKeys)
        if (CUninstallPlan::IsBelow(key, recordKey) || HVString(recordKey).StartsWithNoCase((key + u"\\").view()))
            return true;
    return false;
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
    HVString fontName;
};

class Planner
{
public:
    Planner(const CUninstallPlan::Places& places, bool keepSettings) : places_(places), keepSettings_(keepSettings) {}

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
            it->second.confirmed |= change.kind == Kind::FileWritten;
            it->second.gone = false;
            break;
        }
        case Kind::FileDeleted:
            if (auto it = files_.find(key); it != files_.end())
                it->second.gone = true;
            break;
        case Kind::SharedFileCounted:
            if (sharedSeen_.insert(key).second)
                shared_.push_back(change.path);
            break;
        case Kind::FontAdded:
            if (fontsSeen_.insert(key).second)
                fonts_.push_back(change);
            break;
        case Kind::ShortcutCreated:
            if (shortcutsSeen_.insert(key).second)
                Add(Action::DeleteShortcut, change.path);
            break;
        case Kind::ModuleRegistered:
            if (modulesSeen_.insert(key).second)
                Add(Action::Unregister, change.path, change.name);
            break;
        case Kind::FolderCreated:
            if (!IsSettings(change.path) && foldersSeen_.insert(key).second)
                folders_.push_back(change.path);
            break;
        case Kind::KeyCreated:
            // The table of use counts belongs to every program that shares a file.
            if (IsSettings(change.path) || change.path.EqualsNoCase(kSharedCountKey) || !keysSeen_.insert(key).second)
                break;
            if (IsRegistryPlace(change.path, places_.registry))
                keys_.push_back(change.path);
            else
                pruned_.push_back(change.path);
            break;
        case Kind::ValueWritten:
        case Kind::ValueDeleted:
            // The earliest note of a value holds what the machine had before the install.
            if (!IsSettings(change.path) && !change.path.EqualsNoCase(kSharedCountKey) &&
                valuesSeen_.insert(key + u"\n" + Folded(change.name)).second)
                values_.push_back(change);
            break;
        default:
            break;
        }
    }

    std::vector<UninstallStep> Finish()
    {
        auto insideMadeKey = [&](const HVString& path, bool orEqual) {
            return std::any_of(keys_.begin(), keys_.end(), [&](const HVString& key) {
                return IsKeyBelowOrEqual(path, key) && (orEqual || !path.EqualsNoCase(key.view()));
            });
        };
        // A value in a key the install made goes with its key.
        for (const InstallChange& value : values_) {
            if (insideMadeKey(value.path, true))
                continue;
            if (value.kind == Kind::ValueWritten && !value.existedBefore)
                Add(Action::DeleteValue, value.path, value.name);
            else
                Add(Action::RestoreValue, value.path, value.name).data = value.before;
        }
        for (const HVString& key : keys_) {
            if (insideMadeKey(key, false))
                continue;
            UninstallStep& step = Add(IsRecordKey(key) ? Action::DeleteRecordKey : Action::DeleteKey, key);
            if (keepSettings_ && IsKeyBelowOrEqual(places_.settingsKey, key))
                step.keep = places_.settingsKey;
        }
        for (const HVString& key : pruned_)
            Add(Action::PruneKey, key);
        for (const InstallChange& font : fonts_) {
            FileNotes& notes = files_[Folded(font.path)];
            notes.font = true;
            Add(Action::RemoveFont, font.path, font.name).created = !notes.existedBefore;
        }
        for (const HVString& path : shared_) {
            FileNotes& notes = files_[Folded(path)];
            notes.counted = true;
            Add(Action::ReleaseSharedFile, path).created = !notes.existedBefore;
        }
        for (const HVString& path : order_) {
            const FileNotes& notes = files_[Folded(path)];
            if (notes.gone || notes.counted || notes.font || IsSettings(path))
                continue;
            // In a shared folder only what a copy cut short left: nothing counts on it yet.
            if (IsShared(path) && (notes.confirmed || notes.existedBefore))
                continue;
            // Outside the install folder a file that was there before is not ours to take.
            if (IsBelow(path, places_.installFolder) || !notes.existedBefore)
                Add(Action::RemoveFile, path);
        }
        if (!keepSettings_)
            Add(Action::RemoveSettings, places_.settingsKey, places_.dataFolder);
        Add(Action::DeleteRecordFile, places_.installFolder + CInstallRecord::kFileName);
        // The install folder goes when nothing is left in it, whoever made it.
        if (foldersSeen_.insert(Folded(places_.installFolder)).second)
            folders_.push_back(places_.installFolder);
        // Deepest first, so that a folder is empty when its turn comes.
        std::stable_sort(folders_.begin(), folders_.end(),
                         [](const HVString& a, const HVString& b) { return a.GetLength() > b.GetLength(); });
        for (const HVString& folder : folders_)
            Add(Action::RemoveFolder, folder);
        std::stable_sort(steps_.begin(), steps_.end(),
                         [](const UninstallStep& a, const UninstallStep& b) { return a.action < b.action; });
        return std::move(steps_);
    }

    bool IsSettings(const HVString& path) const
    {
        return IsKeyBelowOrEqual(path, places_.settingsKey) || IsBelowOrEqual(path, places_.dataFolder);
    }

private:
    UninstallStep& Add(Action action, const HVString& path, const HVString& name = HVString())
    {
        UninstallStep step;
        step.action = action;
        step.path = path;
        step.name = name;
        steps_.push_back(step);
        return steps_.back();
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
    std::vector<UninstallStep> steps_;
    std::map<HVString, FileNotes> files_;
    std::vector<HVString> order_, shared_, folders_, keys_, pruned_;
    std::vector<InstallChange> fonts_, values_;
    std::set<HVString> sharedSeen_, fontsSeen_, shortcutsSeen_, modulesSeen_, foldersSeen_, keysSeen_, valuesSeen_;
};
}

bool CUninstallPlan::IsBelow(const HVString& path, const HVString& folder)
{
    return !folder.IsEmpty() && folder.EndsWith(u"\\") && path.GetLength() > folder.GetLength() &&
           path.StartsWithNoCase(folder.view());
}

std::vector<HVString> CUninstallPlan::ProductRegistryPlaces(const HVString& productRoot)
{
    std::vector<HVString> places{u"HKCR\\"};
    const char16_t* const below[] = {
        u"Software\\Classes\\",
        u"Software\\Microsoft\\Windows\\CurrentVersion\\Uninstall\\",
        u"Software\\Microsoft\\Windows\\CurrentVersion\\App Paths\\",
    };
    const char16_t* const whole[] = {
        u"Software\\Halvard",
        u"Software\\Clients",
        u"Software\\RegisteredApplications",
        u"Software\\Microsoft\\Windows\\CurrentVersion\\Run",
        u"Software\\Microsoft\\Windows\\CurrentVersion\\RunOnce",
        u"Software\\Microsoft\\Windows\\CurrentVersion\\SharedDLLs",
        u"Software\\Microsoft\\Windows\\CurrentVersion\\Explorer\\FileExts",
        u"Software\\Microsoft\\Windows\\CurrentVersion\\Explorer\\AutoplayHandlers",
        u"Software\\Microsoft\\Windows NT\\CurrentVersion\\Fonts",
        u"Software\\Microsoft\\Keyboard\\Native Media Players",
        u"Software\\Netscape\\Netscape Navigator\\User Trusted External Applications",
    };
    for (const char16_t* root : {u"HKLM\\", u"HKCU\\"}) {
        for (const char16_t* key : below)
            places.push_back(HVString(root) + key);
        for (const char16_t* key : whole)
            places.push_back(HVString(root) + key);
        if (!productRoot.IsEmpty())
            places.push_back(HVString(root) + productRoot);
    }
    return places;
}

CUninstallPlan CUninstallPlan::Make(const CInstallRecord::Contents& record, const Places& places, bool keepSettings)
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
    Planner planner(places, keepSettings);
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

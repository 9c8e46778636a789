#include "engine/CUninstallPlan.h"

#include <gtest/gtest.h>

#include <random>

namespace
{
using Kind = InstallChange::Kind;

const char16_t* const kActions[] = {u"leave", u"unregister", u"restore", u"delete-value", u"delete-key", u"shortcut",
                                    u"font", u"shared", u"file", u"put-back", u"register", u"cancel-restart",
                                    u"settings", u"record-key", u"key-if-empty", u"prune-key", u"", u"folder"};
static_assert(std::size(kActions) == static_cast<size_t>(UninstallStep::Action::RemoveFolder) + 1);
const char16_t* const kDir = u"C:\\Program Files\\Halvard\\Sonora 32\\";
const char16_t* const kRecord = u"HKLM\\Software\\Halvard\\Corvale\\Installations\\Sonora 32";
const char16_t* const kEntry = u"HKLM\\SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Uninstall\\Sonora 32";

// A change as the current format writes it: `after` is what the install put there.
InstallChange C(Kind kind, const char16_t* path, const char16_t* name = u"", bool existed = false,
                const char16_t* before = u"", const char16_t* after = u"")
{
    return InstallChange{.kind = kind, .path = path, .name = name, .existedBefore = existed, .before = before, .after = after};
}

// The same, as a record of the first format has it: nothing of what was written.
InstallChange Old(InstallChange change)
{
    change.afterKnown = false;
    return change;
}

CUninstallPlan::Places Places()
{
    CUninstallPlan::Places places;
    places.installFolder = kDir;
    places.folders = {u"C:\\Windows\\system32\\", u"C:\\Windows\\Fonts\\", u"C:\\Users\\u\\Start Menu\\"};
    places.sharedFolderCount = 1;
    places.registry = {u"HKCR\\.*",          u"HKCR\\S.File",        u"HKLM\\Software\\Halvard\\Sonora 32",
                       u"HKCU\\Software\\Halvard\\Sonora 32", kRecord, kEntry,
                       u"HKLM\\Software\\Halvard\\Listenwell\\Plugins\\", u"HKLM\\Software\\Clients\\Media\\Sonora",
                       u"HKLM\\SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\SharedDLLs",
                       u"HKCU\\Software\\Netscape\\Netscape Navigator\\User Trusted External Applications"};
    places.recordKeys = {kRecord, kEntry};
    places.ownKeys = {u"HKLM\\Software\\Halvard\\Sonora 32", u"HKCR\\S.*", kRecord, kEntry};
    places.settingsKey = u"HKCU\\Software\\Halvard\\Sonora 32";
    places.dataFolder = u"C:\\Users\\u\\AppData\\Halvard\\Sonora 32\\";
    places.forgetValues = {{u"HKCU\\Software\\Halvard\\Sonora 32\\Installer", u"Start Menu Version"}};
    return places;
}

std::vector<std::string> Render(const CUninstallPlan& plan)
{
    std::vector<std::string> lines;
    for (const UninstallStep& step : plan.Steps()) {
        // The steps every plan ends with, but for the folders it made.
        if (step.action == UninstallStep::Action::DeleteRecordFile || step.action == UninstallStep::Action::DeleteRecordKey ||
            (step.action == UninstallStep::Action::RemoveFolder && step.path == kDir) ||
            (step.action == UninstallStep::Action::DeleteValue && step.name == u"Start Menu Version"))
            continue;
        HVString line = HVString(kActions[static_cast<int>(step.action)]) + u" " + step.path;
        line += (step.name.IsEmpty() ? u"" : u"|" + step.name) + (step.data.IsEmpty() ? u"" : u"=" + step.data);
        line += (step.created ? u" new" : u"") + (step.check ? u" if " + step.expect : u"");
        lines.push_back(line.ToUtf8());
    }
    return lines;
}

TEST(CUninstallPlanTest, RecordsBecomeOrderedStepsThatTouchOnlyWhatIsStillOurs)
{
    const HVString exe = HVString(kDir) + u"Sonora 32.exe", ext = HVString(kDir) + u"Shell.dll";
    const char16_t* const link = u"C:\\Users\\u\\Start Menu\\Sonora.lnk";
    const HVString kept = HVString(kDir) + u"Replaced Shortcuts\\Sonora.lnk";
    const struct
    {
        const char* what;
        std::vector<InstallChange> changes;
        bool keepSettings;
        std::vector<std::string> expected;
    } rows[] = {
        {"a value goes back to its earliest data while it holds the latest written; made keys go when empty, deepest first",
         {C(Kind::ValueWritten, u"HKCR\\.mp3", u"", true, u"\"Other.mp3\"", u"\"x\""),
          C(Kind::ValueWritten, u"HKCR\\.mp3", u"", true, u"\"x\"", u"\"S.File\""),
          C(Kind::ValueWritten, u"HKCR\\.mp3", u"S.Default.BAK", false, u"", u"\"Other.mp3\""),
          C(Kind::KeyCreated, u"HKCR\\S.File"), C(Kind::KeyCreated, u"HKCR\\S.File\\shell"),
          C(Kind::ValueWritten, u"HKCR\\S.File\\shell", u"x", false, u"", u"\"Play\""),
          C(Kind::ValueDeleted, u"HKLM\\Software\\Clients\\Media\\Sonora", u"CLSID", true, u"dword:00000001")},
         true,
         {"restore HKCR\\.mp3=\"Other.mp3\" if \"S.File\"", "restore HKLM\\Software\\Clients\\Media\\Sonora|CLSID=dword:00000001 if ",
          "delete-value HKCR\\.mp3|S.Default.BAK if \"Other.mp3\"", "delete-value HKCR\\S.File\\shell|x if \"Play\"",
          "key-if-empty HKCR\\S.File\\shell", "key-if-empty HKCR\\S.File"}},
        {"another product's shared parents are only ever removed when empty; the product's records go whole",
         {C(Kind::KeyCreated, u"HKLM\\Software\\Halvard"), C(Kind::KeyCreated, u"HKLM\\Software\\Halvard\\Corvale"),
          C(Kind::KeyCreated, u"HKLM\\Software\\Halvard\\Corvale\\Installations"), C(Kind::KeyCreated, kRecord),
          C(Kind::ValueWritten, kRecord, u"Path", false, u"", u"\"x\""),
          C(Kind::KeyCreated, u"HKLM\\Software\\Halvard\\Listenwell\\Plugins\\Input\\P")},
         true,
         {"key-if-empty HKLM\\Software\\Halvard\\Listenwell\\Plugins\\Input\\P",
          "key-if-empty HKLM\\Software\\Halvard\\Corvale\\Installations", "key-if-empty HKLM\\Software\\Halvard\\Corvale",
          "key-if-empty HKLM\\Software\\Halvard"}},
        {"removal order: modules, shortcuts, files, folders deepest first; a replaced shortcut comes back",
         {C(Kind::FolderCreated, u"C:\\Program Files\\Halvard\\"), C(Kind::FolderCreated, kDir),
          C(Kind::FileStarted, exe.c_str()), C(Kind::FileWritten, exe.c_str(), u"", true), C(Kind::FileWritten, ext.c_str()),
          C(Kind::ModuleRegistered, ext.c_str(), u"RegSvr32"),
          C(Kind::ModuleRegistered, u"E:\\Setup\\Drivers\\Halvard.inf", u"WDMDriver"),
          C(Kind::FileWritten, kept.c_str()), C(Kind::FileStarted, link, u"", true),
          C(Kind::ShortcutCreated, link, u"", true, kept.c_str(), u"ab12"), C(Kind::FileDeleted, ext.c_str())},
         true,
         {"unregister C:\\Program Files\\Halvard\\Sonora 32\\Shell.dll|RegSvr32", "unregister E:\\Setup\\Drivers\\Halvard.inf|WDMDriver",
          "shortcut C:\\Users\\u\\Start Menu\\Sonora.lnk=C:\\Program Files\\Halvard\\Sonora 32\\Replaced Shortcuts\\Sonora.lnk if ab12",
          "file C:\\Program Files\\Halvard\\Sonora 32\\Sonora 32.exe", "file C:\\Program Files\\Halvard\\Sonora 32\\Replaced Shortcuts\\Sonora.lnk",
          "folder C:\\Program Files\\Halvard\\"}},
        {"shared files by their counts, a file only while its bytes are the ones written; a copy cut short goes",
         {C(Kind::FileWritten, u"C:\\Windows\\system32\\a.dll", u"", false, u"", u"aa"),
          C(Kind::SharedFileCounted, u"C:\\Windows\\system32\\a.dll", u"", false, u"", u"1"),
          C(Kind::FileWritten, u"C:\\Windows\\system32\\b.dll", u"", true, u"", u"bb"),
          C(Kind::SharedFileCounted, u"C:\\Windows\\system32\\b.dll", u"", true, u"1", u"2"),
          C(Kind::SharedFileCounted, u"C:\\Windows\\system32\\b.dll", u"", true, u"2", u"3"),
          C(Kind::FileWritten, u"C:\\Windows\\system32\\c.dll", u"", false, u"", u"cc"), C(Kind::FileStarted, u"C:\\Windows\\system32\\d.dll"),
          C(Kind::ValueWritten, u"HKLM\\SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\SharedDLLs", u"C:\\Windows\\system32\\b.dll", true,
            u"dword:00000001", u"dword:00000002"),
          C(Kind::FontAdded, u"C:\\Windows\\Fonts\\f.ttf", u"F (TrueType)"), C(Kind::FileWritten, u"C:\\Windows\\Fonts\\f.ttf", u"", false, u"", u"ff")},
         true,
         {"font C:\\Windows\\Fonts\\f.ttf|F (TrueType) new if ff", "shared C:\\Windows\\system32\\a.dll new if aa",
          "shared C:\\Windows\\system32\\b.dll if bb", "file C:\\Windows\\system32\\d.dll"}},
        {"settings kept: nothing below them is touched but the notes of the shortcuts made",
         {C(Kind::KeyCreated, u"HKCU\\Software\\Halvard"), C(Kind::KeyCreated, u"HKCU\\Software\\Halvard\\Sonora 32"),
          C(Kind::ValueWritten, u"HKCU\\Software\\Halvard\\Sonora 32\\Properties", u"a", false, u"", u"\"1\""),
          C(Kind::FolderCreated, u"C:\\Users\\u\\AppData\\Halvard\\Sonora 32\\Data\\")},
         true,
         {"key-if-empty HKCU\\Software\\Halvard"}},
        {"settings removed as a whole",
         {C(Kind::KeyCreated, u"HKCU\\Software\\Halvard"), C(Kind::ValueWritten, u"HKCU\\Software\\Halvard\\Sonora 32\\Properties", u"a")},
         false,
         {"settings HKCU\\Software\\Halvard\\Sonora 32|C:\\Users\\u\\AppData\\Halvard\\Sonora 32\\",
          "key-if-empty HKCU\\Software\\Halvard"}},
        {"a record of the first format: the product's own places as before, others' left",
         {Old(C(Kind::KeyCreated, u"HKCR\\S.File")), Old(C(Kind::ValueWritten, u"HKCR\\S.File\\shell", u"x")),
          Old(C(Kind::KeyCreated, u"HKLM\\Software\\Halvard")),
          Old(C(Kind::ValueWritten, u"HKLM\\Software\\Halvard\\Sonora 32", u"v")),
          Old(C(Kind::ValueWritten, u"HKCR\\.mp3", u"", true, u"\"Other.mp3\"")), Old(C(Kind::FileWritten, u"C:\\Windows\\Fonts\\g.ttf")),
          Old(C(Kind::ShortcutCreated, link)), Old(C(Kind::FileWritten, exe.c_str()))},
         true,
         {"leave HKCR\\.mp3=the install record does not say what was written there",
          "leave C:\\Users\\u\\Start Menu\\Sonora.lnk=the install record does not say what was written there",
          "leave C:\\Windows\\Fonts\\g.ttf=the install record does not say what was written there",
          "delete-value HKLM\\Software\\Halvard\\Sonora 32|v", "delete-key HKCR\\S.File",
          "file C:\\Program Files\\Halvard\\Sonora 32\\Sonora 32.exe", "prune-key HKLM\\Software\\Halvard"}},
    };
    for (const auto& row : rows) {
        const CUninstallPlan plan = CUninstallPlan::Make({.changes = row.changes}, Places(), row.keepSettings);
        EXPECT_FALSE(plan.Refused()) << row.what << ": " << plan.Reason().ToUtf8();
        EXPECT_EQ(Render(plan), row.expected) << row.what;
    }
}

// A run that did not end well comes undone: what it replaced or removed is put back from where it
// was kept, what it made goes, and nothing of an earlier installation's records or settings.
TEST(CUninstallPlanTest, ARunIsRolledBackFromWhatItKept)
{
    const HVString exe = HVString(kDir) + u"Sonora 32.exe", dll = HVString(kDir) + u"Shell.dll";
    const HVString old = HVString(kDir) + u"Old.dll", data = HVString(kDir) + u"Data\\";
    const std::vector<InstallChange> run = {
        C(Kind::FileDeleted, old.c_str(), u"", true, (old + u".iwold").c_str()),
        C(Kind::FolderDeleted, data.c_str(), u"", true, (HVString(kDir) + u"Data.iwold\\").c_str()),
        C(Kind::FileStarted, (exe + u".iwnew").c_str()), C(Kind::FileStarted, exe.c_str(), u"", true, (exe + u".iwold").c_str()),
        C(Kind::FileWritten, exe.c_str(), u"", true, (exe + u".iwold").c_str()),
        C(Kind::FileWritten, dll.c_str(), u"", true, (dll + u".iwold").c_str()), C(Kind::ModuleRegistered, dll.c_str(), u"DllRegisterServer"),
        C(Kind::FileWritten, (HVString(kDir) + u"New.dll").c_str()),
        InstallChange{.kind = Kind::FileWritten, .path = u"C:\\Windows\\system32\\s.dll", .existedBefore = true, .deferred = true},
        C(Kind::KeyCreated, kRecord), C(Kind::ValueWritten, kRecord, u"Path", false, u"", u"\"x\""),
        C(Kind::ValueWritten, u"HKCU\\Software\\Halvard\\Sonora 32\\Properties", u"a", true, u"\"mine\"", u"\"1\""),
    };
    const CUninstallPlan plan = CUninstallPlan::Rollback(run, Places());
    ASSERT_FALSE(plan.Refused()) << plan.Reason().ToUtf8();
    const std::vector<std::string> all = Render(plan);
    for (const UninstallStep& step : plan.Steps())
        EXPECT_NE(step.action, UninstallStep::Action::DeleteRecordKey);
    EXPECT_EQ(all, (std::vector<std::string>{
                       "leave C:\\Windows\\system32\\s.dll=what was there before was not kept",
                       "unregister C:\\Program Files\\Halvard\\Sonora 32\\Shell.dll|DllRegisterServer",
                       "restore HKCU\\Software\\Halvard\\Sonora 32\\Properties|a=\"mine\" if \"1\"",
                       "delete-value HKLM\\Software\\Halvard\\Corvale\\Installations\\Sonora 32|Path if \"x\"",
                       "file C:\\Program Files\\Halvard\\Sonora 32\\Sonora 32.exe.iwnew", "file C:\\Program Files\\Halvard\\Sonora 32\\New.dll",
                       "put-back C:\\Program Files\\Halvard\\Sonora 32\\Old.dll=C:\\Program Files\\Halvard\\Sonora 32\\Old.dll.iwold",
                       "put-back C:\\Program Files\\Halvard\\Sonora 32\\Data\\=C:\\Program Files\\Halvard\\Sonora 32\\Data.iwold\\",
                       "put-back C:\\Program Files\\Halvard\\Sonora 32\\Sonora 32.exe=C:\\Program Files\\Halvard\\Sonora 32\\Sonora 32.exe.iwold",
                       "put-back C:\\Program Files\\Halvard\\Sonora 32\\Shell.dll=C:\\Program Files\\Halvard\\Sonora 32\\Shell.dll.iwold",
                       "register C:\\Program Files\\Halvard\\Sonora 32\\Shell.dll|DllRegisterServer",
                       "cancel-restart C:\\Windows\\system32\\s.dll",
                       "key-if-empty HKLM\\Software\\Halvard\\Corvale\\Installations\\Sonora 32"}));
}

TEST(CUninstallPlanTest, ForeignPlacesOrDamageRefuseEverything)
{
    const struct { InstallChange change; const char16_t* problem; } rows[] = {
        {C(Kind::FileWritten, u"C:\\Program Files\\Halvard\\Sonora 32\\..\\..\\Windows\\win.ini"), u""},
        {C(Kind::FileWritten, u"C:\\Program Files\\Halvard\\Sonora 32\\ . \\a.dll"), u""},
        {C(Kind::FileWritten, u"D:\\Other\\a.dll"), u""},
        {C(Kind::FileWritten, u"C:/Program Files/Halvard/Sonora 32/a.dll"), u""},
        {C(Kind::FolderCreated, u"C:\\Windows\\"), u""},
        {C(Kind::FolderCreated, u"C:\\"), u""},
        {C(Kind::KeyCreated, u"HKLM\\Software"), u""},
        {C(Kind::KeyCreated, u"HKCR"), u""},
        {C(Kind::KeyCreated, u"HKCR\\CLSID\\{x}"), u""},
        {C(Kind::KeyCreated, u"HKLM\\Software\\Halvard\\\\x"), u""},
        {C(Kind::ValueWritten, u"HKLM\\SYSTEM\\CurrentControlSet", u"x"), u""},
        {C(Kind::ValueWritten, u"HKLM\\Software\\Halvard\\Corvale\\Installations\\Other 9", u"Path"), u""},
        {C(Kind::ValueWritten, u"HKCR\\.mp3", u"", true, u"garbage"), u""},
        {C(Kind::ShortcutCreated, u"C:\\Users\\u\\Start Menu\\S.lnk", u"", true, u"C:\\Windows\\win.ini"), u""},
        {C(Kind::FileWritten, u"C:\\Program Files\\Halvard\\Sonora 32\\a.dll"), u"damaged on line 3"},
    };
    for (const auto& row : rows) {
        const CUninstallPlan plan =
            CUninstallPlan::Make({.changes = {C(Kind::FileWritten, u"C:\\Program Files\\Halvard\\Sonora 32\\ok.dll"), row.change},
                                  .problem = row.problem},
                                 Places(), true);
        EXPECT_TRUE(plan.Refused()) << row.change.path.ToUtf8();
        EXPECT_TRUE(plan.Steps().empty()) << row.change.path.ToUtf8();
    }
}

// Whatever a record says, a plan that stands names only the product's places, and deletes a
// tree only where the product owns it.
TEST(CUninstallPlanTest, RandomRecordsNeverReachOutsideTheProductsPlaces)
{
    const char16_t* const paths[] = {
        u"C:\\Program Files\\Halvard\\Sonora 32\\a.dll", u"C:\\Program Files\\Halvard\\", u"C:\\Windows\\system32\\b.dll",
        u"C:\\Windows\\Fonts\\f.ttf", u"C:\\Users\\u\\Start Menu\\S.lnk", u"C:\\Windows\\win.ini", u"D:\\x.dll",
        u"HKCR\\.mp3", u"HKCR\\S.File\\shell", u"HKLM\\Software\\Halvard", u"HKLM\\Software\\Halvard\\Other 9",
        u"HKLM\\Software\\Halvard\\Sonora 32", kRecord, kEntry, u"HKCU\\Software\\Halvard\\Sonora 32\\Properties",
        u"HKLM\\Software\\Halvard\\Corvale", u"HKLM\\Software\\Halvard\\Listenwell\\Plugins\\Input\\P",
        u"HKLM\\SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\SharedDLLs", u"HKLM\\SYSTEM\\x", u"HKCR\\CLSID",
        u"C:\\Program Files\\Halvard\\Sonora 32\\..\\x", u"HKCU\\Software\\Halvard\\Other 9",
    };
    const CUninstallPlan::Places places = Places();
    const auto isOwnTree = [&](const HVString& key) {
        for (const HVString& own : places.ownKeys)
            if (own.EndsWith(u"*") ? key.StartsWithNoCase(own.Left(own.GetLength() - 1).view())
                                   : CUninstallPlan::IsKeyBelowOrEqual(key, own))
                return true;
        return CUninstallPlan::IsKeyBelowOrEqual(key, places.settingsKey);
    };
    const auto isFilePlace = [&](const HVString& path) {
        if (CUninstallPlan::IsBelow(path, places.installFolder) || CUninstallPlan::IsBelow(path, places.dataFolder) ||
            path.EqualsNoCase(places.installFolder.view()))
            return path.Find(u"..") == HVString::npos;
        for (const HVString& folder : places.folders)
            if (CUninstallPlan::IsBelow(path, folder))
                return true;
        return CUninstallPlan::IsBelow(places.installFolder, path); // a folder made on the way
    };
    std::mt19937 random(20261124);
    size_t planned = 0;
    for (int round = 0; round < 20000; ++round) {
        std::vector<InstallChange> changes;
        const size_t count = 1 + random() % 8;
        for (size_t i = 0; i < count; ++i) {
            InstallChange change = C(static_cast<Kind>(random() % 14), paths[random() % std::size(paths)], u"v",
                                     random() % 2 == 0, random() % 2 ? u"\"old\"" : u"", u"\"new\"");
            change.afterKnown = random() % 3 != 0;
            if (change.kind == Kind::FolderCreated && !change.path.EndsWith(u"\\"))
                change.path += u"\\";
            changes.push_back(change);
        }
        const CUninstallPlan plan = CUninstallPlan::Make({.changes = changes}, places, random() % 2 == 0);
        if (plan.Refused())
            continue;
        ++planned;
        for (const UninstallStep& step : plan.Steps()) {
            using Action = UninstallStep::Action;
            const bool registry = step.path.StartsWith(u"HK");
            SCOPED_TRACE(step.path.ToUtf8());
            if (step.action == Action::DeleteKey || step.action == Action::DeleteRecordKey || step.action == Action::RemoveSettings) {
                EXPECT_TRUE(isOwnTree(step.path));
            } else if (registry) {
                EXPECT_TRUE(std::any_of(places.registry.begin(), places.registry.end(), [&](const HVString& place) {
                    return place.EndsWith(u"*") ? step.path.StartsWithNoCase(place.Left(place.GetLength() - 1).view())
                                                : CUninstallPlan::IsKeyBelowOrEqual(step.path, HVString(place).TrimRight(u"\\")) ||
                                                      CUninstallPlan::IsBelow(place, step.path + u"\\");
                }));
            } else if (step.action != Action::Unregister) {
                EXPECT_TRUE(isFilePlace(step.path));
            }
        }
    }
    EXPECT_GT(planned, 300u);
}
}

#include "engine/CUninstallPlan.h"

#include <gtest/gtest.h>

namespace
{
using Kind = InstallChange::Kind;

const char16_t* const kActions[] = {u"unregister", u"restore", u"delete-value", u"delete-key", u"prune-key", u"shortcut",
                                    u"font", u"shared", u"file", u"settings", u"record-key", u"", u"folder"};

InstallChange C(Kind kind, const char16_t* path, const char16_t* name = u"", bool existed = false, const char16_t* before = u"")
{
    return InstallChange{kind, path, name, existed, before, false};
}

CUninstallPlan::Places Places()
{
    CUninstallPlan::Places places;
    places.installFolder = u"C:\\Program Files\\Halvard\\Sonora 32\\";
    places.folders = {u"C:\\Windows\\system32\\", u"C:\\Windows\\Fonts\\", u"C:\\Users\\u\\Start Menu\\"};
    places.sharedFolderCount = 1;
    places.registry = CUninstallPlan::ProductRegistryPlaces(u"Software\\Halvard\\Sonora 32");
    places.settingsKey = u"HKCU\\Software\\Halvard\\Sonora 32";
    places.dataFolder = u"C:\\Users\\u\\AppData\\Halvard\\Sonora 32\\";
    return places;
}

std::vector<std::string> Render(const CUninstallPlan& plan)
{
    std::vector<std::string> lines;
    for (const UninstallStep& step : plan.Steps()) {
        if (step.action == UninstallStep::Action::DeleteRecordFile)
            continue;
        HVString line = HVString(kActions[static_cast<int>(step.action)]) + u" " + step.path;
        line += (step.name.IsEmpty() ? u"" : u"|" + step.name) + (step.data.IsEmpty() ? u"" : u"=" + step.data);
        line += (step.created ? u" new" : u"") + (step.keep.IsEmpty() ? u"" : u" keep " + step.keep);
        lines.push_back(line.ToUtf8());
    }
    return lines;
}

TEST(CUninstallPlanTest, RecordsBecomeOrderedRemovalSteps)
{
    const char16_t* const dir = u"C:\\Program Files\\Halvard\\Sonora 32\\";
    const HVString exe = HVString(dir) + u"Sonora 32.exe", ext = HVString(dir) + u"Shell.dll";
    const struct
    {
        const char* what;
        std::vector<InstallChange> changes;
        bool keepSettings;
        std::vector<std::string> expected;
    } rows[] = {
        {"earliest data restored, repeats merged, values of made keys go with the key",
         {C(Kind::ValueWritten, u"HKCR\\.mp3", u"", true, u"\"Other.mp3\""), C(Kind::ValueWritten, u"HKCR\\.mp3", u"", true, u"\"x\""),
          C(Kind::ValueWritten, u"HKCR\\.mp3", u"S.Default.BAK"), C(Kind::KeyCreated, u"HKCR\\S.File"),
          C(Kind::ValueWritten, u"HKCR\\S.File\\shell", u"x"), C(Kind::KeyCreated, u"HKCR\\S.File\\shell"),
          C(Kind::ValueDeleted, u"HKLM\\Software\\Clients\\Media", u"CLSID", true, u"dword:00000001"),
          C(Kind::KeyCreated, u"HKCU\\Software\\Netscape"), C(Kind::ValueWritten, u"HKCU\\Software\\Netscape\\Netscape Navigator\\User Trusted External Applications", u"x")},
         true,
         {"restore HKCR\\.mp3=\"Other.mp3\"", "restore HKLM\\Software\\Clients\\Media|CLSID=dword:00000001",
          "delete-value HKCR\\.mp3|S.Default.BAK",
          "delete-value HKCU\\Software\\Netscape\\Netscape Navigator\\User Trusted External Applications|x",
          "delete-key HKCR\\S.File", "prune-key HKCU\\Software\\Netscape", "folder C:\\Program Files\\Halvard\\Sonora 32\\"}},
        {"removal order: modules, keys, shortcuts, files, records, folders deepest first",
         {C(Kind::FolderCreated, u"C:\\Program Files\\Halvard\\"), C(Kind::FolderCreated, dir),
          C(Kind::KeyCreated, u"HKLM\\SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Uninstall\\Sonora 32"),
          C(Kind::FileStarted, exe.c_str()), C(Kind::FileWritten, exe.c_str(), u"", true), C(Kind::FileWritten, ext.c_str()),
          C(Kind::ModuleRegistered, ext.c_str(), u"RegSvr32"), C(Kind::KeyCreated, u"HKLM\\Software\\Halvard\\Sonora 32"),
          C(Kind::ModuleRegistered, u"E:\\Setup\\Drivers\\Halvard.inf", u"WDMDriver"),
          C(Kind::ShortcutCreated, u"C:\\Users\\u\\Start Menu\\Sonora.lnk"), C(Kind::FileDeleted, ext.c_str())},
         true,
         {"unregister C:\\Program Files\\Halvard\\Sonora 32\\Shell.dll|RegSvr32", "unregister E:\\Setup\\Drivers\\Halvard.inf|WDMDriver",
          "delete-key HKLM\\Software\\Halvard\\Sonora 32",
          "shortcut C:\\Users\\u\\Start Menu\\Sonora.lnk", "file C:\\Program Files\\Halvard\\Sonora 32\\Sonora 32.exe",
          "record-key HKLM\\SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Uninstall\\Sonora 32",
          "folder C:\\Program Files\\Halvard\\Sonora 32\\", "folder C:\\Program Files\\Halvard\\"}},
        {"shared files by their counts, not their values; system files never without one unless a copy was cut short",
         {C(Kind::FileWritten, u"C:\\Windows\\system32\\a.dll"), C(Kind::SharedFileCounted, u"C:\\Windows\\system32\\a.dll"),
          C(Kind::FileWritten, u"C:\\Windows\\system32\\b.dll", u"", true), C(Kind::SharedFileCounted, u"C:\\Windows\\system32\\b.dll", u"", false, u"1"),
          C(Kind::FileWritten, u"C:\\Windows\\system32\\c.dll"), C(Kind::FileStarted, u"C:\\Windows\\system32\\d.dll"),
          C(Kind::KeyCreated, u"HKLM\\SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\SharedDLLs"),
          C(Kind::ValueWritten, u"HKLM\\SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\SharedDLLs", u"C:\\Windows\\system32\\b.dll", true, u"dword:00000001"),
          C(Kind::FileWritten, u"C:\\Windows\\Fonts\\f.ttf"), C(Kind::FontAdded, u"C:\\Windows\\Fonts\\f.ttf", u"F (TrueType)")},
         true,
         {"font C:\\Windows\\Fonts\\f.ttf|F (TrueType) new", "shared C:\\Windows\\system32\\a.dll new",
          "shared C:\\Windows\\system32\\b.dll", "file C:\\Windows\\system32\\d.dll", "folder C:\\Program Files\\Halvard\\Sonora 32\\"}},
        {"settings kept: nothing below them is touched, a made parent keeps them",
         {C(Kind::KeyCreated, u"HKCU\\Software\\Halvard"), C(Kind::ValueWritten, u"HKCU\\Software\\Halvard\\Sonora 32\\Properties", u"a"),
          C(Kind::FolderCreated, u"C:\\Users\\u\\AppData\\Halvard\\Sonora 32\\Data\\")},
         true,
         {"delete-key HKCU\\Software\\Halvard keep HKCU\\Software\\Halvard\\Sonora 32", "folder C:\\Program Files\\Halvard\\Sonora 32\\"}},
        {"settings removed as a whole",
         {C(Kind::KeyCreated, u"HKCU\\Software\\Halvard"), C(Kind::ValueWritten, u"HKCU\\Software\\Halvard\\Sonora 32\\Properties", u"a")},
         false,
         {"delete-key HKCU\\Software\\Halvard",
          "settings HKCU\\Software\\Halvard\\Sonora 32|C:\\Users\\u\\AppData\\Halvard\\Sonora 32\\", "folder C:\\Program Files\\Halvard\\Sonora 32\\"}},
    };
    for (const auto& row : rows) {
        const CUninstallPlan plan = CUninstallPlan::Make({row.changes, 0, {}}, Places(), row.keepSettings);
        EXPECT_FALSE(plan.Refused()) << row.what << ": " << plan.Reason().ToUtf8();
        EXPECT_EQ(Render(plan), row.expected) << row.what;
        EXPECT_EQ(plan.Steps().size(), row.expected.size() + 1) << row.what;
    }
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
        {C(Kind::KeyCreated, u"HKLM\\Software\\Classes"), u""},
        {C(Kind::KeyCreated, u"HKLM\\Software\\Halvard\\\\x"), u""},
        {C(Kind::ValueWritten, u"HKLM\\SYSTEM\\CurrentControlSet", u"x"), u""},
        {C(Kind::ValueWritten, u"HKCR\\.mp3", u"", true, u"garbage"), u""},
        {C(Kind::FileWritten, u"C:\\Program Files\\Halvard\\Sonora 32\\a.dll"), u"damaged on line 3"},
    };
    for (const auto& row : rows) {
        const CUninstallPlan plan = CUninstallPlan::Make({{C(Kind::FileWritten, u"C:\\Program Files\\Halvard\\Sonora 32\\ok.dll"), row.change}, 0, row.problem},
                                                         Places(), true);
        EXPECT_TRUE(plan.Refused()) << row.change.path.ToUtf8();
        EXPECT_TRUE(plan.Steps().empty()) << row.change.path.ToUtf8();
    }
}
}

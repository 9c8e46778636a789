// The product's records on Wine's real registry: what the writer notes, the first-run
// settings, and the carry-over from an earlier major version.
#include "engine/win/CProductRecords.h"

#include "changes/win/CRegistryWriter.h"
#include "engine/win/CInstallationRecords.h"
#include "engine/win/CSettingsHelper.h"
#include "foundation/win/HVProductPaths.h"

#include "FreshMachineTest.h"
#include "InstallStepParts.h"
#include "ProductKeys.h"
#include "PublishedSettings.h"
#include "TestPaths.h"
#include "TestRegistry.h"

#include <gtest/gtest.h>

namespace
{
using e2e::kProductKey, e2e::kPropertiesKey;
const std::wstring k31 = L"Software\\Halvard\\Sonora 31";
const std::wstring k30 = L"Software\\Halvard\\Sonora 30";
const std::wstring kRun = L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Run";
const std::wstring kHandler = std::wstring(L"Software\\Classes\\") + reinterpret_cast<const wchar_t*>(CSettingsHelper::kContextMenuHandlerKey);

// The product's keys, Run entries, records and shell handler start and end as a fresh machine has them.
class CProductRecordsTest : public e2e::FreshMachineTest
{
protected:
    CInstallContext& Context(const HVString& defaultSettings = u"")
    {
        parts_.description.SetText(u"<HVIC version=\"1.0\"><DefaultSettings>" + defaultSettings + u"</DefaultSettings></HVIC>");
        return parts_.context;
    }
    const InstallChange* Noted(InstallChange::Kind kind, const std::wstring& path, const std::wstring& name = L"")
    {
        for (const InstallChange& c : changes_.Changes())
            if (c.kind == kind && c.path == HVString(path.c_str()) && c.name == HVString(name.c_str()))
                return &c;
        return nullptr;
    }

    e2e::InstallStepParts parts_{e2e::ScratchFolder(L"ProductRecords").c_str(), u"C:\\Program Files\\Halvard\\Sonora\\"};
    CInstallChangeLog& changes_ = parts_.changes;
};

TEST_F(CProductRecordsTest, TheWriterNotesEveryNewKeyAndWhatEachValueHeldBeforeAndAfter)
{
    ASSERT_TRUE(e2e::RegSetDword(HKEY_CURRENT_USER, L"Software\\Halvard\\IW Test Writer", L"Old", 7));
    CRegistryWriter writer(changes_, HKEY_CURRENT_USER, u"Software\\Halvard\\IW Test Writer\\A\\B");
    ASSERT_TRUE(writer.Open());
    ASSERT_TRUE(writer.SetString(u"Text", u"one") && writer.SetString(u"Text", u"two"));
    CRegistryWriter parent(changes_, HKEY_CURRENT_USER, u"Software\\Halvard\\IW Test Writer");
    ASSERT_TRUE(parent.OpenExisting());
    ASSERT_TRUE(parent.DeleteValue(u"Old") && parent.DeleteValue(u"Never There") && parent.DeleteSubKeyTree(u"A"));

    ASSERT_EQ(changes_.Changes().size(), 7u);
    EXPECT_NE(Noted(InstallChange::Kind::KeyCreated, L"HKCU\\Software\\Halvard\\IW Test Writer\\A"), nullptr);
    EXPECT_NE(Noted(InstallChange::Kind::KeyCreated, L"HKCU\\Software\\Halvard\\IW Test Writer\\A\\B"), nullptr);
    EXPECT_FALSE(changes_.Changes()[2].existedBefore);
    EXPECT_EQ(changes_.Changes()[2].after, u"\"one\"");
    EXPECT_EQ(changes_.Changes()[3].before, u"\"one\"");
    EXPECT_EQ(changes_.Changes()[3].after, u"\"two\"");
    const InstallChange* deleted = Noted(InstallChange::Kind::ValueDeleted, L"HKCU\\Software\\Halvard\\IW Test Writer", L"Old");
    ASSERT_NE(deleted, nullptr);
    EXPECT_EQ(deleted->before, u"dword:00000007");
    // A tree that goes is noted with every value in it, for a rollback to give them back.
    const InstallChange* inTree = Noted(InstallChange::Kind::ValueDeleted, L"HKCU\\Software\\Halvard\\IW Test Writer\\A\\B", L"Text");
    ASSERT_NE(inTree, nullptr);
    EXPECT_EQ(inTree->before, u"\"two\"");
    EXPECT_NE(Noted(InstallChange::Kind::KeyDeleted, L"HKCU\\Software\\Halvard\\IW Test Writer\\A"), nullptr);
    // A key that goes whole has each of its values noted with its data, for a rollback.
    const InstallChange* gone = Noted(InstallChange::Kind::ValueDeleted, L"HKCU\\Software\\Halvard\\IW Test Writer\\A\\B", L"Text");
    ASSERT_NE(gone, nullptr);
    EXPECT_EQ(gone->before, u"\"two\"");
    EXPECT_FALSE(e2e::RegKeyExists(HKEY_CURRENT_USER, L"Software\\Halvard\\IW Test Writer\\A"));
    // Noted before it is made: a write that never happens still leaves its note, which an
    // uninstall checks against the machine.
    EXPECT_FALSE(writer.SetString(u"Late", u"x"));
    EXPECT_NE(Noted(InstallChange::Kind::ValueWritten, L"HKCU\\Software\\Halvard\\IW Test Writer\\A\\B", L"Late"), nullptr);
}

TEST_F(CProductRecordsTest, FirstRunSettingsFillOnlyWhatIsMissing)
{
    ASSERT_TRUE(e2e::RegSetDword(HKEY_CURRENT_USER, kPropertiesKey, L"Startup - Page", 2));
    ASSERT_TRUE(e2e::RegSetDword(HKEY_LOCAL_MACHINE, kHandler, L"", 0));  // the extension is registered
    CSettingsHelper settings(Context(u"<START_LOCATION>9</START_LOCATION>"));
    const std::vector<HVString> written = settings.WriteDefaults();
    EXPECT_EQ(written.size(), 87u);
    EXPECT_EQ(e2e::RegValueNames(HKEY_CURRENT_USER, kPropertiesKey).size(), 88u);
    EXPECT_EQ(e2e::RegDword(HKEY_CURRENT_USER, kPropertiesKey, L"Startup - Page"), 2u);  // the user's own
    // Every other one as published, of its type.
    for (const PublishedSetting& s : PublishedSettings(HVProductPaths::GetMusicFolder()))
        if (s.id == 11)
            continue;
        else if (s.storedAsText)
            EXPECT_EQ(e2e::RegString(HKEY_CURRENT_USER, kPropertiesKey, s.name.w()), std::wstring(s.text.w())) << s.line;
        else
            EXPECT_EQ(e2e::RegDword(HKEY_CURRENT_USER, kPropertiesKey, s.name.w()), static_cast<DWORD>(s.integer)) << s.line;
    EXPECT_EQ(e2e::RegDword(HKEY_CURRENT_USER, kProductKey + L"\\Shell Extensions", L"HVShellExt x64"), 1u);
    EXPECT_EQ(changes_.Count(InstallChange::Kind::ValueWritten), 88u);

    // Unknown identifiers and numbers that aren't are refused, and nothing is written.
    EXPECT_FALSE(settings.Set(88, 1));
    EXPECT_FALSE(settings.Set(-1, u"x"));
    EXPECT_FALSE(settings.Set(11, u"12abc"));
    EXPECT_TRUE(settings.Set(11, u" 12 "));
    EXPECT_EQ(e2e::RegValueNames(HKEY_CURRENT_USER, kPropertiesKey).size(), 88u);
    EXPECT_EQ(e2e::RegDword(HKEY_CURRENT_USER, kPropertiesKey, L"Startup - Page"), 12u);
}

TEST_F(CProductRecordsTest, TheNewestEarlierVersionIsCarriedOverAndTheUsersOwnValuesWin)
{
    // The library path, a plain value, the user's own value and the first-run default are also
    // carried over end to end.
    const std::wstring earlierFolder = L"C:\\Program Files\\Halvard\\Sonora 31\\";
    ASSERT_TRUE(e2e::RegSetString(HKEY_CURRENT_USER, k31 + L"\\Installer", L"Install Directory", earlierFolder));
    const std::wstring earlier = k31 + L"\\Properties";
    const std::wstring imageFolder = L"File Location - Image File Location";
    ASSERT_TRUE(e2e::RegSetString(HKEY_CURRENT_USER, earlier, imageFolder, L"D:\\Pictures\\"));
    ASSERT_TRUE(e2e::RegSetString(HKEY_CURRENT_USER, earlier, L"Install - Start Version", L"31"));
    // A value of a type the product never wrote goes over as it is.
    HVRegKey odd;
    ASSERT_TRUE(odd.Create(HKEY_CURRENT_USER, earlier.c_str()) && odd.SetMultiString(u"Odd", {u"a", u"b"}));
    odd.Close();
    ASSERT_TRUE(e2e::RegSetString(HKEY_CURRENT_USER, k31 + L"\\Dependencies\\WebView2", L"Version", L"1.0"));
    ASSERT_TRUE(e2e::RegSetString(HKEY_CURRENT_USER, kRun, L"Sonora 31", L"\"C:\\old\\Sonora.exe\" /Boot"));
    ASSERT_TRUE(e2e::RegSetString(HKEY_CURRENT_USER, k30 + L"\\Properties", L"From 30", L"x"));
    // The earlier version's zoom and start page: the user's own zoom of this version stays, the
    // first-run default of the start page gives way.
    ASSERT_TRUE(e2e::RegSetDword(HKEY_CURRENT_USER, earlier, L"View - Zoom", 150));
    ASSERT_TRUE(e2e::RegSetDword(HKEY_CURRENT_USER, earlier, L"Startup - Page", 1));
    ASSERT_TRUE(e2e::RegSetDword(HKEY_CURRENT_USER, kPropertiesKey, L"View - Zoom", 120));

    CProductRecords records(Context());
    records.LoadDefaultSettings();
    records.UpgradeFromPreviousVersion();

    EXPECT_EQ(e2e::RegString(HKEY_CURRENT_USER, kPropertiesKey, imageFolder), L"D:\\Pictures\\");
    EXPECT_EQ(e2e::RegDword(HKEY_CURRENT_USER, kPropertiesKey, L"View - Zoom"), 120u);
    EXPECT_EQ(e2e::RegDword(HKEY_CURRENT_USER, kPropertiesKey, L"Startup - Page"), 1u);
    EXPECT_FALSE(e2e::RegString(HKEY_CURRENT_USER, kPropertiesKey, L"Install - Start Version"));  // not carried over
    EXPECT_EQ(e2e::RegMultiString(HKEY_CURRENT_USER, kPropertiesKey, L"Odd"), (std::vector<std::wstring>{L"a", L"b"}));
    EXPECT_FALSE(e2e::RegValueExists(HKEY_CURRENT_USER, kPropertiesKey, L"From 30"));
    EXPECT_EQ(e2e::RegString(HKEY_CURRENT_USER, kProductKey + L"\\Dependencies\\WebView2", L"Version"), L"1.0");
    EXPECT_EQ(e2e::RegString(HKEY_CURRENT_USER, kRun, L"Sonora 32"),
              L"\"C:\\Program Files\\Halvard\\Sonora\\Sonora.exe\" /Boot");
    EXPECT_FALSE(e2e::RegValueExists(HKEY_CURRENT_USER, kRun, L"Sonora 31"));
    EXPECT_EQ(parts_.progress.positions, (std::vector<int32_t>{0, 1}));
}

// The registry lists values by name; the change log shows the order they were written in.
TEST_F(CProductRecordsTest, RecordsAreWrittenInTheirOrder)
{
    CInstallationRecords records(Context());
    ASSERT_TRUE(records.Record());
    records.WriteUninstallEntry();
    std::vector<std::wstring> written;
    for (const InstallChange& change : changes_.Changes())
        if (change.kind == InstallChange::Kind::ValueWritten)
            written.push_back(reinterpret_cast<const wchar_t*>(change.name.c_str()));
    EXPECT_EQ(written, (std::vector<std::wstring>{
                           L"Path", L"Version", L"OS Version", L"Launcher Name", L"Uninstall Key", L"GUID",
                           L"Distributor ID", L"Install Directory", L"DisplayName", L"HelpLink", L"URLUpdateInfo",
                           L"URLInfoAbout", L"InstallLocation", L"Publisher", L"DisplayVersion", L"DisplayIcon",
                           L"UninstallString", L"QuietUninstallString", L"EstimatedSize", L"InstallDate", L"NoModify", L"NoRepair"}));
}

}  // namespace

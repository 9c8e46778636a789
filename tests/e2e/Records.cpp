// The product's records, end to end: the uninstall entry, the installations record, the
// first-run settings and the carry-over from an earlier major version, read back through the
// Win32 API after InstallWizard.exe has run.
#include "E2ESupport.h"

#include "foundation/CVersionInfo.h"
#include "foundation/HVSystemIdentity.h"

#include <gtest/gtest.h>

#include <windows.h>
#include <objbase.h>

namespace
{
const std::wstring kUninstall = L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Uninstall\\Sonora 32";
const std::wstring kInstallations = L"Software\\Halvard\\Corvale\\Installations";
const std::wstring kRoot = L"Software\\Halvard\\Sonora 32";
const std::wstring kProperties = kRoot + L"\\Properties";
const std::wstring k31 = L"Software\\Halvard\\Sonora 31";
const std::wstring kSupport = L"https://www.halvard.com/support/sonora/";
const HVRegView k64 = HVRegView::Key64;

std::wstring ProductVersion()
{
    CVersionInfo version;
    return version.Read((e2e::MediaFolder() + L"Listenwell\\Sonora 32.exe").c_str())
               ? std::wstring(reinterpret_cast<const wchar_t*>(version.GetText().c_str()))
               : L"32.0.0.0";
}

uint64_t TreeBytes(const std::wstring& folder)
{
    uint64_t total = 0;
    for (const std::wstring& file : e2e::ListTree(folder)) {
        WIN32_FILE_ATTRIBUTE_DATA data{};
        if (GetFileAttributesExW((folder + file).c_str(), GetFileExInfoStandard, &data))
            total += (uint64_t(data.nFileSizeHigh) << 32) | data.nFileSizeLow;
    }
    return total;
}

using RecordsTest = e2e::FreshMachineTest;

TEST_F(RecordsTest, ASilentInstallRecordsItselfAndASecondOneKeepsTheIdentifier)
{
    const e2e::RunResult first = e2e::RunSetup({}, L"/Silent /NoRun /DistributorID ACME-7").result;
    ASSERT_TRUE(first.ExitedWith(0)) << first.Describe();
    const std::wstring dest = e2e::DefaultDestination();

    // The uninstall entry: exactly these values (the registry lists them by name).
    EXPECT_EQ(e2e::RegValueNames(HKEY_LOCAL_MACHINE, kUninstall, k64),
              (std::vector<std::wstring>{L"DisplayIcon", L"DisplayName", L"DisplayVersion", L"EstimatedSize",
                                         L"HelpLink", L"InstallDate", L"InstallLocation", L"NoModify", L"NoRepair",
                                         L"Publisher", L"UninstallString", L"URLInfoAbout", L"URLUpdateInfo"}));
    const std::pair<const wchar_t*, std::wstring> strings[] = {
        {L"DisplayName", L"Sonora (64-bit)"},  {L"HelpLink", kSupport},
        {L"URLUpdateInfo", kSupport},          {L"URLInfoAbout", kSupport},
        {L"InstallLocation", dest},            {L"Publisher", L"Halvard, Inc."},
        {L"DisplayVersion", ProductVersion()}, {L"DisplayIcon", dest + L"application.ico"},
        {L"UninstallString", dest + L"HVMediaUninstall.exe"},
    };
    for (const auto& [name, expected] : strings)
        EXPECT_EQ(e2e::RegString(HKEY_LOCAL_MACHINE, kUninstall, name, k64), expected) << e2e::Utf8(name);
    // Measured before the plug-in step, whose sample package installer then logs beside itself;
    // the install record is no part of the product.
    const uint64_t helperLog = e2e::ReadFileText(dest + L"PackageInstaller.log").size() +
                               e2e::ReadFileText(dest + L"Install Record.txt").size();
    EXPECT_EQ(e2e::RegDword(HKEY_LOCAL_MACHINE, kUninstall, L"EstimatedSize", k64), (TreeBytes(dest) - helperLog + 1023) / 1024);
    SYSTEMTIME today{};
    GetLocalTime(&today);
    wchar_t date[16];
    swprintf(date, 16, L"%04d%02d%02d", today.wYear, today.wMonth, today.wDay);
    EXPECT_EQ(e2e::RegString(HKEY_LOCAL_MACHINE, kUninstall, L"InstallDate", k64), date);
    EXPECT_EQ(e2e::RegDword(HKEY_LOCAL_MACHINE, kUninstall, L"NoModify", k64), 1u);
    EXPECT_EQ(e2e::RegDword(HKEY_LOCAL_MACHINE, kUninstall, L"NoRepair", k64), 1u);
    // Nothing in the 32-bit view.
    EXPECT_FALSE(e2e::RegKeyExists(HKEY_LOCAL_MACHINE, kUninstall, HVRegView::Key32));

    // The installations record and the product's "Installer" key.
    const std::wstring record = kInstallations + L"\\Sonora 32";
    EXPECT_EQ(e2e::RegValueNames(HKEY_LOCAL_MACHINE, record, k64),
              (std::vector<std::wstring>{L"GUID", L"Launcher Name", L"OS Version", L"Path", L"Uninstall Key", L"Version"}));
    EXPECT_EQ(e2e::RegString(HKEY_LOCAL_MACHINE, record, L"Path", k64), dest + L"Sonora.exe");
    EXPECT_EQ(e2e::RegString(HKEY_LOCAL_MACHINE, record, L"Version", k64), ProductVersion());
    EXPECT_EQ(e2e::RegDword(HKEY_LOCAL_MACHINE, record, L"OS Version", k64),
              static_cast<DWORD>(HVSystemIdentity::Current().GetCode()));
    EXPECT_EQ(e2e::RegString(HKEY_LOCAL_MACHINE, record, L"Launcher Name", k64), L"Sonora.exe");
    EXPECT_EQ(e2e::RegString(HKEY_LOCAL_MACHINE, record, L"Uninstall Key", k64), L"Sonora 32");
    const auto guid = e2e::RegString(HKEY_LOCAL_MACHINE, record, L"GUID", k64);
    GUID parsed{};
    ASSERT_TRUE(guid && SUCCEEDED(CLSIDFromString(guid->c_str(), &parsed))) << e2e::Utf8(guid.value_or(L"<none>"));
    EXPECT_EQ(e2e::RegString(HKEY_CURRENT_USER, kRoot + L"\\Installer", L"Distributor ID"), L"ACME-7");
    EXPECT_EQ(e2e::RegString(HKEY_CURRENT_USER, kRoot + L"\\Installer", L"Install Directory"), dest);

    // First-run settings: the sample description's presets, the built-in defaults elsewhere.
    // 88 settings, the two of the file types chosen, the start-up media, the system plug-in's
    // mark and the driver's version.
    EXPECT_EQ(e2e::RegValueNames(HKEY_CURRENT_USER, kProperties).size(), 93u);
    EXPECT_EQ(e2e::RegDword(HKEY_CURRENT_USER, kProperties, L"Startup - Page"), 3u);
    EXPECT_EQ(e2e::RegString(HKEY_CURRENT_USER, kProperties, L"Ripping - Complete Sound File"), L"tada.wav");

    // Again, over the first: the same identifier, a setting the user changed stays.
    ASSERT_TRUE(e2e::RegSetDword(HKEY_CURRENT_USER, kProperties, L"Startup - Page", 5));
    const e2e::RunResult second = e2e::RunSetup({}, L"/Silent /NoRun").result;
    ASSERT_TRUE(second.ExitedWith(0)) << second.Describe();
    EXPECT_EQ(e2e::RegString(HKEY_LOCAL_MACHINE, record, L"GUID", k64), guid);
    EXPECT_EQ(e2e::RegDword(HKEY_CURRENT_USER, kProperties, L"Startup - Page"), 5u);
    EXPECT_EQ(e2e::RegString(HKEY_CURRENT_USER, kRoot + L"\\Installer", L"Distributor ID"), L"");
}

TEST_F(RecordsTest, APortableCopyHasNoUninstallEntryAndARecordOfItsOwn)
{
    const std::wstring folder = e2e::Expand(L"%SystemDrive%\\Portable Sonora\\");
    e2e::WizardUser user({
        e2e::NextOn(L"Welcome"),
        e2e::ChooseOn(L"Setup Type", L"Custom"),
        e2e::ChooseOn(L"Setup Type", L"Portable install"),
        {L"Destination Folder",
         [&](const e2e::WizardView& v) {
             e2e::TypeText(v.ControlOfClass(L"Edit"), folder);
             e2e::ClickNext(v);
         }},
        // Nothing to start (/NoRun) and nothing to restart: the page only says it is done.
        e2e::NextOn(L"Install Complete"),
    });
    const e2e::RunResult run = e2e::RunSetup({}, L"/NoRun", {}, user.Poller()).result;
    ASSERT_TRUE(run.ExitedWith(0)) << run.Describe() << "\n" << user.Describe();
    for (const std::wstring& key : e2e::RegSubKeys(HKEY_LOCAL_MACHINE, L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Uninstall", k64))
        EXPECT_NE(key.rfind(L"Sonora", 0), 0u) << e2e::Utf8(key);
    const std::vector<std::wstring> records = e2e::RegSubKeys(HKEY_LOCAL_MACHINE, kInstallations, k64);
    ASSERT_EQ(records.size(), 1u);
    EXPECT_EQ(records[0].rfind(L"Sonora 32 Portable ", 0), 0u) << e2e::Utf8(records[0]);
    EXPECT_EQ(e2e::RegString(HKEY_LOCAL_MACHINE, kInstallations + L"\\" + records[0], L"Path", k64), folder + L"Sonora.exe");
    EXPECT_EQ(e2e::RegString(HKEY_LOCAL_MACHINE, kInstallations + L"\\" + records[0], L"Uninstall Key", k64), L"");
}

TEST_F(RecordsTest, SettingsOfAnEarlierMajorVersionAreCarriedOverUnlessNoUpgrade)
{
    const std::wstring earlier = L"C:\\Program Files\\Halvard\\Sonora 31\\";
    for (const bool noUpgrade : {false, true}) {
        SCOPED_TRACE(noUpgrade ? "/NoUpgrade" : "upgrade");
        SetUp();
        ASSERT_TRUE(e2e::RegSetString(HKEY_CURRENT_USER, k31 + L"\\Installer", L"Install Directory", earlier));
        ASSERT_TRUE(e2e::RegSetString(HKEY_CURRENT_USER, k31 + L"\\Properties", L"LibraryPath", earlier + L"Data\\Library\\"));
        ASSERT_TRUE(e2e::RegSetDword(HKEY_CURRENT_USER, k31 + L"\\Properties", L"View - Zoom", 150));
        ASSERT_TRUE(e2e::RegSetDword(HKEY_CURRENT_USER, k31 + L"\\Properties", L"Startup - Page", 1));
        ASSERT_TRUE(e2e::RegSetDword(HKEY_CURRENT_USER, k31 + L"\\Properties", L"General - Volume", 20));
        ASSERT_TRUE(e2e::RegSetDword(HKEY_CURRENT_USER, kProperties, L"General - Volume", 80));

        const e2e::RunResult run = e2e::RunSetup({}, noUpgrade ? L"/Silent /NoRun /NoUpgrade" : L"/Silent /NoRun").result;
        ASSERT_TRUE(run.ExitedWith(0)) << run.Describe();
        const auto carried = [&](std::optional<std::wstring> value) { return noUpgrade ? std::nullopt : value; };
        EXPECT_EQ(e2e::RegString(HKEY_CURRENT_USER, kProperties, L"LibraryPath"),
                  carried(L"[App Data Path]Data\\Library\\"));
        EXPECT_EQ(e2e::RegDword(HKEY_CURRENT_USER, kProperties, L"View - Zoom"), noUpgrade ? std::nullopt : std::optional<DWORD>(150));
        // The earlier choice replaces this version's first-run default (the preset 3).
        EXPECT_EQ(e2e::RegDword(HKEY_CURRENT_USER, kProperties, L"Startup - Page"), noUpgrade ? 3u : 1u);
        // A value this version already had stays.
        EXPECT_EQ(e2e::RegDword(HKEY_CURRENT_USER, kProperties, L"General - Volume"), 80u);
    }
}
}  // namespace

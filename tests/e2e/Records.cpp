// The product's records, end to end: the uninstall entry, the installations record and the
// first-run settings, read back through the Win32 API after InstallWizard.exe has run (the
// carry-over from earlier versions and the portable record are rows of tests/scenarios).
#include "E2ESupport.h"

#include "foundation/HVSystemIdentity.h"

#include <gtest/gtest.h>

#include <windows.h>
#include <objbase.h>

namespace
{
using e2e::kInstallerKey, e2e::kPropertiesKey, e2e::kRecordKey, e2e::kUninstallEntryKey;
const std::wstring kSupport = L"https://www.halvard.com/support/sonora/";
const HVRegView k64 = HVRegView::Key64;

using RecordsTest = e2e::FreshMachineTest;

TEST_F(RecordsTest, ASilentInstallRecordsItself)
{
    const e2e::RunResult first = e2e::RunSetup({}, L"/Silent /NoRun /DistributorID ACME-7").result;
    ASSERT_TRUE(first.ExitedWith(0)) << first.Describe();
    const std::wstring dest = e2e::DefaultDestination();

    // The uninstall entry: exactly these values (the registry lists them by name).
    EXPECT_EQ(e2e::RegValueNames(HKEY_LOCAL_MACHINE, kUninstallEntryKey, k64),
              (std::vector<std::wstring>{L"DisplayIcon", L"DisplayName", L"DisplayVersion", L"EstimatedSize",
                                         L"HelpLink", L"InstallDate", L"InstallLocation", L"NoModify", L"NoRepair",
                                         L"Publisher", L"QuietUninstallString", L"UninstallString", L"URLInfoAbout",
                                         L"URLUpdateInfo"}));
    const std::pair<const wchar_t*, std::wstring> strings[] = {
        {L"DisplayName", L"Sonora (64-bit)"},  {L"HelpLink", kSupport},
        {L"URLUpdateInfo", kSupport},          {L"URLInfoAbout", kSupport},
        {L"InstallLocation", dest},            {L"Publisher", L"Halvard, Inc."},
        {L"DisplayVersion", e2e::SampleProductVersion()}, {L"DisplayIcon", dest + L"application.ico"},
        {L"UninstallString", dest + L"HVMediaUninstall.exe"},
        {L"QuietUninstallString", L"\"" + dest + L"HVMediaUninstall.exe\" /Silent"},
    };
    for (const auto& [name, expected] : strings)
        EXPECT_EQ(e2e::RegString(HKEY_LOCAL_MACHINE, kUninstallEntryKey, name, k64), expected) << e2e::Utf8(name);
    // Measured before the plug-in step, whose sample package installer then logs beside itself;
    // the install record is no part of the product.
    const uint64_t helperLog = e2e::ReadFileText(dest + L"PackageInstaller.log").size() +
                               e2e::ReadFileText(dest + L"Install Record.txt").size();
    EXPECT_EQ(e2e::RegDword(HKEY_LOCAL_MACHINE, kUninstallEntryKey, L"EstimatedSize", k64), (e2e::TreeBytes(dest) - helperLog + 1023) / 1024);
    SYSTEMTIME today{};
    GetLocalTime(&today);
    wchar_t date[16];
    swprintf(date, 16, L"%04d%02d%02d", today.wYear, today.wMonth, today.wDay);
    EXPECT_EQ(e2e::RegString(HKEY_LOCAL_MACHINE, kUninstallEntryKey, L"InstallDate", k64), date);
    EXPECT_EQ(e2e::RegDword(HKEY_LOCAL_MACHINE, kUninstallEntryKey, L"NoModify", k64), 1u);
    EXPECT_EQ(e2e::RegDword(HKEY_LOCAL_MACHINE, kUninstallEntryKey, L"NoRepair", k64), 1u);
    // Nothing in the 32-bit view.
    EXPECT_FALSE(e2e::RegKeyExists(HKEY_LOCAL_MACHINE, kUninstallEntryKey, HVRegView::Key32));

    // The installations record and the product's "Installer" key (the record's path and the
    // folder remembered are the scenarios').
    EXPECT_EQ(e2e::RegValueNames(HKEY_LOCAL_MACHINE, kRecordKey, k64),
              (std::vector<std::wstring>{L"GUID", L"Launcher Name", L"OS Version", L"Path", L"Uninstall Key", L"Version"}));
    EXPECT_EQ(e2e::RegString(HKEY_LOCAL_MACHINE, kRecordKey, L"Version", k64), e2e::SampleProductVersion());
    EXPECT_EQ(e2e::RegDword(HKEY_LOCAL_MACHINE, kRecordKey, L"OS Version", k64),
              static_cast<DWORD>(HVSystemIdentity::Current().GetCode()));
    EXPECT_EQ(e2e::RegString(HKEY_LOCAL_MACHINE, kRecordKey, L"Launcher Name", k64), L"Sonora.exe");
    EXPECT_EQ(e2e::RegString(HKEY_LOCAL_MACHINE, kRecordKey, L"Uninstall Key", k64), L"Sonora 32");
    const auto guid = e2e::RegString(HKEY_LOCAL_MACHINE, kRecordKey, L"GUID", k64);
    GUID parsed{};
    ASSERT_TRUE(guid && SUCCEEDED(CLSIDFromString(guid->c_str(), &parsed))) << e2e::Utf8(guid.value_or(L"<none>"));
    EXPECT_EQ(e2e::RegString(HKEY_CURRENT_USER, kInstallerKey, L"Distributor ID"), L"ACME-7");

    // First-run settings: the sample description's presets, the built-in defaults elsewhere.
    // 88 settings, the two of the file types chosen, the start-up media, the system plug-in's
    // mark and the driver's version.
    EXPECT_EQ(e2e::RegValueNames(HKEY_CURRENT_USER, kPropertiesKey).size(), 93u);
    EXPECT_EQ(e2e::RegDword(HKEY_CURRENT_USER, kPropertiesKey, L"Startup - Page"), 3u);
    EXPECT_EQ(e2e::RegString(HKEY_CURRENT_USER, kPropertiesKey, L"Ripping - Complete Sound File"), L"tada.wav");
}
}  // namespace

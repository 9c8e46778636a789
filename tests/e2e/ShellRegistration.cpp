// The product's registration with the shell after a silent install: the action table read
// back row by row, other programs' file types kept as backups across installs, and Default
// Programs by Windows version (what the file-association page's choice registers is a row of
// tests/scenarios).
#include "E2ESupport.h"
#include "ExpectedValue.h"

#include <gtest/gtest.h>

#include <windows.h>

namespace
{
using e2e::kPropertiesKey;
const std::wstring kFileExts = L"Software\\Microsoft\\Windows\\CurrentVersion\\Explorer\\FileExts\\";
const std::wstring kClient = L"Software\\Clients\\Media\\Sonora";

e2e::RunResult RunSilent(const std::wstring& extra = L"") { return e2e::RunSetup({}, L"/Silent /NoRun " + extra).result; }

using ShellRegistrationTest = e2e::FreshMachineTest;

TEST_F(ShellRegistrationTest, SilentInstallLeavesTheActionTableRowByRow)
{
    const e2e::RunResult run = RunSilent();
    ASSERT_TRUE(run.ExitedWith(0)) << run.Describe();

    const std::wstring dest = e2e::DefaultDestination();
    const std::vector<e2e::ExpectedValue> table =
        e2e::ReadExpectedValues(std::wstring(L"" IW_SOURCE_DIR) + L"\\tests\\e2e\\data\\ActionTable.txt", dest);
    EXPECT_EQ(table.size(), 104u);
    for (const e2e::ExpectedValue& row : table)
        EXPECT_EQ(row.Actual(), row.data) << row.line;
    // The default file types of Install.xml are the product's now, and the choice is kept.
    for (const wchar_t* extension : {L".mp3", L".flac", L".cue"})
        EXPECT_EQ(e2e::RegString(HKEY_CLASSES_ROOT, extension, L""), L"Sonora32.File") << e2e::Utf8(extension);
    EXPECT_EQ(e2e::RegString(HKEY_CLASSES_ROOT, L".mp3", L"Content Type"), L"audio/mpeg");
    EXPECT_EQ(e2e::RegString(HKEY_CLASSES_ROOT, L".mp3", L"PerceivedType"), L"audio");
    EXPECT_EQ(e2e::RegString(HKEY_CLASSES_ROOT, L"MIME\\Database\\Content Type\\audio/mpeg", L"Extension"), L".mp3");
    EXPECT_EQ(e2e::RegString(HKEY_CURRENT_USER, kPropertiesKey, L"File Associations - Set"),
              L".mp3;.flac;.ogg;.wav;.m4a;.wma;.mpl;.m3u;.cue");
    EXPECT_EQ(e2e::RegString(HKEY_CURRENT_USER, kPropertiesKey, L"File Associations - Selected Media Types"),
              L"Audio;Data;Playlist");
    EXPECT_EQ(e2e::RegString(HKEY_CLASSES_ROOT, L"itpc", L""), L"URL: itpc Protocol");
    EXPECT_EQ(e2e::RegString(HKEY_CLASSES_ROOT, L"itpc", L"URL Protocol"), L"");
    EXPECT_EQ(e2e::RegString(HKEY_CLASSES_ROOT, L"itpc\\shell\\open\\command", L""),
              L"\"" + dest + L"Sonora.exe\" /Protocol \"%L\"");
    // What a browser hands over as the product's own MIME type opens through the .Mime ProgID.
    EXPECT_EQ(e2e::RegString(HKEY_CLASSES_ROOT, L".lwa", L""), L"Sonora32.Mime");
}

TEST_F(ShellRegistrationTest, AnotherProgramsTypesAreKeptBesideOursAndTheFirstBackupStays)
{
    // Another player owns .mp3 and the user picked it in Explorer for .flac; .ogg has no
    // per-user choice. The kept choice names a type without its dot and ".dat" in capitals.
    ASSERT_TRUE(e2e::RegSetString(HKEY_CLASSES_ROOT, L".mp3", L"", L"OtherPlayer.mp3"));
    ASSERT_TRUE(e2e::RegSetString(HKEY_CLASSES_ROOT, L".mp3", L"Content Type", L"audio/x-other"));
    ASSERT_TRUE(e2e::RegSetString(HKEY_CURRENT_USER, kFileExts + L".flac", L"Progid", L"OtherPlayer.flac"));
    ASSERT_TRUE(e2e::RegSetString(HKEY_CURRENT_USER, kPropertiesKey, L"File Associations - Set", L".mp3;flac;.ogg;.DAT"));
    ASSERT_TRUE(e2e::RegSetString(HKEY_CLASSES_ROOT, L"MIME\\Database\\Content Type\\audio/flac", L"CLSID", L"{other}"));
    // Another program's URL protocol, and a Default Programs list from an earlier install.
    ASSERT_TRUE(e2e::RegSetString(HKEY_CLASSES_ROOT, L"itpc", L"", L"OtherPlayer itpc"));
    ASSERT_TRUE(e2e::RegSetString(HKEY_CLASSES_ROOT, L"itpc", L"URL Protocol", L"other"));
    ASSERT_TRUE(e2e::RegSetString(HKEY_LOCAL_MACHINE, kClient + L"\\Capabilities\\FileAssociations", L".ogg", L"Sonora32.File"));

    // /NoAssociations leaves every opener alone; the product's own types are there all the same.
    e2e::RunResult run = RunSilent(L"/NoAssociations");
    ASSERT_TRUE(run.ExitedWith(0)) << run.Describe();
    EXPECT_EQ(e2e::RegString(HKEY_CLASSES_ROOT, L".mp3", L""), L"OtherPlayer.mp3");
    EXPECT_FALSE(e2e::RegValueExists(HKEY_CLASSES_ROOT, L".mp3", L"Sonora32.Default.BAK"));
    EXPECT_FALSE(e2e::RegKeyExists(HKEY_CLASSES_ROOT, L".flac") || e2e::RegKeyExists(HKEY_CLASSES_ROOT, L".lwa"));
    EXPECT_EQ(e2e::RegString(HKEY_CLASSES_ROOT, L"itpc", L""), L"OtherPlayer itpc");
    EXPECT_EQ(e2e::RegString(HKEY_CLASSES_ROOT, L"itpc", L"URL Protocol"), L"other");
    EXPECT_EQ(e2e::RegValueNames(HKEY_LOCAL_MACHINE, kClient + L"\\Capabilities\\FileAssociations"),
              std::vector<std::wstring>{L".ogg"});
    EXPECT_EQ(e2e::RegString(HKEY_CLASSES_ROOT, L"Sonora32.File", L""), L"Sonora file");

    run = RunSilent();
    ASSERT_TRUE(run.ExitedWith(0)) << run.Describe();
    EXPECT_EQ(e2e::RegString(HKEY_CLASSES_ROOT, L".mp3", L""), L"Sonora32.File");
    EXPECT_EQ(e2e::RegString(HKEY_CLASSES_ROOT, L".mp3", L"Sonora32.Default.BAK"), L"OtherPlayer.mp3");
    EXPECT_EQ(e2e::RegString(HKEY_CLASSES_ROOT, L".mp3", L"Sonora32.ContentType.BAK"), L"audio/x-other");
    EXPECT_EQ(e2e::RegString(HKEY_CLASSES_ROOT, L".flac", L""), L"Sonora32.File");
    EXPECT_FALSE(e2e::RegValueExists(HKEY_CLASSES_ROOT, L".flac", L"Sonora32.Default.BAK"));
    EXPECT_EQ(e2e::RegString(HKEY_CURRENT_USER, kFileExts + L".flac", L"Progid"), L"Sonora32.File");
    EXPECT_EQ(e2e::RegString(HKEY_CURRENT_USER, kFileExts + L".flac", L"Sonora32.Progid.BAK"), L"OtherPlayer.flac");
    EXPECT_FALSE(e2e::RegKeyExists(HKEY_CURRENT_USER, kFileExts + L".ogg"));
    EXPECT_FALSE(e2e::RegKeyExists(HKEY_CLASSES_ROOT, L".DAT"));
    EXPECT_FALSE(e2e::RegValueExists(HKEY_CLASSES_ROOT, L"MIME\\Database\\Content Type\\audio/flac", L"CLSID"));
    EXPECT_EQ(e2e::RegString(HKEY_CLASSES_ROOT, L"MIME\\Database\\Content Type\\audio/flac", L"Sonora32.CLSID.BAK"),
              L"{other}");
    EXPECT_EQ(e2e::RegString(HKEY_CLASSES_ROOT, L"itpc", L"Sonora32.Default.BAK"), L"OtherPlayer itpc");
    EXPECT_EQ(e2e::RegString(HKEY_CLASSES_ROOT, L"itpc", L"Sonora32.URLProtocol.BAK"), L"other");
    EXPECT_EQ(e2e::RegString(HKEY_CLASSES_ROOT, L"itpc", L"URL Protocol"), L"");

    // A third program took .mp3 in between: the second install takes it back but keeps the
    // first backup, the one that gives the user's original player back.
    ASSERT_TRUE(e2e::RegSetString(HKEY_CLASSES_ROOT, L".mp3", L"", L"ThirdPlayer.mp3"));
    run = RunSilent();
    ASSERT_TRUE(run.ExitedWith(0)) << run.Describe();
    EXPECT_EQ(e2e::RegString(HKEY_CLASSES_ROOT, L".mp3", L""), L"Sonora32.File");
    EXPECT_EQ(e2e::RegString(HKEY_CLASSES_ROOT, L".mp3", L"Sonora32.Default.BAK"), L"OtherPlayer.mp3");
}

TEST_F(ShellRegistrationTest, DefaultProgramsFromVistaOnNotOnXP)
{
    {
        const e2e::ScopedRegString xp(HKEY_CURRENT_USER, L"Software\\Wine", L"Version", L"winxp");
        const e2e::RunResult run = RunSilent();
        ASSERT_TRUE(run.ExitedWith(0)) << run.Describe();
        EXPECT_FALSE(e2e::RegKeyExists(HKEY_LOCAL_MACHINE, kClient));
        EXPECT_FALSE(e2e::RegValueExists(HKEY_LOCAL_MACHINE, L"Software\\RegisteredApplications", L"Sonora"));
    }
    const e2e::ScopedRegString win7(HKEY_CURRENT_USER, L"Software\\Wine", L"Version", L"win7");
    const e2e::RunResult run = RunSilent();
    ASSERT_TRUE(run.ExitedWith(0)) << run.Describe();
    const std::wstring dest = e2e::DefaultDestination();
    EXPECT_EQ(e2e::RegString(HKEY_LOCAL_MACHINE, kClient, L""), L"Sonora");
    EXPECT_EQ(e2e::RegString(HKEY_LOCAL_MACHINE, kClient + L"\\shell\\open\\command", L""), L"\"" + dest + L"Sonora 32.exe\"");
    EXPECT_EQ(e2e::RegString(HKEY_LOCAL_MACHINE, kClient + L"\\DefaultIcon", L""), dest + L"Data\\Default Art\\Application.ico");
    EXPECT_EQ(e2e::RegString(HKEY_LOCAL_MACHINE, kClient + L"\\Capabilities", L"ApplicationName"), L"Sonora");
    EXPECT_EQ(e2e::RegString(HKEY_LOCAL_MACHINE, kClient + L"\\Capabilities\\FileAssociations", L".mpl"), L"Sonora32.Playlist");
    EXPECT_EQ(e2e::RegString(HKEY_LOCAL_MACHINE, kClient + L"\\Capabilities\\FileAssociations", L".mp3"), L"Sonora32.File");
    EXPECT_EQ(e2e::RegValueNames(HKEY_LOCAL_MACHINE, kClient + L"\\Capabilities\\FileAssociations").size(), 9u);
    EXPECT_EQ(e2e::RegString(HKEY_LOCAL_MACHINE, kClient + L"\\Capabilities\\URLAssociations", L"itpc"), L"itpc");
    EXPECT_EQ(e2e::RegString(HKEY_LOCAL_MACHINE, kClient + L"\\Capabilities\\MimeAssociations", L"audio/mpeg"), L"Sonora32.File");
    EXPECT_EQ(e2e::RegString(HKEY_LOCAL_MACHINE, L"Software\\RegisteredApplications", L"Sonora"),
              L"Software\\Clients\\Media\\Sonora\\Capabilities");
}
}

// The install itself, end to end: InstallWizard.exe /Silent on the sample setup folder, with
// earlier versions' leftovers arranged beforehand, and the machine read back afterwards (the
// other whole runs are rows of tests/scenarios).
#include "E2ESupport.h"
#include "InstallRecordFile.h"

#include "engine/CRetiredFiles.h"
#include "engine/CSharedFileRules.h"

#include <gtest/gtest.h>

#include <windows.h>

namespace
{
using e2e::kJournalKey, e2e::kRunOnceKey;
const std::wstring kRegistered = L"Software\\Halvard\\Sonora 32\\Registered";

std::wstring Windows() { return e2e::Expand(L"%SystemRoot%\\"); }

using InstallTest = e2e::FreshMachineTest;

TEST_F(InstallTest, CopiesTheProductByItsRulesAndClearsWhatEarlierVersionsLeft)
{
    const std::wstring media = e2e::MediaFolder();
    const std::wstring dest = e2e::DefaultDestination();
    const std::string codec = e2e::ReadFileText(media + L"System\\Check Version\\HVCodecSupport.dll");  // 2.0
    const std::string disc = e2e::ReadFileText(media + L"System\\Check Version\\HVDiscSupport.dll");    // 1.5
    // In both system folders: an older codec library (replaced), a newer disc library (kept)
    // and old notes (always replaced).
    for (const wchar_t* system : {L"System32\\", L"SysWOW64\\"}) {
        ASSERT_TRUE(e2e::WriteFileBytes(Windows() + system + L"HVCodecSupport.dll", disc));
        ASSERT_TRUE(e2e::WriteFileBytes(Windows() + system + L"HVDiscSupport.dll", codec));
        ASSERT_TRUE(e2e::WriteFileBytes(Windows() + system + L"HVSystemNotes.txt", "old notes"));
    }
    // What earlier versions left in the program folder.
    const std::vector<std::wstring> leftovers = {
        L"Plugins\\in_oldtracker.dll", L"Data\\Startup Tips.txt", L"Skins\\Classic View\\main.xml",
        L"Data\\Saved Views\\Artists.xml", L"Data\\Languages\\Chinese\\Strings.txt", L"Drivers\\64\\HalvardWDM.sys",
        L"Drivers\\HalvardWDMDriver.inf", L"Setup\\HVService.exe",
        std::wstring(CRetiredFiles::Entries().front().w()),
        std::wstring(CRetiredFiles::Entries().back().w()) + L"old.bin",
    };
    for (const std::wstring& file : leftovers)
        ASSERT_TRUE(e2e::WriteFileBytes(dest + file, "left behind")) << e2e::Utf8(file);
    ASSERT_TRUE(e2e::WriteFileBytes(dest + L"Data\\Languages\\Chinese (simplified)\\Strings.txt", "kept"));
    ASSERT_TRUE(e2e::WriteFileBytes(dest + L"License.txt", "old agreement"));
    SetFileAttributesW((dest + L"License.txt").c_str(), FILE_ATTRIBUTE_READONLY);
    ASSERT_TRUE(e2e::RegSetString(HKEY_CURRENT_USER, kJournalKey, L"Delete File (0)", L"C:\\old|_DELETEFILE"));
    // Another product shares the notes already.
    const std::wstring sharedDlls = HVString(CSharedFileRules::kSharedDllsKey).w();
    const std::wstring notes = Windows() + L"System32\\HVSystemNotes.txt";
    ASSERT_TRUE(e2e::RegSetDword(HKEY_LOCAL_MACHINE, sharedDlls, notes, 1));

    const e2e::SetupRun install = e2e::RunSetup({}, L"/Silent");
    ASSERT_TRUE(install.result.ExitedWith(0)) << install.Describe();

    // The program files, byte for byte.
    for (const std::wstring& file : e2e::ListTree(media + L"Listenwell\\"))
        EXPECT_EQ(e2e::ReadFileText(dest + file), e2e::ReadFileText(media + L"Listenwell\\" + file)) << e2e::Utf8(file);
    for (const wchar_t* license : {L"License.txt", L"License.LGPL2.1.txt", L"License.LGPL3.txt"})
        EXPECT_EQ(e2e::ReadFileText(dest + license), e2e::ReadFileText(media + license)) << e2e::Utf8(license);
    // System files in both system folders, by version.
    for (const wchar_t* system : {L"System32\\", L"SysWOW64\\"}) {
        EXPECT_EQ(e2e::ReadFileText(Windows() + system + L"HVCodecSupport.dll"), codec) << e2e::Utf8(system);
        EXPECT_EQ(e2e::ReadFileText(Windows() + system + L"HVDiscSupport.dll"), codec) << e2e::Utf8(system);
        EXPECT_EQ(e2e::ReadFileText(Windows() + system + L"HVSystemNotes.txt"), e2e::ReadFileText(media + L"System\\Check Version\\HVSystemNotes.txt"));
    }
    EXPECT_EQ(e2e::ReadFileText(Windows() + L"Fonts\\DejaVuSans.ttf"), e2e::ReadFileText(media + L"Fonts\\DejaVuSans.ttf"));
    // Fonts go with each of the two passes, so they are added twice.
    EXPECT_EQ(e2e::CountOf(e2e::Utf8(install.log), "DejaVuSans.ttf added to the font table"), 2) << install.Describe();
    // Leftovers gone; the simplified Chinese folder stays.
    for (const std::wstring& file : leftovers)
        EXPECT_EQ(GetFileAttributesW((dest + file).c_str()), INVALID_FILE_ATTRIBUTES) << e2e::Utf8(file);
    EXPECT_EQ(GetFileAttributesW((dest + L"Data\\Languages\\Chinese").c_str()), INVALID_FILE_ATTRIBUTES);
    EXPECT_EQ(e2e::ReadFileText(dest + L"Data\\Languages\\Chinese (simplified)\\Strings.txt"), "kept");
    // The self-registering modules were registered where they were installed.
    EXPECT_EQ(e2e::RegString(HKEY_CURRENT_USER, kRegistered, L"HVShellExt.dll"), dest + L"HVShellExt.dll");
    EXPECT_EQ(e2e::RegString(HKEY_CURRENT_USER, kRegistered, L"SampleShell.dll"), dest + L"Plugins\\System\\SampleShell.dll");
    // Nothing deferred: no journal, no completion command; a silent run starts nothing.
    EXPECT_TRUE(e2e::RegValueNames(HKEY_CURRENT_USER, kJournalKey).empty());
    EXPECT_FALSE(e2e::RegValueExists(HKEY_CURRENT_USER, kRunOnceKey, L"Install Wizard Completion"));
    EXPECT_EQ(GetFileAttributesW((media + L"Finish.txt").c_str()), INVALID_FILE_ATTRIBUTES);
    // Nothing else in the program folder: no temporary file, no staging folder.
    std::vector<std::wstring> expected = e2e::ListTree(media + L"Listenwell\\");
    expected.insert(expected.end(), {L"License.txt", L"License.LGPL2.1.txt", L"License.LGPL3.txt",
                                     L"Data\\Languages\\Chinese (simplified)\\Strings.txt",
                                     L"Media\\Welcome Tone.wav", L"Media\\Playlist.mpl", L"PackageInstaller.log"});
    expected.push_back(L"Install Record.txt");
    const e2e::TreeDifference difference = e2e::CompareTree(dest, expected);
    EXPECT_TRUE(difference.Same()) << difference.Describe();

    EXPECT_EQ(e2e::RegDword(HKEY_LOCAL_MACHINE, sharedDlls, notes), 2u);
    // The record names every kind of change an uninstall has to take back, and the run's end.
    const CInstallRecord::Contents record = e2e::ReadInstallRecord(dest);
    EXPECT_TRUE(record.problem.IsEmpty()) << record.problem.ToUtf8();
    EXPECT_EQ(record.damagedLines, 0u);
    ASSERT_FALSE(record.changes.empty());
    using Kind = InstallChange::Kind;
    EXPECT_TRUE(e2e::FindChange(record, Kind::FileWritten, dest + L"Sonora.exe"));
    const std::wstring uninstallRoot = L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Uninstall\\";
    const InstallChange* entry = e2e::FindChange(record, Kind::KeyCreated, L"HKLM\\" + uninstallRoot);
    ASSERT_TRUE(entry);
    EXPECT_EQ(e2e::RegString(HKEY_LOCAL_MACHINE, entry->path.Mid(5).w(), L"UninstallString"), dest + L"HVMediaUninstall.exe");
    const InstallChange* font = e2e::FindChange(record, Kind::FontAdded, Windows() + L"Fonts\\DejaVuSans.ttf");
    ASSERT_TRUE(font);
    EXPECT_EQ(e2e::RegString(HKEY_LOCAL_MACHINE, L"Software\\Microsoft\\Windows NT\\CurrentVersion\\Fonts", font->name.w()),
              L"DejaVuSans.ttf");
    EXPECT_TRUE(e2e::FindChange(record, Kind::ShortcutCreated, e2e::StartMenuFolder()));
    EXPECT_TRUE(e2e::FindChange(record, Kind::ModuleRegistered, dest + L"HVShellExt.dll"));
    const InstallChange* counted = e2e::FindChange(record, Kind::SharedFileCounted, notes);
    ASSERT_TRUE(counted);
    EXPECT_EQ(counted->before, u"1");
    EXPECT_EQ(record.changes.back().kind, Kind::InstallEnded);
    EXPECT_EQ(record.changes.back().path, u"0");
}

} // namespace

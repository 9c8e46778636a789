// The install itself, end to end: InstallWizard.exe /Silent on the sample setup folder, with
// earlier versions' leftovers arranged beforehand, and the machine read back afterwards (the
// other whole runs are rows of tests/scenarios).
#include "E2ESupport.h"

#include "engine/CRetiredFiles.h"

#include <gtest/gtest.h>

#include <windows.h>


namespace
{
const std::wstring kRegistered = L"Software\\Halvard\\Sonora 32\\Registered";
const std::wstring kJournal = L"Software\\Halvard\\Sonora 32\\Installer\\Finalize";
const std::wstring kRunOnce = L"Software\\Microsoft\\Windows\\CurrentVersion\\RunOnce";

std::wstring Windows() { return e2e::Expand(L"%SystemRoot%\\"); }

e2e::SetupRun RunSilent()
{
    e2e::RunOptions options;
    options.commandLine = L"/Silent";
    return e2e::RunSetup(options);
}

class InstallTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        std::vector<std::wstring> problems;
        ASSERT_TRUE(e2e::ResetToFreshMachine(&problems)) << e2e::Utf8(problems.empty() ? L"" : problems.front());
        DeleteFileW((e2e::MediaFolder() + L"Finish.txt").c_str());
    }
    void TearDown() override
    {
        e2e::ResetToFreshMachine();
        DeleteFileW((e2e::MediaFolder() + L"Finish.txt").c_str());
    }
};

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
    ASSERT_TRUE(e2e::RegSetString(HKEY_CURRENT_USER, kJournal, L"Delete File (0)", L"C:\\old|_DELETEFILE"));

    const e2e::SetupRun install = RunSilent();
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
    EXPECT_TRUE(e2e::RegValueNames(HKEY_CURRENT_USER, kJournal).empty());
    EXPECT_FALSE(e2e::RegValueExists(HKEY_CURRENT_USER, kRunOnce, L"Install Wizard Completion"));
    EXPECT_EQ(GetFileAttributesW((media + L"Finish.txt").c_str()), INVALID_FILE_ATTRIBUTES);
    // Nothing else in the program folder: no temporary file, no staging folder.
    std::vector<std::wstring> expected = e2e::ListTree(media + L"Listenwell\\");
    expected.insert(expected.end(), {L"License.txt", L"License.LGPL2.1.txt", L"License.LGPL3.txt",
                                     L"Data\\Languages\\Chinese (simplified)\\Strings.txt",
                                     L"Media\\Welcome Tone.wav", L"Media\\Playlist.mpl", L"PackageInstaller.log"});
    const e2e::TreeDifference difference = e2e::CompareTree(dest, expected);
    EXPECT_TRUE(difference.Same()) << difference.Describe();
}

} // namespace

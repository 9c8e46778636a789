// The sample setup folder stands in for the product's real setup medium; these tests hold it to
// the layout and the file versions the installer and the end-to-end tests rely on. How its
// programs behave (the main window that closes or refuses to, the package installer's jobs) the
// tests that use them show: Startup, CComponentRegistrationTest, Dependencies.
#include "E2ESupport.h"

#include "foundation/CVersionInfo.h"

#include <gtest/gtest.h>

#include <windows.h>

namespace
{

std::wstring FileVersion(const std::wstring& path)
{
    CVersionInfo version;
    return version.Read(path.c_str()) ? std::wstring(reinterpret_cast<const wchar_t*>(version.GetText().c_str())) : L"";
}

TEST(SampleMedia, HasTheLayoutTheInstallerReads)
{
    const std::pair<const wchar_t*, std::vector<const wchar_t*>> folders[] = {
        {L"", {L"InstallWizard.exe", L"Install.xml", L"License.txt", L"License.LGPL2.1.txt", L"License.LGPL3.txt"}},
        {L"Listenwell\\", {L"Sonora.exe", L"Sonora 32.exe", L"PackageInstaller.exe", L"HVMediaUninstall.exe",
                           L"HVService.exe", L"HVTagEditor.exe", L"HVAudioConverter.exe", L"HVShellExt.dll",
                           L"FileAssociations.xml", L"Plugins\\System\\SampleShell.dll",
                           L"Data\\Default Art\\Application.ico", L"Data\\Default Art\\fileimage.ico",
                           L"Data\\Default Library\\Library Settings.xml", L"Data\\Languages\\English.txt",
                           L"Data\\Languages\\Deutsch.txt", L"Skins\\Standard View\\main.xml",
                           L"Skins\\Standard View\\Titlebar Icon.png"}},
        {L"System\\Check Version\\", {L"HVCodecSupport.dll", L"HVDiscSupport.dll", L"HVSystemNotes.txt"}},
        {L"System\\Always Overwrite\\", {L"Sonora.exe"}},
        {L"Fonts\\", {L"DejaVuSans.ttf"}},
        {L"Setup\\", {L"Promo1.png", L"Promo2.png"}},
        {L"Support\\", {L"ReadMe.txt"}},
        {L"Bundled Media\\", {L"Welcome Tone.wav", L"Playlist.mpl"}},
        {L"Drivers\\WDM\\", {L"Win10\\HalvardWDMDriver.inf", L"Win8\\HalvardWDMDriver.inf"}},
    };
    std::vector<std::wstring> expected;
    for (const auto& [folder, files] : folders)
        for (const wchar_t* file : files)
            expected.push_back(std::wstring(folder) + file);
    const e2e::TreeDifference diff = e2e::CompareTree(e2e::MediaFolder(), expected);
    // Other programs may join the root later (the crash handler); nothing may be missing.
    EXPECT_TRUE(diff.missing.empty()) << diff.Describe();
    // The agreement is read as "license.txt": the same file on a Windows file system.
    EXPECT_NE(GetFileAttributesW((e2e::MediaFolder() + L"license.txt").c_str()), INVALID_FILE_ATTRIBUTES);
    // The launcher in "Always Overwrite" is the product's own launcher.
    EXPECT_EQ(e2e::ReadFileText(e2e::MediaFolder() + L"System\\Always Overwrite\\Sonora.exe"),
              e2e::ReadFileText(e2e::MediaFolder() + L"Listenwell\\Sonora.exe"));
}

TEST(SampleMedia, ProgramsCarryTheVersionsTheInstallerCompares)
{
    const struct { const wchar_t* file; const wchar_t* version; } cases[] = {
        {L"Listenwell\\Sonora 32.exe", L"32.1.0.100"},
        {L"Listenwell\\Sonora.exe", L"32.1.0.100"},
        {L"Listenwell\\HVShellExt.dll", L"32.1.0.100"},
        {L"System\\Check Version\\HVCodecSupport.dll", L"2.0.0.0"},
        {L"System\\Check Version\\HVDiscSupport.dll", L"1.5.0.0"},
        {L"Install.xml", L""},
    };
    for (const auto& c : cases)
        EXPECT_EQ(FileVersion(e2e::MediaFolder() + c.file), c.version) << e2e::Utf8(c.file);
}
}

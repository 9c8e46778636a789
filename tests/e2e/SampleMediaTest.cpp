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
    const std::vector<std::wstring> expected = {
        L"InstallWizard.exe",
        L"Install.xml",
        L"License.txt",
        L"License.LGPL2.1.txt",
        L"License.LGPL3.txt",
        L"Listenwell\\Sonora.exe",
        L"Listenwell\\Sonora 32.exe",
        L"Listenwell\\PackageInstaller.exe",
        L"Listenwell\\HVMediaUninstall.exe",
        L"Listenwell\\HVService.exe",
        L"Listenwell\\HVTagEditor.exe",
        L"Listenwell\\HVAudioConverter.exe",
        L"Listenwell\\HVShellExt.dll",
        L"Listenwell\\FileAssociations.xml",
        L"Listenwell\\Plugins\\System\\SampleShell.dll",
        L"Listenwell\\Data\\Default Art\\Application.ico",
        L"Listenwell\\Data\\Default Art\\fileimage.ico",
        L"Listenwell\\Data\\Default Library\\Library Settings.xml",
        L"Listenwell\\Data\\Languages\\English.txt",
        L"Listenwell\\Data\\Languages\\Deutsch.txt",
        L"Listenwell\\Skins\\Standard View\\main.xml",
        L"Listenwell\\Skins\\Standard View\\Titlebar Icon.png",
        L"System\\Check Version\\HVCodecSupport.dll",
        L"System\\Check Version\\HVDiscSupport.dll",
        L"System\\Check Version\\HVSystemNotes.txt",
        L"System\\Always Overwrite\\Sonora.exe",
        L"Fonts\\DejaVuSans.ttf",
        L"Setup\\Promo1.png",
        L"Setup\\Promo2.png",
        L"Support\\ReadMe.txt",
        L"Bundled Media\\Welcome Tone.wav",
        L"Bundled Media\\Playlist.mpl",
        L"Drivers\\WDM\\Win10\\HalvardWDMDriver.inf",
        L"Drivers\\WDM\\Win8\\HalvardWDMDriver.inf",
    };
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
    const struct
    {
        const wchar_t* file;
        const wchar_t* version;
    } cases[] = {
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

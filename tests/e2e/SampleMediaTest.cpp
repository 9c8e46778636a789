// The sample setup folder stands in for the product's real setup medium; these tests hold its
// stand-in programs to what the installer and the end-to-end tests rely on: the layout, the
// file versions, the main window that closes (or refuses to), and the traces that the helper
// programs leave.
#include "E2ESupport.h"

#include "foundation/CVersionInfo.h"

#include <gtest/gtest.h>

#include <windows.h>

namespace
{
const std::wstring kMarkerKey = L"Software\\Halvard\\Sonora 32\\Registered";

std::wstring FileVersion(const std::wstring& path)
{
    CVersionInfo version;
    return version.Read(path.c_str()) ? std::wstring(reinterpret_cast<const wchar_t*>(version.GetText().c_str())) : L"";
}

HWND FindFrame(DWORD pid)
{
    for (const e2e::WindowInfo& w : e2e::ListTopLevelWindows(pid, true))
    {
        if (w.className == L"LWFrame" && w.title == L"Sonora")
            return w.hwnd;
    }
    return nullptr;
}

// A copy of the program files, so that the logs the helpers write stay out of the media.
std::wstring ProgramFilesCopy(const std::wstring& name)
{
    const std::wstring folder = e2e::ScratchFolder(name);
    if (folder.empty() || !e2e::CopyTree(e2e::MediaFolder() + L"Listenwell\\", folder))
        return {};
    return folder;
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

class SampleFrame : public ::testing::TestWithParam<const wchar_t*>
{
};

// With /IgnoreClose the window stays after a close request; without, the program ends.
TEST_P(SampleFrame, OpensAnLWFrameWindowThatClosesUnlessToldNotTo)
{
    for (const bool ignoreClose : {false, true})
    {
        e2e::RunOptions options;
        options.program = e2e::MediaFolder() + L"Listenwell\\" + GetParam();
        options.commandLine = ignoreClose ? L"/IgnoreClose" : L"";
        options.timeoutMs = 30000;
        bool closeHandled = false, survived = false;
        options.onPoll = [&](DWORD pid) {
            HWND frame = FindFrame(pid);
            if (!frame || closeHandled)
                return true;
            // Sent, not posted: when it returns the window has handled the close request.
            DWORD_PTR ignored = 0;
            closeHandled = SendMessageTimeoutW(frame, WM_CLOSE, 0, 0, SMTO_ABORTIFHUNG, 5000, &ignored) != 0;
            survived = IsWindow(frame) && FindFrame(pid) == frame;
            return !survived;  // a window that stayed: the driver ends the program from outside
        };
        const e2e::RunResult run = e2e::ProgramDriver(options).Run();
        EXPECT_EQ(survived, ignoreClose);
        EXPECT_TRUE(ignoreClose ? run.outcome == e2e::RunOutcome::PollFailed : run.ExitedWith(0)) << run.Describe();
    }
}

INSTANTIATE_TEST_SUITE_P(LauncherAndMainProgram, SampleFrame, ::testing::Values(L"Sonora.exe", L"Sonora 32.exe"));

TEST(SampleMedia, PackageInstallerLogsEachCallAndRunsTheRegistrationJobs)
{
    ASSERT_TRUE(e2e::ResetToFreshMachine());
    const std::wstring folder = ProgramFilesCopy(L"SamplePackageInstaller");
    ASSERT_FALSE(folder.empty());
    const std::wstring dll = folder + L"Plugins\\System\\SampleShell.dll";

    e2e::RunOptions options;
    options.program = folder + L"PackageInstaller.exe";
    options.commandLine = L"/RegDLL \"" + dll + L"\"";
    e2e::RunResult run = e2e::ProgramDriver(options).Run();
    ASSERT_TRUE(run.ExitedWith(0)) << run.Describe();
    EXPECT_EQ(e2e::RegString(HKEY_CURRENT_USER, kMarkerKey, L"SampleShell.dll"), dll);

    options.commandLine = L"/UnRegDLL \"" + dll + L"\"";
    run = e2e::ProgramDriver(options).Run();
    ASSERT_TRUE(run.ExitedWith(0)) << run.Describe();
    EXPECT_FALSE(e2e::RegValueExists(HKEY_CURRENT_USER, kMarkerKey, L"SampleShell.dll"));

    // A job it can't do still ends normally: the log tells what happened.
    options.commandLine = L"/RegDLL " + folder + L"Missing.dll";
    run = e2e::ProgramDriver(options).Run();
    ASSERT_TRUE(run.ExitedWith(0)) << run.Describe();

    const std::string log = e2e::ReadFileText(folder + L"PackageInstaller.log");
    const std::string quoted = "\"" + e2e::Utf8(folder) + "PackageInstaller.exe\" ";
    EXPECT_EQ(log, quoted + "/RegDLL \"" + e2e::Utf8(dll) + "\"\r\n" + quoted + "/UnRegDLL \"" + e2e::Utf8(dll) +
                       "\"\r\n" + quoted + "/RegDLL " + e2e::Utf8(folder) + "Missing.dll\r\n  failed: /RegDLL " +
                       e2e::Utf8(folder) + "Missing.dll\r\n");
    EXPECT_TRUE(e2e::ResetToFreshMachine());
}
}

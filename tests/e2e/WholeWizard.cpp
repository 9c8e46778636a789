// The wizard from its first page to its last on the sample setup folder: the shortcuts it
// leaves (read back through the shell's link object), the finish page's restart, the exit code
// a deployment tool reads (an express reinstall's shortcuts and hand-over are rows of
// tests/scenarios).
#include "E2ESupport.h"

#include "product/InstallExitCode.h"

#include <gtest/gtest.h>

#include <windows.h>

#include <string>
#include <vector>

namespace
{
using e2e::kInstallerKey, e2e::kRunOnceKey;

using e2e::NextOn, e2e::ChooseOn;

std::wstring Dest() { return e2e::DefaultDestination(); }

class WholeWizardTest : public e2e::FreshMachineTest
{
protected:
    void SetUp() override
    {
        FreshMachineTest::SetUp();
        // Pressing "Restart" must not end the test machine's session.
        SetEnvironmentVariableW(L"IW_TEST_ONLY_NO_EXIT_WINDOWS", L"1");
    }

    e2e::SetupRun Run(const std::wstring& arguments, e2e::WizardUser* user = nullptr,
                      std::vector<e2e::DialogRule> rules = {}, const std::wstring& setup = {})
    {
        return e2e::RunSetup({.setupFolder = setup, .commandLine = arguments, .rules = std::move(rules), .timeoutMs = 90000,
                              .onPoll = user ? user->Poller() : std::function<bool(DWORD)>()});
    }

    // Each Start Menu shortcut with what it starts; the folder holds nothing else.
    static void ExpectStartMenu(const std::wstring& dest, const std::vector<std::pair<std::wstring, std::wstring>>& links)
    {
        std::vector<std::wstring> names;
        for (const auto& [name, target] : links) {
            names.push_back(name + L".lnk");
            const auto link = e2e::ReadShortcut(e2e::StartMenuFolder() + name + L".lnk");
            ASSERT_TRUE(link) << e2e::Utf8(name);
            const size_t space = target.find(L' ', target.find(L".exe"));
            EXPECT_EQ(link->path, dest + target.substr(0, space)) << e2e::Utf8(name);
            EXPECT_EQ(link->arguments, space == std::wstring::npos ? L"" : target.substr(space + 1)) << e2e::Utf8(name);
        }
        const e2e::TreeDifference difference = e2e::CompareTree(e2e::StartMenuFolder(), names);
        EXPECT_TRUE(difference.Same()) << difference.Describe();
    }
};

// The shortcuts of the features a distributor adds (the default ones are checked on the
// interactive install below), and the desktop's.
TEST_F(WholeWizardTest, ASilentInstallMakesTheShortcutsItsFeaturesAskFor)
{
    const std::wstring setup = e2e::CopySampleSetup(L"ShortcutSetup");
    ASSERT_TRUE(e2e::SetDescriptionText(setup, "Product/Features", "25;104;176"));
    const e2e::SetupRun install = Run(L"/Silent", nullptr, {}, setup);
    ASSERT_TRUE(install.result.ExitedWith(kExitInstalled)) << install.Describe();
    ExpectStartMenu(Dest(), {{L"Sonora", L"Sonora.exe"}, {L"Sonora Hub Server", L"Sonora.exe /MediaServer"},
                             {L"Uninstall Sonora", L"HVMediaUninstall.exe"}, {L"Sonora Audio Converter", L"HVAudioConverter.exe"}});
    const auto desktop = e2e::ReadShortcut(e2e::DesktopLink());
    ASSERT_TRUE(desktop);
    EXPECT_EQ(desktop->path, Dest() + L"Sonora.exe");
    EXPECT_EQ(desktop->icon, Dest() + L"Data\\Default Art\\application.ico");
    // Wine reports Windows 10: the taskbar, not Quick Launch.
    EXPECT_FALSE(e2e::PathExists(e2e::QuickLaunchLink()));
    // The sample program's version, 32.1.0.100, as major, minor and build.
    EXPECT_EQ(e2e::RegDword(HKEY_CURRENT_USER, kInstallerKey, L"Start Menu Version"), (32u << 24) | (1u << 16));
}

// Every page, in its order, through its own controls.
TEST_F(WholeWizardTest, AFullInteractiveInstallPassesEveryPage)
{
    std::vector<std::wstring> shortcutBoxes;
    std::wstring finishText;
    bool runChecked = false;
    e2e::WizardUser user({
        NextOn(L"Welcome"),
        ChooseOn(L"Setup Type", L"Custom"),
        ChooseOn(L"Setup Type", L"Normal install to a computer"),
        NextOn(L"Destination Folder"),
        NextOn(L"File Associations"),
        {L"Create Shortcuts",
         [&](const e2e::WizardView& v) {
             for (const wchar_t* box : {L"Create Start Menu shortcuts", L"Create a desktop shortcut", L"Create a Quick Launch shortcut"})
                 if (HWND control = v.Control(box))
                     shortcutBoxes.push_back(std::wstring(box) + (e2e::IsChecked(control) ? L" [x]" : L" [ ]"));
             e2e::ClickNext(v);
         }},
        {L"Install Complete",
         [&](const e2e::WizardView& v) {
             finishText = v.subtitle + L"|" + e2e::StripAccelerator(e2e::ControlText(v.Button(e2e::WizardView::kNextId)));
             for (const std::wstring& text : v.Texts())
                 finishText += L"|" + text;
             runChecked = e2e::IsChecked(v.Control(L"Run installed program now"));
             e2e::ClickNext(v);
         }},
    });
    const e2e::SetupRun install = Run(L"", &user);
    ASSERT_TRUE(install.result.ExitedWith(kExitInstalled)) << install.Describe(user.Describe());
    ASSERT_TRUE(user.Finished()) << user.Describe();
    EXPECT_EQ(shortcutBoxes, (std::vector<std::wstring>{L"Create Start Menu shortcuts [x]", L"Create a desktop shortcut [x]"}));
    EXPECT_EQ(finishText, L"Thank you for installing Sonora|Finish|Installation successfully completed.|Run installed program now");
    EXPECT_TRUE(runChecked);
    // The shortcuts it left (the program, its records and the hand-over of an interactive run
    // are the scenarios').
    EXPECT_EQ(e2e::RegDword(HKEY_CURRENT_USER, kInstallerKey, L"Create Start Menu"), 1u);
    ExpectStartMenu(Dest(), {{L"Sonora", L"Sonora.exe"}, {L"Uninstall Sonora", L"HVMediaUninstall.exe"},
                             {L"Sonora Tag Editor", L"HVTagEditor.exe"}});
    EXPECT_TRUE(e2e::ReadShortcut(e2e::DesktopLink()));
}

// A shell extension in use: the finish page offers the restart, "Cancel" in "Confirm Restart"
// keeps the page and Finish asks again; declining the restart ends with 3010.
TEST_F(WholeWizardTest, ALockedFileOffersTheRestartAndAsksBeforeIt)
{
    const std::wstring restartText = L"Please save your work and close any open programs.\r\n\r\n"
                                     L"Then click 'Restart' to restart your computer and finish installation.";
    for (const bool restart : {true, false}) {
        SCOPED_TRACE(restart ? "restart" : "later");
        SetUp();
        ASSERT_TRUE(e2e::WriteFileBytes(Dest() + L"HVShellExt.dll", "in use"));
        const e2e::HeldFileLock shell(Dest() + L"HVShellExt.dll");
        ASSERT_TRUE(shell.IsHeld());
        std::vector<e2e::WizardStep> steps = {
            NextOn(L"Welcome"), NextOn(L"Setup Type"), NextOn(L"File Associations"),
            {L"Install Complete", [&](const e2e::WizardView& v) {
                 EXPECT_EQ(v.Texts().empty() ? L"" : v.Texts().front(),
                           L"Install Wizard could not copy all files.  Windows must be restarted to complete setup.");
                 EXPECT_TRUE(e2e::IsChecked(v.Control(L"Restart Windows now")));
                 if (!restart)
                     e2e::Click(v.Control(L"Restart Windows now"));
                 e2e::ClickNext(v);
             }}};
        std::vector<e2e::DialogRule> rules;
        if (restart) {
            steps.push_back(NextOn(L"Install Complete", true));
            rules = {{.title = L"Confirm Restart", .text = restartText, .buttonCaption = L"Cancel", .times = 1},
                     {.title = L"Confirm Restart", .text = restartText, .buttonCaption = L"Restart", .times = 1}};
        }
        e2e::WizardUser user(steps);
        const e2e::SetupRun install = Run(L"", &user, rules);
        ASSERT_TRUE(install.result.ExitedWith(restart ? kExitInstalled : kExitRestartNeeded)) << install.Describe(user.Describe());
        ASSERT_TRUE(user.Finished()) << user.Describe();
        EXPECT_EQ(install.result.dialogs.size(), rules.size());
        for (const e2e::DialogRecord& dialog : install.result.dialogs)
            EXPECT_EQ(dialog.buttons, (std::vector<std::wstring>{L"Restart", L"Cancel"}));
        EXPECT_EQ(install.Logged(L"mode: Restart"), restart) << install.Describe();
        EXPECT_EQ(install.Logged(L"ExitWindowsEx(0x12)"), restart) << install.Describe();
        // The journal is written either way; nothing is started before the restart.
        EXPECT_TRUE(e2e::RegValueExists(HKEY_CURRENT_USER, kRunOnceKey, L"Install Wizard Completion"));
        EXPECT_FALSE(e2e::PathExists(e2e::MediaFolder() + L"Finish.txt"));
        TearDown();
    }
}

}   // namespace

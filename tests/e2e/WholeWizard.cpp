// The wizard from its first page to its last on the sample setup folder, and the shortcuts it
// leaves, read back through the shell's link object (an express reinstall's shortcuts and
// hand-over, and the finish page's restart, are rows of tests/scenarios).
#include "E2ESupport.h"

#include "product/InstallExitCode.h"

#include <gtest/gtest.h>

#include <windows.h>

#include <string>
#include <vector>

namespace
{
using e2e::kInstallerKey;

using e2e::NextOn, e2e::ChooseOn;

std::wstring Dest() { return e2e::DefaultDestination(); }

class WholeWizardTest : public e2e::FreshMachineTest
{
protected:
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
    const e2e::SetupRun install = e2e::RunSetup(setup, L"/Silent");
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
    const e2e::SetupRun install = e2e::RunSetup({}, L"", {}, user.Poller());
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

}   // namespace

// The install wizard under Wine, driven through its own controls as a user would: Cancel and
// its question, Back and Next over the setup-type pages, the welcome page's countdown, the
// auto-install check box, every refusal of the destination page, and the unattended runs.
#include "E2ESupport.h"

#include "install/InstallExitCode.h"

#include <gtest/gtest.h>

#include <windows.h>

#include <algorithm>
#include <optional>
#include <string>
#include <vector>

namespace
{
const std::wstring kInstallerKey = L"Software\\Halvard\\Sonora 32\\Installer";
const std::wstring kDefaultFolder = L"C:\\Program Files\\Halvard\\Sonora\\";
const std::wstring kUninstallKey = L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Uninstall\\";
const std::wstring kOtherProgramKey = kUninstallKey + L"IW Test Other Program";
const std::wstring kOwnEntry = L"IW Test Sonora Entry";
const std::wstring kEarlierFolder = L"C:\\IW Test\\Earlier Sonora\\";

struct Description
{
    int offerAutoInstall = 0;
    std::wstring installToPath = L"";
};

std::string InstallXml(const Description& d)
{
    return e2e::Utf8(L"<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<HVIC version=\"1.0\">\n"
                     L"  <Product><InstallToPath>" + d.installToPath +
                     L"</InstallToPath><LauncherName>Sonora.exe</LauncherName></Product>\n"
                     L"  <Installer><OfferAutoInstall>" + std::to_wstring(d.offerAutoInstall) +
                     L"</OfferAutoInstall></Installer>\n</HVIC>\n");
}

class WizardTest : public e2e::FreshMachineTest
{
protected:
    void SetUp() override
    {
        FreshMachineTest::SetUp();
        e2e::RegDeleteKeyTree(HKEY_LOCAL_MACHINE, kOtherProgramKey);
    }
    void TearDown() override
    {
        e2e::RegDeleteKeyTree(HKEY_LOCAL_MACHINE, kOtherProgramKey);
        e2e::RegDeleteKeyTree(HKEY_LOCAL_MACHINE, kUninstallKey + kOwnEntry);
        e2e::DeleteTree(L"C:\\IW Test\\");
        FreshMachineTest::TearDown();
    }

    // `wish`: "Run Auto Install" as an earlier run left it.
    std::wstring MakeSetup(const Description& description, std::optional<DWORD> wish = std::nullopt)
    {
        const std::wstring setup = e2e::MakeSetupFolder(L"Wizard", InstallXml(description), true);
        EXPECT_FALSE(setup.empty());
        if (wish) {
            EXPECT_TRUE(e2e::RegSetDword(HKEY_CURRENT_USER, kInstallerKey, L"Run Auto Install", *wish));
        }
        return setup;
    }

    e2e::RunResult Run(const std::wstring& setup, const std::wstring& arguments, e2e::WizardUser& user,
                       std::vector<e2e::DialogRule> rules = {})
    {
        run_ = e2e::RunSetup(setup, arguments, std::move(rules), user.Poller());
        return run_.result;
    }

    std::wstring Log() const { return run_.log; }
    std::string Describe(const e2e::WizardUser& user) const { return run_.Describe(user.Describe()); }

    // The pages before the install: the copy page's header follows its steps, so it is
    // recognised by any of them and dropped.
    static std::vector<std::wstring> PagesBeforeInstall(const e2e::WizardUser& user)
    {
        std::vector<std::wstring> pages = user.PagesSeen();
        const std::vector<std::wstring> after = {L"Install Complete", L"Create Shortcuts", L"File Associations",
                                                 L"Installing Dependencies", L"Copying Files", L"Installing Plugins"};
        while (!pages.empty() && std::find(after.begin(), after.end(), pages.back()) != after.end())
            pages.pop_back();
        return pages;
    }

    e2e::SetupRun run_;
};

using e2e::NextOn, e2e::ChooseOn;

e2e::DialogRule ConfirmCancel(int button, int times)
{
    return {.title = L"Confirm Cancellation", .text = L"Are you sure you want to cancel Sonora installation?",
            .button = button, .times = times};
}

TEST_F(WizardTest, PagesShowTheirTextsAndTheAgreement)
{
    const std::wstring setup = MakeSetup({.offerAutoInstall = 1});
    std::vector<std::wstring> welcome, setupType, custom, frame;
    std::wstring acceptCaption, subtitle;
    RECT smallest = {};
    auto caption = [](const e2e::WizardView& v, int id) { return e2e::StripAccelerator(e2e::ControlText(v.Button(id))); };
    e2e::WizardUser user({
        {L"Welcome",
         [&](const e2e::WizardView& v) {
             welcome = v.Texts();
             subtitle = v.subtitle;
             acceptCaption = caption(v, e2e::WizardView::kNextId);
             // The frame can't be made smaller than its minimum client size.
             ::SetWindowPos(v.wizard, nullptr, 0, 0, 100, 100, SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
             ::GetClientRect(v.wizard, &smallest);
             e2e::ClickNext(v);
         }},
        {L"Setup Type",
         [&](const e2e::WizardView& v) {
             frame = {v.windowTitle, caption(v, e2e::WizardView::kBackId), caption(v, e2e::WizardView::kNextId),
                      caption(v, IDCANCEL)};
             setupType = v.Texts();
             e2e::Choose(v, L"Custom");
             e2e::ClickNext(v);
         }},
        {L"Setup Type",
         [&](const e2e::WizardView& v) {
             custom = v.Texts();
             e2e::ClickCancel(v);
         }},
    });
    const e2e::RunResult run = Run(setup, L"", user, {ConfirmCancel(IDYES, 1)});
    ASSERT_TRUE(run.ExitedWith(kExitCancelled)) << Describe(user);
    EXPECT_EQ(acceptCaption, L"Accept");
    EXPECT_EQ(frame, (std::vector<std::wstring>{L"Install Wizard", L"< Back", L"Next >", L"Cancel"}));
    EXPECT_EQ(smallest.right, 500);
    EXPECT_EQ(smallest.bottom, 300);
    EXPECT_EQ(subtitle, L"Welcome to the Install Wizard.");
    ASSERT_EQ(welcome.size(), 2u);
    EXPECT_EQ(welcome[0], L"Please read the following license agreement carefully.");
    // The agreement as the file has it, in the edit control's line breaks.
    std::wstring agreement = e2e::ReadText(e2e::MediaFolder() + L"license.txt");
    if (!agreement.empty() && agreement[0] == L'\xFEFF')
        agreement.erase(0, 1);
    std::wstring lines;
    for (wchar_t c : agreement)
        if (c != L'\r')
            lines += c == L'\n' ? std::wstring(L"\r\n") : std::wstring(1, c);
    EXPECT_NE(welcome[1].find(L"Sonora"), std::wstring::npos) << e2e::Utf8(welcome[1]);
    EXPECT_EQ(welcome[1], lines);
    EXPECT_EQ(setupType, (std::vector<std::wstring>{
                             L"Please select a setup type.", L"Express",
                             L"Most common set of program features will be installed.", L"Custom",
                             L"Choose program installation location and file associations. Recommended for advanced users.",
                             L"Next time use Auto Install after 30 second timeout."}));
    EXPECT_EQ(custom, (std::vector<std::wstring>{
                          L"Please select custom setup type.", L"Normal install to a computer",
                          L"This will let you install the program to any location on your computer.  You can choose the drive and path.",
                          L"Portable install",
                          L"This lets you put a complete copy of the program on a removable drive, so you can take it to another compatible computer and run it.  This will also ask for a drive and path."}));
}

TEST_F(WizardTest, CountdownStartsAtThirtyAndInstallsExpressAtTheTimer)
{
    const std::wstring setup = MakeSetup({.offerAutoInstall = 1}, 1);
    // Ten times faster: 3 s in all, ticks of 100 ms.
    ::SetEnvironmentVariableW(L"IW_TEST_ONLY_TIMER_DIVISOR", L"10");
    // A first install asks for the file types once the files are in.
    e2e::WizardUser user({NextOn(L"File Associations")});
    const e2e::RunResult run = Run(setup, L"", user);
    ASSERT_TRUE(run.ExitedWith(kExitInstalled)) << Describe(user);

    std::vector<int> seconds;
    const std::wstring prefix = L"Sonora - Install Wizard (Auto Install in ";
    for (const std::wstring& title : user.WindowTitles())
        if (title.rfind(prefix, 0) == 0) {
            EXPECT_EQ(title.substr(title.find(L' ', prefix.size())), L" seconds)");
            seconds.push_back(std::stoi(title.substr(prefix.size())));
        }
    ASSERT_FALSE(seconds.empty()) << user.Describe();
    EXPECT_EQ(seconds.front(), 30);
    for (size_t i = 1; i < seconds.size(); ++i)
        EXPECT_LT(seconds[i], seconds[i - 1]);
    // Only the welcome page was shown: the setup type and the destination took their defaults.
    EXPECT_EQ(PagesBeforeInstall(user), (std::vector<std::wstring>{L"Welcome"}));
    EXPECT_TRUE(run_.Logged(L"express 1")) << e2e::Utf8(Log());
    EXPECT_TRUE(e2e::FolderExists(kDefaultFolder));
    EXPECT_EQ(e2e::RegDword(HKEY_CURRENT_USER, kInstallerKey, L"Run Auto Install"), 1u);
}

TEST_F(WizardTest, CancelDuringTheCountdownEndsItAndNoKeepsTheWelcomePage)
{
    const std::wstring setup = MakeSetup({.offerAutoInstall = 1}, 1);
    // The countdown takes 3 s; the question stays open for 5.
    ::SetEnvironmentVariableW(L"IW_TEST_ONLY_TIMER_DIVISOR", L"10");
    std::wstring titleAfterNo;
    e2e::WizardUser user({
        {L"Welcome", [](const e2e::WizardView& v) { e2e::ClickCancel(v); }, false,
         [](const e2e::WizardView& v) { return v.windowTitle.find(L"Auto Install in") != std::wstring::npos; }},
        {L"Welcome",
         [&](const e2e::WizardView& v) {
             titleAfterNo = v.windowTitle;
             e2e::ClickCancel(v);
         },
         true},
    });
    e2e::DialogRule no = ConfirmCancel(IDNO, 1);
    no.answerAfterMs = 5000;
    const e2e::RunResult run = Run(setup, L"", user, {no, ConfirmCancel(IDYES, 1)});
    ASSERT_TRUE(run.ExitedWith(kExitCancelled)) << Describe(user);
    EXPECT_EQ(user.PagesSeen(), (std::vector<std::wstring>{L"Welcome"}));
    EXPECT_EQ(titleAfterNo, L"Install Wizard");
    EXPECT_FALSE(run_.Logged(L"Auto install starts")) << e2e::Utf8(Log());
    EXPECT_TRUE(run_.Logged(L"cancelled (destination , express 0")) << e2e::Utf8(Log());
    EXPECT_EQ(e2e::RegDword(HKEY_CURRENT_USER, kInstallerKey, L"Run Auto Install"), 1u);
}

TEST_F(WizardTest, RunAutoInstallFollowsTheCheckBoxAndIsForgottenWhenNotOffered)
{
    struct Row
    {
        const char* name;
        int offered;
        std::optional<DWORD> before;
        bool click;
        std::optional<DWORD> after;
    } rows[] = {
        {"ticked", 1, std::nullopt, true, 1u},
        {"left clear", 1, std::nullopt, false, 0u},
        {"cleared after an earlier wish", 1, 1u, true, 0u},
        {"not offered: forgotten", 0, 1u, false, std::nullopt},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        e2e::ResetToFreshMachine();
        const std::wstring setup = MakeSetup({.offerAutoInstall = row.offered}, row.before);
        bool boxShown = false;
        e2e::WizardUser user({
            // Accept at once, before an earlier wish's countdown (30 s) could end.
            NextOn(L"Welcome"),
            {L"Setup Type",
             [&](const e2e::WizardView& v) {
                 HWND box = v.Control(L"Next time use Auto Install after 30 second timeout.");
                 boxShown = box != nullptr;
                 if (row.click)
                     e2e::Click(box);
                 e2e::ClickNext(v);
             }},
            NextOn(L"File Associations"),
        });
        const e2e::RunResult run = Run(setup, L"", user);
        ASSERT_TRUE(run.ExitedWith(kExitInstalled)) << Describe(user);
        EXPECT_EQ(boxShown, row.offered != 0);
        EXPECT_EQ(e2e::RegDword(HKEY_CURRENT_USER, kInstallerKey, L"Run Auto Install"), row.after);
    }
}

TEST_F(WizardTest, DestinationRefusesEachBadFolderWithItsMessage)
{
    const std::wstring setup = MakeSetup({});
    ASSERT_TRUE(e2e::RegSetString(HKEY_LOCAL_MACHINE, kOtherProgramKey, L"InstallLocation",
                                  L"C:\\Program Files\\Other Vendor\\Tool"));
    const std::wstring again = L"Please enter a new destination folder.";
    struct Refusal
    {
        std::wstring typed;
        std::wstring title;
        std::wstring text;
    };
    const std::vector<Refusal> refusals = {
        {L"", L"Invalid Destination Folder", L"Sonora can not be installed to an empty folder.\r\n\r\n" + again},
        {L"    ", L"Invalid Destination Folder", L"Sonora can not be installed to an empty folder.\r\n\r\n" + again},
        {L"C:\\", L"Invalid Destination Folder", L"Sonora can not be installed to the root of a drive.\r\n\r\n" + again},
        {L"c:\\WINDOWS\\Sonora", L"Invalid Destination Folder",
         L"Sonora can not be installed in the Windows folder.\r\n\r\n" + again},
        {L"C:\\program files", L"Invalid Destination Folder",
         L"Sonora can not be installed to the root program files folder.\r\n\r\n" + again},
        {L"C:\\Program Files\\other vendor\\Tool\\Sonora", L"Invalid Destination Folder",
         L"Sonora can not be installed where a pre-existing program is installed.\r\n\r\n" + again},
        {L"Programs\\Sonora", L"Error", L"Failed to create Programs\\Sonora\\ directory."},
        {L"Q:\\Sonora", L"Error", L"Failed to create Q:\\Sonora\\ directory."},
    };
    std::vector<e2e::WizardStep> steps = {
        NextOn(L"Welcome"),
        ChooseOn(L"Setup Type", L"Custom"),
        NextOn(L"Setup Type"),
    };
    std::wstring proposed;
    for (size_t i = 0; i < refusals.size(); ++i) {
        steps.push_back({L"Destination Folder",
                         [&, i](const e2e::WizardView& v) {
                             HWND edit = v.ControlOfClass(L"Edit");
                             if (i == 0)
                                 proposed = e2e::ControlText(edit);
                             e2e::TypeText(edit, refusals[i].typed);
                             e2e::ClickNext(v);
                         },
                         i > 0});
    }
    std::wstring left;
    // Blanks after a good folder are no reason to refuse it.
    steps.push_back({L"Destination Folder",
                     [&](const e2e::WizardView& v) {
                         left = e2e::ControlText(v.ControlOfClass(L"Edit"));
                         e2e::TypeText(v.ControlOfClass(L"Edit"), L"C:\\Program Files\\Halvard\\Sonora Test   ");
                         e2e::ClickNext(v);
                     },
                     true});
    steps.insert(steps.end(), {NextOn(L"File Associations"), NextOn(L"Create Shortcuts"), NextOn(L"Install Complete")});
    e2e::WizardUser user(steps);
    std::vector<e2e::DialogRule> rules;
    for (const Refusal& r : refusals)
        rules.push_back({.title = r.title, .text = r.text, .button = IDOK, .times = 1});
    const e2e::RunResult run = Run(setup, L"", user, rules);
    ASSERT_TRUE(run.ExitedWith(kExitInstalled)) << Describe(user);
    EXPECT_EQ(proposed, kDefaultFolder);
    ASSERT_EQ(run.dialogs.size(), refusals.size()) << Describe(user);
    for (size_t i = 0; i < refusals.size(); ++i) {
        EXPECT_EQ(run.dialogs[i].title, refusals[i].title) << i;
        EXPECT_EQ(run.dialogs[i].text, refusals[i].text) << i;
    }
    // The refused text stays for correction.
    EXPECT_EQ(left, L"Q:\\Sonora");
    EXPECT_TRUE(e2e::FolderExists(L"C:\\Program Files\\Halvard\\Sonora Test\\"));
    EXPECT_TRUE(run_.Logged(L"destination C:\\Program Files\\Halvard\\Sonora Test\\,")) << e2e::Utf8(Log());
}

TEST_F(WizardTest, EarlierInstallationDecidesTheDestination)
{
    struct Row
    {
        const char* name;
        std::wstring location;     // of the uninstall entry that the installations record names
        std::wstring remembered;   // "Install Directory"
        std::wstring destination;
        bool pageShown;
    } rows[] = {
        {"the record's uninstall entry, quoted", L"\"" + kEarlierFolder + L"\"", L"", kEarlierFolder, false},
        {"a recorded folder that is gone", L"C:\\IW Test\\Gone Sonora", L"", kDefaultFolder, true},
        {"a remembered 32-bit folder", L"", L"C:\\Program Files (x86)\\Halvard\\Sonora\\", kDefaultFolder, true},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        e2e::ResetToFreshMachine();
        ASSERT_TRUE(e2e::MakeFolder(kEarlierFolder));
        const std::wstring setup = MakeSetup({});
        if (!row.location.empty()) {
            ASSERT_TRUE(e2e::RegSetString(HKEY_LOCAL_MACHINE, L"Software\\Halvard\\Corvale\\Installations\\Sonora 32",
                                          L"Uninstall Key", kOwnEntry));
            ASSERT_TRUE(e2e::RegSetString(HKEY_LOCAL_MACHINE, kUninstallKey + kOwnEntry, L"InstallLocation", row.location));
        }
        if (!row.remembered.empty()) {
            ASSERT_TRUE(e2e::RegSetString(HKEY_CURRENT_USER, kInstallerKey, L"Install Directory", row.remembered));
        }
        std::wstring proposed = L"(not shown)";
        std::vector<e2e::WizardStep> steps = {
            NextOn(L"Welcome"),
            ChooseOn(L"Setup Type", L"Custom"),
            NextOn(L"Setup Type"),
        };
        if (row.pageShown)
            steps.push_back({L"Destination Folder", [&](const e2e::WizardView& v) {
                                 proposed = e2e::ControlText(v.ControlOfClass(L"Edit"));
                                 e2e::ClickNext(v);
                             }});
        steps.insert(steps.end(), {NextOn(L"File Associations"), NextOn(L"Create Shortcuts"), NextOn(L"Install Complete")});
        e2e::WizardUser user(steps);
        const e2e::RunResult run = Run(setup, L"", user);
        ASSERT_TRUE(run.ExitedWith(kExitInstalled)) << Describe(user);
        EXPECT_EQ(proposed, row.pageShown ? row.destination : L"(not shown)");
        const std::wstring earlier = L"Earlier installation: " + (row.pageShown ? L"none" : kEarlierFolder);
        EXPECT_TRUE(run_.Logged(earlier)) << e2e::Utf8(Log());
        EXPECT_TRUE(run_.Logged(L"(destination " + row.destination + L", express 0")) << e2e::Utf8(Log());
    }
}

// Back, Next and Cancel over the pages: where each path leads, what it asks and what it installs.
TEST_F(WizardTest, PageFlows)
{
    const e2e::WizardStep typeDefault = {L"Destination Folder", [](const e2e::WizardView& v) {
        e2e::TypeText(v.ControlOfClass(L"Edit"), L"C:\\Program Files\\Halvard\\Sonora\\");
        e2e::ClickNext(v);
    }};
    // A portable install proposes no folder; going back from it to Express clears portable.
    const e2e::WizardStep portableBack = {L"Destination Folder", [](const e2e::WizardView& v) {
        EXPECT_EQ(e2e::ControlText(v.ControlOfClass(L"Edit")), L"");
        e2e::ClickBack(v);
    }};
    // Without its file the agreement is said to be missing, and Accept stays available.
    const e2e::WizardStep noAgreement = {L"Welcome", [](const e2e::WizardView& v) {
        const std::vector<std::wstring> texts = v.Texts();
        EXPECT_TRUE(texts.size() == 2 && texts[1].find(L"\"license.txt\" is missing") != std::wstring::npos);
        EXPECT_TRUE(::IsWindowEnabled(v.Button(e2e::WizardView::kNextId)));
        e2e::ClickCancel(v);
    }};
    const struct
    {
        const char* name;
        Description description;
        bool withoutAgreement;
        std::vector<e2e::WizardStep> steps;
        std::vector<e2e::DialogRule> rules;   // each answered once, in this order
        int exitCode;
        std::vector<std::wstring> pages;
        const wchar_t* logged;
    } flows[] = {
        {"No agreement file; Cancel asks first; No stays, Yes ends without changes", {}, true,
         {noAgreement, NextOn(L"Welcome", true),
          ChooseOn(L"Setup Type", L"Custom"), NextOn(L"Setup Type"), e2e::CancelOn(L"Destination Folder")},
         {ConfirmCancel(IDNO, 1), ConfirmCancel(IDYES, 1)}, kExitCancelled,
         {L"Welcome", L"Setup Type", L"Setup Type", L"Destination Folder"}, L"cancelled"},
        {"Express whose proposal fails shows the destination and goes on as Custom", {.installToPath = L"C:\\"}, false,
         {NextOn(L"Welcome"), NextOn(L"Setup Type"), typeDefault, NextOn(L"File Associations"), NextOn(L"Create Shortcuts"),
          NextOn(L"Install Complete")},
         {{.title = L"Invalid Destination Folder",
           .text = L"Sonora can not be installed to the root of a drive.\r\n\r\nPlease enter a new destination folder.",
           .button = IDOK, .times = 1}},
         kExitInstalled, {L"Welcome", L"Setup Type", L"Destination Folder"}, L"express 0"},
        {"Back from Portable to Express clears Portable", {}, false,
         {NextOn(L"Welcome"), ChooseOn(L"Setup Type", L"Custom"), ChooseOn(L"Setup Type", L"Portable install"), portableBack,
          e2e::BackOn(L"Setup Type"), ChooseOn(L"Setup Type", L"Express"), NextOn(L"File Associations")},
         {}, kExitInstalled,
         {L"Welcome", L"Setup Type", L"Setup Type", L"Destination Folder", L"Setup Type", L"Setup Type"},
         L"express 1, portable 0"},
    };
    for (const auto& flow : flows) {
        SCOPED_TRACE(flow.name);
        e2e::ResetToFreshMachine();
        const std::wstring setup = MakeSetup(flow.description);
        if (flow.withoutAgreement) {
            ASSERT_TRUE(::DeleteFileW((setup + L"license.txt").c_str()));
        }
        e2e::WizardUser user(flow.steps);
        const e2e::RunResult run = Run(setup, L"", user, flow.rules);
        ASSERT_TRUE(run.ExitedWith(flow.exitCode)) << Describe(user);
        ASSERT_EQ(run.dialogs.size(), flow.rules.size()) << Describe(user);
        for (size_t i = 0; i < flow.rules.size(); ++i) {
            EXPECT_EQ(run.dialogs[i].title, flow.rules[i].title);
            if (flow.rules[i].button == IDOK) {
                EXPECT_EQ(run.dialogs[i].pressed, L"OK");
            } else {
                EXPECT_EQ(run.dialogs[i].pressed, flow.rules[i].button == IDNO ? L"No" : L"Yes");
                EXPECT_EQ(run.dialogs[i].buttons, (std::vector<std::wstring>{L"Yes", L"No"}));
            }
        }
        EXPECT_EQ(PagesBeforeInstall(user), flow.pages) << Describe(user);
        EXPECT_TRUE(run_.Logged(flow.logged)) << e2e::Utf8(Log());
        EXPECT_EQ(e2e::FolderExists(kDefaultFolder), flow.exitCode == kExitInstalled);
    }
}

TEST_F(WizardTest, UnattendedRunsAskNothing)
{
    struct Row
    {
        const wchar_t* arguments;
        const wchar_t* express;
    } rows[] = {
        {L"/Silent", L"express 0"},
        {L"/Upgrade", L"express 1"},
        {L"/Silent /Upgrade", L"express 1"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(e2e::Utf8(row.arguments));
        e2e::ResetToFreshMachine();
        const std::wstring setup = MakeSetup({.offerAutoInstall = 1}, 1);
        // An upgrade that finds no earlier installation asks for the file types, as a first
        // install does.
        e2e::WizardUser user(std::wstring(row.arguments) == L"/Upgrade" ? std::vector<e2e::WizardStep>{NextOn(L"File Associations")}
                                                                        : std::vector<e2e::WizardStep>{});
        const e2e::RunResult run = Run(setup, row.arguments, user);
        ASSERT_TRUE(run.ExitedWith(kExitInstalled)) << Describe(user);
        EXPECT_TRUE(run.dialogs.empty());
        EXPECT_TRUE(run_.Logged(row.express)) << e2e::Utf8(Log());
        EXPECT_TRUE(e2e::FolderExists(kDefaultFolder));
        // No countdown, and the wish for the next run is kept as it was.
        for (const std::wstring& title : user.WindowTitles())
            EXPECT_EQ(title.find(L"Auto Install in"), std::wstring::npos);
        EXPECT_EQ(e2e::RegDword(HKEY_CURRENT_USER, kInstallerKey, L"Run Auto Install"), 1u);
    }
}
}   // namespace

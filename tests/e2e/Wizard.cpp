// The install wizard under Wine, driven through its own controls as a user would: Cancel and
// its question, Back and Next over the setup-type pages and the welcome page's countdown (the
// auto-install check box, the unattended runs' wish, the earlier installation's folder and the
// destination page's refusals are rows of tests/scenarios).
#include "E2ESupport.h"

#include "product/InstallExitCode.h"

#include <gtest/gtest.h>

#include <windows.h>

#include <optional>
#include <string>
#include <vector>

namespace
{
using e2e::kInstallerKey;

// The description's elements a run sets ("Installer/OfferAutoInstall" -> "1"); a setup folder
// of the run's own with them and the agreement.
using Elements = std::vector<std::pair<std::string, std::string>>;
std::wstring MakeSetup(const Elements& description)
{
    return e2e::MakeSetupFolder(L"Wizard", e2e::DescriptionXml(description), true);
}
const Elements kAutoOffered = {{"Installer/OfferAutoInstall", "1"}};

using WizardTest = e2e::FreshMachineTest;

using e2e::NextOn, e2e::ChooseOn;

// Answered once, by `button`, after the question (Yes or No) has been open for `answerAfterMs`.
e2e::DialogRule ConfirmCancel(int button, DWORD answerAfterMs = 0)
{
    return {.title = L"Confirm Cancellation", .text = L"Are you sure you want to cancel Sonora installation?",
            .button = button, .times = 1, .answerAfterMs = answerAfterMs, .buttons = {L"Yes", L"No"}};
}

// The destination page's refusal of a folder, `where` saying why.
e2e::DialogRule InvalidDestination(const std::wstring& where)
{
    return {.title = L"Invalid Destination Folder",
            .text = L"Sonora can not be installed " + where + L".\r\n\r\nPlease enter a new destination folder.",
            .button = IDOK, .times = 1};
}

TEST_F(WizardTest, PagesShowTheirTextsAndTheAgreement)
{
    const std::wstring setup = MakeSetup(kAutoOffered);
    std::vector<std::wstring> welcome, setupType, custom, frame;
    auto caption = [](const e2e::WizardView& v, int id) { return e2e::StripAccelerator(e2e::ControlText(v.Button(id))); };
    e2e::WizardUser user({
        {L"Welcome",
         [&](const e2e::WizardView& v) {
             welcome = v.Texts();
             EXPECT_EQ(v.subtitle, L"Welcome to the Install Wizard.");
             EXPECT_EQ(caption(v, e2e::WizardView::kNextId), L"Accept");
             // The frame can't be made smaller than its minimum client size.
             ::SetWindowPos(v.wizard, nullptr, 0, 0, 100, 100, SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
             RECT smallest = {};
             ::GetClientRect(v.wizard, &smallest);
             EXPECT_EQ(std::make_pair(smallest.right, smallest.bottom), std::make_pair(500L, 300L));
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
    const e2e::SetupRun run = e2e::RunSetup(setup, L"", {ConfirmCancel(IDYES)}, user.Poller());
    ASSERT_TRUE(run.result.ExitedWith(kExitCancelled)) << run.Describe(user.Describe());
    EXPECT_EQ(frame, (std::vector<std::wstring>{L"Install Wizard", L"< Back", L"Next >", L"Cancel"}));
    ASSERT_EQ(welcome.size(), 2u);
    EXPECT_EQ(welcome[0], L"Please read the following license agreement carefully.");
    // The agreement as the file has it (without its byte-order mark), in the edit control's line breaks.
    std::wstring lines;
    for (wchar_t c : e2e::ReadText(e2e::MediaFolder() + L"license.txt"))
        if (c != L'\r' && c != L'\xFEFF')
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

// Back, Next and Cancel over the pages: where each path leads, what it asks and what it installs.
TEST_F(WizardTest, PageFlows)
{
    // A refused proposal (from the description or from /Dir) is shown for correction.
    const std::vector<e2e::WizardStep> correctedExpress = {
        NextOn(L"Welcome"), NextOn(L"Setup Type"),
        {L"Destination Folder", [](const e2e::WizardView& v) {
             EXPECT_EQ(e2e::ControlText(v.ControlOfClass(L"Edit")), L"C:\\");
             e2e::TypeText(v.ControlOfClass(L"Edit"), L"C:\\Program Files\\Halvard\\Sonora\\");
             e2e::ClickNext(v);
         }},
        NextOn(L"File Associations"), NextOn(L"Create Shortcuts"), NextOn(L"Install Complete")};
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
    // Ten times faster: 3 s in all, ticks of 100 ms. Cancel while the welcome page counts down; the
    // question stays open for 5 s, and after No the countdown is over.
    ::SetEnvironmentVariableW(L"IW_TEST_ONLY_TIMER_DIVISOR", L"10");
    const e2e::WizardStep cancelInCountdown = {
        L"Welcome", [](const e2e::WizardView& v) { e2e::ClickCancel(v); }, false,
        [](const e2e::WizardView& v) { return v.windowTitle.find(L"Auto Install in") != std::wstring::npos; }};
    const e2e::WizardStep cancelAfterNo = {L"Welcome", [](const e2e::WizardView& v) {
        EXPECT_EQ(v.windowTitle, L"Install Wizard");
        e2e::ClickCancel(v);
    }, true};
    const struct
    {
        const char* name;
        Elements description;
        bool withoutAgreement;
        std::vector<e2e::WizardStep> steps;
        std::vector<e2e::DialogRule> rules;   // each answered once, in this order
        int exitCode;
        std::vector<std::wstring> pages;
        const wchar_t* logged;
        std::optional<DWORD> wish = std::nullopt;  // "Run Auto Install" before the run, and after it
        bool byTimer = false;                      // the countdown ran out and pressed Accept
        const wchar_t* arguments = L"";
    } flows[] = {
        {"No agreement file; Cancel asks first; No stays, Yes ends without changes", {}, true,
         {noAgreement, NextOn(L"Welcome", true),
          ChooseOn(L"Setup Type", L"Custom"), NextOn(L"Setup Type"), e2e::CancelOn(L"Destination Folder")},
         {ConfirmCancel(IDNO), ConfirmCancel(IDYES)}, kExitCancelled,
         {L"Welcome", L"Setup Type", L"Setup Type", L"Destination Folder"}, L"cancelled"},
        {"Express whose proposal fails shows the destination and goes on as Custom", {{"Product/InstallToPath", "C:\\"}}, false,
         correctedExpress, {InvalidDestination(L"to the root of a drive")}, kExitInstalled,
         {L"Welcome", L"Setup Type", L"Destination Folder"}, L"express 0"},
        {"A refused /Dir is shown the same way", {}, false, correctedExpress,
         {InvalidDestination(L"to the root of a drive")}, kExitInstalled,
         {L"Welcome", L"Setup Type", L"Destination Folder"}, L"express 0", std::nullopt, false, L"/Dir=C:\\"},
        {"Back from Portable to Express clears Portable", {}, false,
         {NextOn(L"Welcome"), ChooseOn(L"Setup Type", L"Custom"), ChooseOn(L"Setup Type", L"Portable install"), portableBack,
          e2e::BackOn(L"Setup Type"), ChooseOn(L"Setup Type", L"Express"), NextOn(L"File Associations")},
         {}, kExitInstalled,
         {L"Welcome", L"Setup Type", L"Setup Type", L"Destination Folder", L"Setup Type", L"Setup Type"},
         L"express 1, portable 0"},
        {"Cancel during the countdown ends it; No keeps the welcome page", kAutoOffered, false,
         {cancelInCountdown, cancelAfterNo}, {ConfirmCancel(IDNO, 5000), ConfirmCancel(IDYES)}, kExitCancelled,
         {L"Welcome"}, L"cancelled (destination , express 0", 1u},
        // Setup type and destination take their defaults; a first install asks for the file types.
        // The skipped setup-type page writes no wish: any non-zero one (2 here) stays as it was.
        {"The countdown accepts by itself and installs Express", kAutoOffered, false,
         {NextOn(L"File Associations")}, {}, kExitInstalled, {L"Welcome"}, L"express 1", 2u, true},
    };
    for (const auto& flow : flows) {
        SCOPED_TRACE(flow.name);
        e2e::ResetToFreshMachine();
        const std::wstring setup = MakeSetup(flow.description);
        if (flow.wish) {
            ASSERT_TRUE(e2e::RegSetDword(HKEY_CURRENT_USER, kInstallerKey, L"Run Auto Install", *flow.wish));
        }
        if (flow.withoutAgreement) {
            ASSERT_TRUE(::DeleteFileW((setup + L"license.txt").c_str()));
        }
        e2e::WizardUser user(flow.steps);
        const e2e::SetupRun run = e2e::RunSetup(setup, flow.arguments, flow.rules, user.Poller());
        ASSERT_TRUE(run.result.ExitedWith(flow.exitCode)) << run.Describe(user.Describe());
        ASSERT_EQ(run.result.dialogs.size(), flow.rules.size()) << run.Describe(user.Describe());
        // Each box answered by its own rule (its buttons named there), in order.
        for (size_t i = 0; i < flow.rules.size(); ++i)
            EXPECT_EQ(run.result.dialogs[i].rule, static_cast<int>(i)) << e2e::Utf8(run.result.dialogs[i].text);
        EXPECT_EQ(user.PagesBeforeInstall(), flow.pages) << run.Describe(user.Describe());
        EXPECT_TRUE(run.Logged(flow.logged)) << run.Describe();
        EXPECT_EQ(run.Logged(L"Auto install starts"), flow.byTimer) << run.Describe();
        // The parent folder too: made for this install, it goes with it.
        EXPECT_EQ(e2e::FolderExists(e2e::Expand(L"%ProgramFiles%\\Halvard\\")), flow.exitCode == kExitInstalled);
        EXPECT_EQ(e2e::RegDword(HKEY_CURRENT_USER, kInstallerKey, L"Run Auto Install"), flow.wish);
        // A wish starts the countdown at 30 seconds and shows it in the title, going down. A title
        // lasts 100 ms here, so the driver's rounds may miss the first: the log says where it began.
        EXPECT_EQ(run.Logged(L"Auto install in 30 seconds"), flow.wish.has_value()) << run.Describe();
        std::vector<int> seconds;
        const std::wstring counting = L"Sonora - Install Wizard (Auto Install in ";
        for (const std::wstring& title : user.WindowTitles())
            if (title.rfind(counting, 0) == 0) {
                EXPECT_EQ(title.substr(title.find(L' ', counting.size())), L" seconds)");
                seconds.push_back(std::stoi(title.substr(counting.size())));
            }
        EXPECT_EQ(seconds.empty(), !flow.wish) << user.Describe();
        for (size_t i = 0; i < seconds.size(); ++i)
            EXPECT_LT(seconds[i], i ? seconds[i - 1] : 31) << user.Describe();
    }
}

}   // namespace

// Whole runs of InstallWizard.exe, one row each: the setup folder and the machine before, the
// command line and the person's answers, and what must be on disk and in the registry after.
// Notations: tests/e2e/support/Scenario.h. One row alone: --gtest_filter=Scenarios.* with
// IW_SCENARIO=<the row's name, or a part of it>.
#include "E2ESupport.h"
#include "Scenario.h"

#include <gtest/gtest.h>

#include <cstdlib>

namespace
{
using e2e::NextOn, e2e::ChooseOn, e2e::CancelOn, e2e::TypeOn;
using Files = std::vector<e2e::ScenarioFile>;
using Values = std::vector<e2e::ScenarioValue>;

const std::wstring kUninstall = L"HKLM\\" + e2e::kUninstallEntryKey;
const std::wstring kRecord = L"HKLM\\" + e2e::kRecordKey;
const std::wstring kInstaller = L"HKCU\\" + e2e::kInstallerKey;
const std::wstring kJournal = L"HKCU\\" + e2e::kJournalKey;
const std::wstring kProperties = L"HKCU\\" + e2e::kPropertiesKey;
const std::wstring kEarlier = L"HKCU\\Software\\Halvard\\Sonora 31";
const std::wstring kRunOnce = L"HKCU\\" + e2e::kRunOnceKey;
const std::wstring kPortable = L"C:\\Portable Sonora\\";

const e2e::DialogRule kYesCancel = {.title = L"Confirm Cancellation",
                                    .text = L"Are you sure you want to cancel Sonora installation?", .button = IDYES, .times = 1};
const e2e::DialogRule kCancelUnavailable = {
    .title = L"Cancel Unavailable",
    .text = L"Sonora installation can no longer be canceled.\r\n\r\nOnce installation has completed, you can uninstall "
            L"using Control Panel > Add or Remove Programs.",
    .button = IDOK, .times = 1};
const e2e::DialogRule kCopyFailed = {.title = L"Install Error",
                                     .text = L"Install Wizard could not copy necessary files to the destination folder.",
                                     .match = e2e::TextMatch::StartsWith, .button = IDOK, .times = 1};
const e2e::DialogRule kLauncherInUse = {.title = L"Failure Copying System File",
                                        .text = L"Please ensure that the file '{dest}Sonora.exe' is not in use.",
                                        .button = IDCANCEL, .times = 1};

// The product where it belongs, each file as the setup folder has it.
Files Installed(const std::wstring& at = L"{dest}", Files more = {})
{
    for (const wchar_t* file : {L"Sonora.exe", L"Sonora 32.exe", L"HVShellExt.dll", L"FileAssociations.xml"})
        more.push_back({at + file, std::wstring(L"setup:Listenwell\\") + file});
    return more;
}
Files SystemFiles(Files more = {})
{
    more.push_back({L"{windows}System32\\HVCodecSupport.dll", L"setup:System\\Check Version\\HVCodecSupport.dll"});
    more.push_back({L"{windows}SysWOW64\\HVCodecSupport.dll", L"setup:System\\Check Version\\HVCodecSupport.dll"});
    more.push_back({L"{windows}Fonts\\DejaVuSans.ttf", L"setup:Fonts\\DejaVuSans.ttf"});
    return more;
}
// The records of an installed copy in the default folder.
Values Recorded(Values more = {})
{
    more.insert(more.end(), {{kUninstall, L"InstallLocation", L"{dest}"},
                             {kRecord, L"Path", L"{dest}Sonora.exe"},
                             {kInstaller, L"Install Directory", L"{dest}"}});
    return more;
}
// An earlier installation in the default folder whose program carries this major version.
Files EarlierFiles(int major, Files more = {})
{
    more.push_back({L"{dest}Sonora 32.exe", L"setup:Listenwell\\Sonora 32.exe@" + std::to_wstring(major)});
    return more;
}
const Values kEarlierRecord = {{kRecord, L"Path", L"{dest}Sonora.exe"}};
const Values kEarlierSettings = {
    {kEarlier + L"\\Installer", L"Install Directory", L"C:\\Program Files\\Halvard\\Sonora 31\\"},
    {kEarlier + L"\\Properties", L"LibraryPath", L"C:\\Program Files\\Halvard\\Sonora 31\\Data\\Library\\"},
    {kEarlier + L"\\Properties", L"View - Zoom", L"dword:150"},
    {kEarlier + L"\\Properties", L"Startup - Page", L"dword:1"},
    {kProperties, L"General - Volume", L"dword:80"}};
const std::vector<std::wstring> kInUse = {L"{dest}Data\\Startup Tips.txt", L"{dest}Plugins\\in_oldtracker.dll",
                                          L"{dest}HVShellExt.dll"};
const Values kJournalOfInUse = {
    {kJournal, L"Delete File (0)", L"{dest}Plugins\\in_oldtracker.dll|_DELETEFILE"},
    {kJournal, L"Delete File (1)", L"{dest}Data\\Startup Tips.txt|_DELETEFILE"},
    {kJournal, L"Register File (0)", L"{dest}HVShellExt.dll|_REGISTERFILE"},
    {kRunOnce, L"Install Wizard Completion", L"\"{dest}PackageInstaller.exe\" \"/FinishInstall\""}};
Values Plus(Values a, const Values& b)
{
    a.insert(a.end(), b.begin(), b.end());
    return a;
}
const Files kNothingInstalled = {{L"{dest}", L"empty"}, {L"{setup}Finish.txt", L"-"}};
const std::wstring kHandOver = L"utf16:HVFI0001\r\n{dest}Sonora.exe";
const std::vector<e2e::WizardStep> kExpress = {NextOn(L"Welcome"), NextOn(L"Setup Type"), NextOn(L"File Associations")};
// The setup-type page's box for the next run, offered by the description; the wish it leaves.
const std::wstring kAutoBox = L"Next time use Auto Install after 30 second timeout.";
const std::vector<std::pair<std::string, std::string>> kAutoOffered = {{"Installer/OfferAutoInstall", "1"}};
const Values kWished = {{kInstaller, L"Run Auto Install", L"dword:1"}};
const std::vector<e2e::WizardStep> kAutoBoxClicked = {NextOn(L"Welcome"), ChooseOn(L"Setup Type", kAutoBox), NextOn(L"File Associations")};
// The destination page shows the default folder; then Next to the end of a custom install.
const std::vector<e2e::WizardStep> kDefaultProposed = e2e::CustomInstall({{L"Destination Folder", [](const e2e::WizardView& v) {
    EXPECT_EQ(e2e::ControlText(v.ControlOfClass(L"Edit")), e2e::DefaultDestination());
    e2e::ClickNext(v);
}}});
const std::wstring kOwnEntry = L"HKLM\\SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Uninstall\\Sonora Earlier Entry";
// The finish page after a copy that needs a restart: it says so, with its box checked, which
// `keep` leaves as it is; then Finish. "Confirm Restart" answered by one of its two buttons.
e2e::WizardStep RestartOffered(bool keep)
{
    return {L"Install Complete", [keep](const e2e::WizardView& v) {
                EXPECT_EQ(v.Texts().empty() ? L"" : v.Texts().front(),
                          L"Install Wizard could not copy all files.  Windows must be restarted to complete setup.");
                EXPECT_TRUE(e2e::IsChecked(v.Control(L"Restart Windows now")));
                if (!keep)
                    e2e::Click(v.Control(L"Restart Windows now"));
                e2e::ClickNext(v);
            }};
}
e2e::DialogRule ConfirmRestart(const wchar_t* caption)
{
    return {.title = L"Confirm Restart",
            .text = L"Please save your work and close any open programs.\r\n\r\n"
                    L"Then click 'Restart' to restart your computer and finish installation.",
            .buttonCaption = caption, .times = 1, .buttons = {L"Restart", L"Cancel"}};
}
// The destination page's refusals: the folders typed in turn, each refused by its box. The
// page shows the default first and keeps the last refused text for correction; a good folder
// with blanks after it is taken.
e2e::DialogRule Refused(const std::wstring& why)
{
    return {.title = L"Invalid Destination Folder",
            .text = L"Sonora can not be installed " + why + L".\r\n\r\nPlease enter a new destination folder.", .button = IDOK, .times = 1};
}
e2e::DialogRule NotMade(const std::wstring& folder)
{
    return {.title = L"Error", .text = L"Failed to create " + folder + L"\\ directory.", .button = IDOK, .times = 1};
}
const std::vector<std::pair<std::wstring, e2e::DialogRule>> kRefusals = {
    {L"", Refused(L"to an empty folder")}, {L"    ", Refused(L"to an empty folder")}, {L"C:\\", Refused(L"to the root of a drive")},
    {L"c:\\WINDOWS\\Sonora", Refused(L"in the Windows folder")}, {L"C:\\program files", Refused(L"to the root program files folder")},
    {L"C:\\Program Files\\other vendor\\Tool\\Sonora", Refused(L"where a pre-existing program is installed")},
    {L"Programs\\Sonora", NotMade(L"Programs\\Sonora")}, {L"Q:\\Sonora", NotMade(L"Q:\\Sonora")}};
std::vector<e2e::WizardStep> TypedInTurn()
{
    std::vector<e2e::WizardStep> steps;
    for (size_t i = 0; i <= kRefusals.size(); ++i)
        steps.push_back({L"Destination Folder", [i](const e2e::WizardView& v) {
                             const HWND edit = v.ControlOfClass(L"Edit");
                             if (i == 0 || i == kRefusals.size()) {
                                 EXPECT_EQ(e2e::ControlText(edit), i ? kRefusals.back().first : e2e::DefaultDestination());
                             }
                             e2e::TypeText(edit, i < kRefusals.size() ? kRefusals[i].first : L"C:\\Program Files\\Halvard\\Sonora Test   ");
                             e2e::ClickNext(v);
                         }, i > 0});
    return e2e::CustomInstall(steps);
}
std::vector<e2e::DialogRule> RefusalBoxes()
{
    std::vector<e2e::DialogRule> boxes;
    for (const auto& refusal : kRefusals)
        boxes.push_back(refusal.second);
    return boxes;
}
const e2e::DialogRule kFileTypesFatal = {
    .title = L"Information",
    .text = L"Failed to load file associations file.\r\n\r\nPlease reinstall the latest version of the program to fix this problem."
            L"\r\n\r\nThis is a fatal error, so the program must close.\r\n\r\nPath: {dest}FileAssociations.xml\r\nVersion: ",
    .match = e2e::TextMatch::StartsWith, .button = IDOK, .times = 1};

const e2e::Scenario kScenarios[] = {
    // A first silent install is tests/e2e/Install.cpp's and Records.cpp's.
    {.name = "first install, interactive express", .person = kExpress,
     .files = Installed(L"{dest}", {{L"{setup}Finish.txt", kHandOver}}),
     .values = Recorded({{L"HKCR\\.mp3", L"", L"Sonora32.File"}})},
    {.name = "reinstall of the same version repairs and keeps the user's settings", .installedBefore = L"/Silent",
     .filesBefore = {{L"{dest}Sonora 32.exe", L"-"}}, .valuesBefore = {{kProperties, L"Startup - Page", L"dword:5"}},
     .commandLine = L"/Silent", .files = Installed(),
     .values = Recorded({{kProperties, L"Startup - Page", L"dword:5"}, {kRecord, L"GUID", L"="}})},
    {.name = "upgrade over an earlier version's files and settings",
     .filesBefore = EarlierFiles(31, {{L"{dest}Data\\Startup Tips.txt", L"text:old"}}),
     .valuesBefore = Plus(kEarlierRecord, kEarlierSettings), .commandLine = L"/Silent",
     .files = Installed(L"{dest}", {{L"{dest}Data\\Startup Tips.txt", L"-"}}),
     .values = Recorded({{kProperties, L"LibraryPath", L"[App Data Path]Data\\Library\\"},
                         {kProperties, L"View - Zoom", L"dword:150"},
                         {kProperties, L"Startup - Page", L"dword:1"},
                         {kProperties, L"General - Volume", L"dword:80"}})},
    {.name = "upgrade with /NoUpgrade leaves the earlier settings behind", .filesBefore = EarlierFiles(31),
     .valuesBefore = Plus(kEarlierRecord, kEarlierSettings), .commandLine = L"/Silent /NoUpgrade", .files = Installed(),
     .values = {{kProperties, L"LibraryPath", L"-"}, {kProperties, L"View - Zoom", L"-"},
                {kProperties, L"Startup - Page", L"dword:3"}, {kProperties, L"General - Volume", L"dword:80"}}},
    {.name = "a newer installed version is kept", .filesBefore = EarlierFiles(40), .valuesBefore = kEarlierRecord,
     .commandLine = L"/Silent",
     .files = {{L"{dest}Sonora 32.exe", L"setup:Listenwell\\Sonora 32.exe@40"}, {L"{dest}Sonora.exe", L"-"},
               {L"{dest}Media\\Playlist.mpl", L"*"}},
     .logged = {L"copy and plug-ins left out"}},
    {.name = "a newer installed version is replaced when the description allows downgrades",
     .description = {{"Settings@AllowDowngrade", "1"}}, .filesBefore = EarlierFiles(40), .valuesBefore = kEarlierRecord,
     .commandLine = L"/Silent", .files = Installed(), .values = Recorded()},
    {.name = "portable", .commandLine = L"/NoRun",
     .person = {NextOn(L"Welcome"), ChooseOn(L"Setup Type", L"Custom"), ChooseOn(L"Setup Type", L"Portable install"),
                TypeOn(L"Destination Folder", kPortable), NextOn(L"Install Complete")},
     .files = Installed(kPortable, {{L"{dest}", L"empty"}, {L"{setup}Finish.txt", L"-"}}),
     .values = {{kUninstall, L"DisplayName", L"-"},
                {kRecord, L"Path", L"-"},
                {kRecord + L" Portable *", L"Path", kPortable + L"Sonora.exe"},
                {kRecord + L" Portable *", L"Uninstall Key", L""}}},
    {.name = "files in use are replaced at the next restart", .filesBefore = {{kInUse[0], L"text:old"}, {kInUse[1], L"text:old"}},
     .held = kInUse, .commandLine = L"/Silent", .exitCode = 3010,
     .files = {{L"{dest}HVShellExt.dll", L"restart"}, {L"{dest}Setup\\1\\HVShellExt.dll", L"setup:Listenwell\\HVShellExt.dll"},
               {L"{setup}Finish.txt", L"-"}},
     .values = Plus(kJournalOfInUse, {{kJournal, L"Install File (0)", L"-"}})},
    {.name = "files in use go to the journal when Windows can't replace them at restart",
     .filesBefore = {{kInUse[0], L"text:old"}, {kInUse[1], L"text:old"}}, .held = kInUse,
     .environment = {L"IW_TEST_ONLY_NO_RESTART_REPLACE=1"}, .commandLine = L"/Silent", .exitCode = 3010,
     .files = {{L"{dest}Setup\\1\\HVShellExt.dll", L"setup:Listenwell\\HVShellExt.dll"}, {L"{setup}Finish.txt", L"-"}},
     .values = Plus(kJournalOfInUse, {{kJournal, L"Install File (0)", L"{dest}Setup\\1\\HVShellExt.dll|{dest}HVShellExt.dll"}})},
    {.name = "a launcher in use, cancelled", .filesBefore = {{L"{dest}Sonora.exe", L"text:running"}},
     .held = {L"{dest}Sonora.exe"}, .commandLine = L"/Silent", .answers = {kLauncherInUse}, .exitCode = 1603,
     .files = {{L"{dest}Sonora 32.exe", L"-"}}},
    {.name = "a launcher in use, unattended: never retried", .filesBefore = {{L"{dest}Sonora.exe", L"text:running"}},
     .held = {L"{dest}Sonora.exe"}, .commandLine = L"/Silent /SuppressMessages", .unseen = true, .exitCode = 1603,
     .files = {{L"{dest}Sonora 32.exe", L"-"}},
     .logged = {L"L1 HVMessageBox::Show: Box title: Failure Copying System File",
                L"L1 HVMessageBox::Show: Box text: Please ensure that the file '{dest}Sonora.exe' is not in use.",
                L"answered \"Cancel\""}},
    {.name = "cancel on the welcome page", .person = {CancelOn(L"Welcome")}, .answers = {kYesCancel}, .exitCode = 1602,
     .untouched = true},
    {.name = "cancel on the setup type page", .person = {NextOn(L"Welcome"), CancelOn(L"Setup Type")},
     .answers = {kYesCancel}, .exitCode = 1602, .untouched = true},
    {.name = "cancel on the custom setup type page",
     .person = {NextOn(L"Welcome"), ChooseOn(L"Setup Type", L"Custom"), CancelOn(L"Setup Type")},
     .answers = {kYesCancel}, .exitCode = 1602, .untouched = true},
    {.name = "cancel on the destination page",
     .person = {NextOn(L"Welcome"), ChooseOn(L"Setup Type", L"Custom"),
                ChooseOn(L"Setup Type", L"Normal install to a computer"), CancelOn(L"Destination Folder")},
     .answers = {kYesCancel}, .exitCode = 1602, .untouched = true},
    {.name = "cancel after the copy is refused",
     .person = {NextOn(L"Welcome"), NextOn(L"Setup Type"), CancelOn(L"File Associations"), NextOn(L"File Associations", true)},
     .answers = {kCancelUnavailable}, .files = Installed(L"{dest}", {{L"{setup}Finish.txt", kHandOver}}), .values = Recorded()},
    {.name = "a broken Install.xml installs with the defaults", .installXml = "<HVIC version=\"1.0\"><Product><<</",
     .commandLine = L"/Silent", .files = Installed(), .values = Recorded()},
    {.name = "a setup folder without the program files installs nothing", .filesBefore = {{L"{setup}Listenwell\\", L"-"}},
     .commandLine = L"/Silent", .answers = {kCopyFailed}, .exitCode = 1603, .files = kNothingInstalled},
    {.name = "no system path: no system files, and the install goes on", .environment = {L"IW_TEST_ONLY_NO_SYSTEM_PATH=1"},
     .commandLine = L"/Silent",
     .answers = {{.title = L"Error", .text = L"The install wizard can not obtain the Windows system path. System files will not be installed.",
                  .button = IDOK, .times = 2}},
     .files = Installed(L"{dest}", {{L"{windows}System32\\HVCodecSupport.dll", L"-"}, {L"{windows}Fonts\\DejaVuSans.ttf", L"-"}}),
     .values = Recorded()},
    {.name = "no font path: no fonts, the system files all the same", .environment = {L"IW_TEST_ONLY_NO_FONT_PATH=1"},
     .commandLine = L"/Silent",
     .answers = {{.title = L"Error", .text = L"The install wizard can not obtain the system font path. Custom fonts will not be installed.",
                  .button = IDOK, .times = 2}},
     .files = Installed(L"{dest}", {{L"{windows}System32\\HVCodecSupport.dll", L"setup:System\\Check Version\\HVCodecSupport.dll"},
                                   {L"{windows}Fonts\\DejaVuSans.ttf", L"-"}}),
     .values = Recorded()},
    {.name = "the server edition, its launcher named in any case, stops and clears the old server",
     .description = {{"Product/LauncherName", "sonora dynamo.exe"}},
     .filesBefore = {{L"{setup}Listenwell\\sonora dynamo.exe", L"setup:Listenwell\\Sonora.exe"},
                     {L"{dest}Server\\old.dat", L"text:x"}, {L"{dest}Data\\Panel\\Root\\Default\\static\\a.css", L"text:x"}},
     .commandLine = L"/Silent",
     .files = {{L"{dest}sonora dynamo.exe", L"setup:Listenwell\\Sonora.exe"}, {L"{dest}Server\\", L"-"},
               {L"{dest}Data\\Panel\\Root\\Default\\static\\", L"-"}},
     .values = {{kProperties, L"InstallPackageError", L"DynamoControl.exe"}}},
    {.name = "a setup folder without the system files installs the rest", .filesBefore = {{L"{setup}System\\", L"-"}},
     .commandLine = L"/Silent", .files = Installed(L"{dest}", {{L"{windows}System32\\HVCodecSupport.dll", L"-"}}),
     .values = Recorded()},
    {.name = "a setup folder without the main program installs nothing", .filesBefore = {{L"{setup}Listenwell\\Sonora 32.exe", L"-"}},
     .commandLine = L"/Silent", .answers = {kCopyFailed}, .exitCode = 1603, .files = kNothingInstalled},
    {.name = "an unattended run refuses a destination that needs a person",
     .description = {{"Product/InstallToPath", "C:\\"}}, .commandLine = L"/Silent /SuppressMessages", .unseen = true,
     .exitCode = 1603, .files = kNothingInstalled, .values = {{kRecord, L"Path", L"-"}},
     .logged = {L"Invalid Destination Folder: Sonora can not be installed to the root of a drive.", L"needs a person"}},
    {.name = "/Dir installs where it says", .commandLine = L"/Silent /Dir=\"C:\\Sonora Elsewhere\\\"",
     .files = Installed(L"C:\\Sonora Elsewhere\\", {{L"{dest}", L"-"}}),
     .values = {{kRecord, L"Path", L"C:\\Sonora Elsewhere\\Sonora.exe"}}},
    {.name = "/Dir into the Windows folder is refused without a box", .commandLine = L"/Silent /Dir=\"{windows}Sonora\\\"",
     .exitCode = 1603, .files = {{L"{windows}Sonora\\", L"-"}, {L"{dest}", L"-"}}, .values = {{kRecord, L"Path", L"-"}},
     .logged = {L"Sonora can not be installed in the Windows folder."}},
    {.name = "an answer file's bad value is logged and its default used; the command line wins",
     .filesBefore = {{L"{setup}answers.inf",
                      L"text:[Setup]\r\nSetupType=Typical\r\nFileTypes=.flac\r\nDir=C:\\Sonora Elsewhere\\\r\n"}},
     .commandLine = L"/Silent /SuppressMessages /LoadInf=\"{setup}answers.inf\" /Dir=\"{dest}\"", .unseen = true,
     .files = Installed(L"{dest}", {{L"C:\\Sonora Elsewhere\\", L"-"}}),
     .values = Recorded({{L"HKCR\\.flac", L"", L"Sonora32.File"}, {L"HKCR\\.mp3", L"", L"-"}}),
     .logged = {L"Line 2: SetupType=Typical: the value can't be read"}},
    {.name = "a cancelled run still writes its answer file", .commandLine = L"/SaveInf=\"{setup}answers.inf\"",
     .person = {NextOn(L"Welcome"), ChooseOn(L"Setup Type", L"Custom"),
                ChooseOn(L"Setup Type", L"Normal install to a computer"), CancelOn(L"Destination Folder")},
     .answers = {kYesCancel}, .exitCode = 1602, .files = {{L"{setup}answers.inf", L"*"}},
     .logged = {L"Answer file {setup}answers.inf: written"}, .untouched = true},
    {.name = "an answer file that can't be read installs nothing",
     .commandLine = L"/Silent /SuppressMessages /LoadInf=\"{setup}missing.inf\"", .unseen = true, .exitCode = 1603,
     .logged = {L"The answer file {setup}missing.inf can't be read"}, .untouched = true},
    {.name = "a read-only setup folder, silent", .readOnlySetup = true, .commandLine = L"/Silent",
     .files = Installed(L"{dest}", SystemFiles()), .values = Recorded()},
    {.name = "a read-only setup folder, interactive: no hand-over file, still installed", .readOnlySetup = true,
     .person = kExpress, .files = Installed(L"{dest}", {{L"{setup}Finish.txt", L"-"}}), .values = Recorded(),
     .logged = {L"Could not write {setup}Finish.txt"}},
    {.name = "the auto-install box ticked is the next run's wish", .description = kAutoOffered, .person = kAutoBoxClicked,
     .values = kWished},
    {.name = "the auto-install box left clear", .description = kAutoOffered, .person = kExpress,
     .values = {{kInstaller, L"Run Auto Install", L"dword:0"}}},
    {.name = "the auto-install box cleared after an earlier wish", .description = kAutoOffered, .valuesBefore = kWished,
     .person = kAutoBoxClicked, .values = {{kInstaller, L"Run Auto Install", L"dword:0"}}},
    {.name = "auto install not offered: no box, and the wish is forgotten", .valuesBefore = kWished,
     .person = {NextOn(L"Welcome"),
                {L"Setup Type", [](const e2e::WizardView& v) {
                     EXPECT_EQ(v.Control(kAutoBox), nullptr);
                     e2e::ClickNext(v);
                 }},
                NextOn(L"File Associations")},
     .values = {{kInstaller, L"Run Auto Install", L"-"}}},
    {.name = "the destination page refuses each bad folder with its box",
     .valuesBefore = {{L"HKLM\\SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Uninstall\\Sonora Other Tool", L"InstallLocation",
                       L"C:\\Program Files\\Other Vendor\\Tool"}},
     .person = TypedInTurn(), .answers = RefusalBoxes(), .files = {{L"C:\\Program Files\\Halvard\\Sonora Test\\Sonora.exe", L"*"}},
     .logged = {L"destination C:\\Program Files\\Halvard\\Sonora Test\\,"}},
    // An express reinstall passes the shortcut page on its defaults (the Start Menu only when
    // another version made it, the desktop as the user has it) and its finish page: the
    // program is handed over at once.
    {.name = "an express reinstall of the same version", .installedBefore = L"/Silent",
     .filesBefore = {{L"{startmenu}", L"-"}, {L"{desktop}Sonora.lnk", L"-"}}, .person = {NextOn(L"Welcome"), NextOn(L"Setup Type")},
     .files = {{L"{startmenu}", L"-"}, {L"{desktop}Sonora.lnk", L"-"}, {L"{setup}Finish.txt", kHandOver}}},
    {.name = "an express reinstall over another version", .installedBefore = L"/Silent",
     .filesBefore = {{L"{startmenu}", L"-"}, {L"{desktop}Sonora.lnk", L"-"}},
     .valuesBefore = {{kInstaller, L"Start Menu Version", L"dword:1"}}, .person = {NextOn(L"Welcome"), NextOn(L"Setup Type")},
     .files = {{L"{startmenu}Sonora.lnk", L"*"}, {L"{desktop}Sonora.lnk", L"-"}, {L"{setup}Finish.txt", kHandOver}}},
    // The file types chosen on the page are what gets registered: all cleared, then the first
    // row (.mp3) ticked. An upgrade without an earlier installation asks for them.
    {.name = "the file-association page's choice", .commandLine = L"/Upgrade /NoRun",
     .person = {e2e::FileTypesOn({VK_SPACE}), NextOn(L"Install Complete")},
     .values = {{kProperties, L"File Associations - Set", L".mp3"}, {kProperties, L"File Associations - Selected Media Types", L"Audio"},
                {L"HKCR\\.mp3", L"", L"Sonora32.File"}, {L"HKCR\\.flac", L"", L"-"}}},
    // A shell extension in use: the finish page offers the restart, and Cancel in its question
    // keeps the page; declined, the run ends with 3010. Either way the journal is written and
    // nothing is started before the restart.
    {.name = "a shell extension in use: the restart, asked twice", .filesBefore = {{L"{dest}HVShellExt.dll", L"text:in use"}},
     .held = {L"{dest}HVShellExt.dll"}, .environment = {L"IW_TEST_ONLY_NO_EXIT_WINDOWS=1"},
     .person = {NextOn(L"Welcome"), NextOn(L"Setup Type"), NextOn(L"File Associations"), RestartOffered(true),
                NextOn(L"Install Complete", true)},
     .answers = {ConfirmRestart(L"Cancel"), ConfirmRestart(L"Restart")}, .files = {{L"{setup}Finish.txt", L"-"}},
     .values = {{kRunOnce, L"Install Wizard Completion", L"*"}}, .logged = {L"mode: Restart", L"ExitWindowsEx(0x12)"}},
    {.name = "a shell extension in use: the restart declined", .filesBefore = {{L"{dest}HVShellExt.dll", L"text:in use"}},
     .held = {L"{dest}HVShellExt.dll"}, .environment = {L"IW_TEST_ONLY_NO_EXIT_WINDOWS=1"},
     .person = {NextOn(L"Welcome"), NextOn(L"Setup Type"), NextOn(L"File Associations"), RestartOffered(false)},
     .exitCode = 3010, .files = {{L"{setup}Finish.txt", L"-"}}, .values = {{kRunOnce, L"Install Wizard Completion", L"*"}},
     .notLogged = {L"mode: Restart", L"ExitWindowsEx(0x12)"}},
    // An earlier installation decides the destination, and the page is passed over; a folder
    // that is gone, or a remembered 32-bit one, does not.
    {.name = "the installations record's uninstall entry names the folder, quoted",
     .filesBefore = {{L"C:\\Sonora Elsewhere\\Sonora.exe", L"text:x"}},
     .valuesBefore = {{kRecord, L"Uninstall Key", L"Sonora Earlier Entry"}, {kOwnEntry, L"InstallLocation", L"\"C:\\Sonora Elsewhere\\\""}},
     .person = e2e::CustomInstall({}),
     .logged = {L"Earlier installation: C:\\Sonora Elsewhere\\", L"(destination C:\\Sonora Elsewhere\\, express 0"}},
    {.name = "a recorded folder that is gone",
     .valuesBefore = {{kRecord, L"Uninstall Key", L"Sonora Earlier Entry"}, {kOwnEntry, L"InstallLocation", L"C:\\Sonora Gone"}},
     .person = kDefaultProposed, .logged = {L"Earlier installation: none", L"(destination {dest}, express 0"}},
    {.name = "a remembered 32-bit folder",
     .valuesBefore = {{kInstaller, L"Install Directory", L"C:\\Program Files (x86)\\Halvard\\Sonora\\"}},
     .person = kDefaultProposed, .logged = {L"Earlier installation: none", L"(destination {dest}, express 0"}},
    // Unattended runs ask nothing and start no countdown; the wish for the next run stays.
    {.name = "/Silent with a wish: no countdown", .description = kAutoOffered, .valuesBefore = kWished, .commandLine = L"/Silent",
     .values = kWished, .logged = {L"express 0"}, .notLogged = {L"Auto install in"}},
    {.name = "/Upgrade with a wish and no earlier installation: only the file types asked", .description = kAutoOffered,
     .valuesBefore = kWished, .commandLine = L"/Upgrade", .person = {NextOn(L"File Associations")}, .values = kWished,
     .logged = {L"express 1"}, .notLogged = {L"Auto install in"}},
    {.name = "/Silent /Upgrade with a wish", .description = kAutoOffered, .valuesBefore = kWished, .commandLine = L"/Silent /Upgrade",
     .values = kWished, .logged = {L"express 1"}, .notLogged = {L"Auto install in"}},
    // Bad input leaves the defaults and says so in the log.
    {.name = "no Install.xml anywhere", .filesBefore = {{L"{setup}Install.xml", L"-"}}, .commandLine = L"/Silent",
     .logged = {L"Install description not readable", L"allow downgrade no"}},
    {.name = "an Install.xml version that is no number", .installXml = "<HVIC version=\"abc\"><Settings AllowDowngrade=\"1\"/></HVIC>",
     .commandLine = L"/Silent", .logged = {L"Install settings not applicable", L"allow downgrade no"}},
    {.name = "junk on the command line", .commandLine = L"/Silent /Foo /DistributorID /// \x00e9/\x4e2d",
     .logged = {L"Unknown option ignored: /Foo"}},
    {.name = "an earlier installation's service is stopped first",
     .filesBefore = {{L"{dest}HVService.exe", L"setup:Listenwell\\HVService.exe"}}, .valuesBefore = kEarlierRecord,
     .commandLine = L"/Silent", .files = {{L"{dest}HVService.stop.txt", L"text:\"{dest}HVService.exe\" /Stop\r\n"}},
     .logged = {L"Parameters: /Stop"}},
    // Without its file types the product can't be registered: a fatal box naming where the
    // installed product keeps the file, and the install fails.
    {.name = "no file-types description", .filesBefore = {{L"{setup}Listenwell\\FileAssociations.xml", L"-"}},
     .commandLine = L"/Silent", .answers = {kFileTypesFatal}, .exitCode = 1603},
    {.name = "a broken file-types description",
     .filesBefore = {{L"{setup}Listenwell\\FileAssociations.xml", L"text:<LWFA version=\"1.0\"><Type"}}, .commandLine = L"/Silent",
     .answers = {kFileTypesFatal}, .exitCode = 1603},
};

TEST(Scenarios, EachRowLeavesTheMachineItsExpectationDescribes)
{
    const char* only = std::getenv("IW_SCENARIO");
    for (const e2e::Scenario& scenario : kScenarios)
        if (!only || std::string(scenario.name).find(only) != std::string::npos)
            e2e::RunScenario(scenario);
    e2e::ResetToFreshMachine();
}
}  // namespace

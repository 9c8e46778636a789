// The end-to-end driver tested against programs whose dialogs are known: ShowBox.exe shows
// exactly the box it is told to, HoldLock.exe holds a file. If these pass, a failing
// installer test is about the installer, not about the driver.
#include "E2ESupport.h"

#include <gtest/gtest.h>

#include <windows.h>

namespace
{
std::wstring Quote(const std::wstring& s)
{
    return L"\"" + s + L"\"";
}

e2e::RunOptions ShowBox(const std::wstring& arguments)
{
    e2e::RunOptions options;
    options.program = e2e::ToolPath(L"ShowBox.exe");
    options.commandLine = arguments;
    options.timeoutMs = 30000;
    return options;
}

struct AnswerCase
{
    const wchar_t* flags;
    e2e::DialogRule rule;
    DWORD exitCode;
    std::vector<std::wstring> buttons;
    const wchar_t* pressed;
};

class DriverAnswers : public ::testing::TestWithParam<AnswerCase>
{
};

// The text is given escaped on the command line and must come back with real line breaks,
// character for character, as the installer's messages are compared.
TEST_P(DriverAnswers, ReadsTheBoxExactlyAndPressesTheRulesButton)
{
    const AnswerCase& c = GetParam();
    const std::wstring title = L"Halvard Installer";
    const std::wstring text = L"Another instance is running.\r\n\r\nPlease finish it and try again.";
    e2e::RunOptions options = ShowBox(Quote(title) + L" " +
                                      Quote(L"Another instance is running.\\r\\n\\r\\nPlease finish it and try again.") +
                                      L" " + c.flags);
    options.rules = {{.title = L"Some Other Box", .text = L"", .match = e2e::TextMatch::Any, .button = IDOK}, c.rule};

    const e2e::RunResult run = e2e::ProgramDriver(options).Run();

    ASSERT_TRUE(run.ExitedWith(c.exitCode)) << run.Describe();
    ASSERT_EQ(run.dialogs.size(), 1u) << run.Describe();
    EXPECT_EQ(run.dialogs[0].title, title);
    EXPECT_EQ(run.dialogs[0].text, text);
    EXPECT_EQ(run.dialogs[0].buttons, c.buttons);
    EXPECT_EQ(run.dialogs[0].rule, 1);
    EXPECT_EQ(run.dialogs[0].pressed, c.pressed);
}

INSTANTIATE_TEST_SUITE_P(
    Buttons, DriverAnswers,
    ::testing::Values(
        AnswerCase{L"MB_YESNO MB_ICONQUESTION",
                   {.title = L"Halvard Installer", .text = L"Another instance is running.\r\n\r\nPlease finish it and try again.", .button = IDNO},
                   IDNO, {L"Yes", L"No"}, L"No"},
        AnswerCase{L"MB_YESNOCANCEL",
                   {.title = L"Halvard Installer", .text = L"Another instance", .match = e2e::TextMatch::StartsWith, .buttonCaption = L"&yes"},
                   IDYES, {L"Yes", L"No", L"Cancel"}, L"Yes"},
        AnswerCase{L"MB_RETRYCANCEL MB_ICONERROR",
                   {.text = L"Please finish", .match = e2e::TextMatch::Contains, .button = IDRETRY},
                   IDRETRY, {L"Retry", L"Cancel"}, L"Retry"},
        AnswerCase{L"MB_OKCANCEL",
                   {.title = L"Halvard Installer", .match = e2e::TextMatch::Any, .buttonCaption = L"Cancel"},
                   IDCANCEL, {L"OK", L"Cancel"}, L"Cancel"},
        AnswerCase{L"MB_OK", {.match = e2e::TextMatch::Any, .button = IDOK}, IDOK, {L"OK"}, L"OK"}));

TEST(Driver, AnswersEveryBoxInTurnAndRecordsThemInOrder)
{
    e2e::RunOptions options = ShowBox(L"/Count 3 Information \"Step done.\" MB_OKCANCEL");
    options.rules = {{.title = L"Information", .text = L"Step done.", .button = IDOK}};

    const e2e::RunResult run = e2e::ProgramDriver(options).Run();

    ASSERT_TRUE(run.ExitedWith(IDOK)) << run.Describe();
    ASSERT_EQ(run.dialogs.size(), 3u) << run.Describe();
    for (const e2e::DialogRecord& d : run.dialogs)
        EXPECT_EQ(d.pressed, L"OK");
}

TEST(Driver, UnexpectedBoxFailsTheRunIsRecordedAndEndsTheProgram)
{
    e2e::RunOptions options = ShowBox(L"\"Install Error\" \"Something broke.\" MB_OK MB_ICONERROR");
    options.rules = {{.title = L"Install Error", .text = L"Something else.", .button = IDOK}};

    e2e::RunResult run = e2e::ProgramDriver(options).Run();

    EXPECT_EQ(run.outcome, e2e::RunOutcome::UnexpectedDialog) << run.Describe();
    ASSERT_EQ(run.dialogs.size(), 1u);
    EXPECT_EQ(run.dialogs[0].title, L"Install Error");
    EXPECT_EQ(run.dialogs[0].text, L"Something broke.");
    EXPECT_EQ(run.dialogs[0].rule, -1);
    EXPECT_TRUE(run.dialogs[0].pressed.empty());
    ASSERT_FALSE(run.openWindows.empty());
    EXPECT_NE(run.openWindows[0].find(L"Install Error"), std::wstring::npos);
    EXPECT_NE(run.Describe().find("no rule"), std::string::npos);
    // The box's program was ended, not left waiting for an answer.
    EXPECT_TRUE(e2e::ListTopLevelWindows(run.processId, true).empty());
}

TEST(Driver, RuleUsedUpMakesTheNextBoxUnexpected)
{
    e2e::RunOptions options = ShowBox(L"/Count 2 Question \"Again?\" MB_YESNO");
    options.rules = {{.title = L"Question", .text = L"Again?", .button = IDYES, .times = 1}};

    const e2e::RunResult run = e2e::ProgramDriver(options).Run();

    EXPECT_EQ(run.outcome, e2e::RunOutcome::UnexpectedDialog) << run.Describe();
    ASSERT_EQ(run.dialogs.size(), 2u);
    EXPECT_EQ(run.dialogs[0].pressed, L"Yes");
    EXPECT_EQ(run.dialogs[1].rule, -1);
}

TEST(Driver, RuleNamingAMissingButtonFailsTheRun)
{
    e2e::RunOptions options = ShowBox(L"Question \"Continue?\" MB_YESNO");
    options.rules = {{.title = L"Question", .text = L"Continue?", .button = IDRETRY}};

    const e2e::RunResult run = e2e::ProgramDriver(options).Run();

    EXPECT_EQ(run.outcome, e2e::RunOutcome::NoSuchButton) << run.Describe();
    EXPECT_NE(run.failure.find(L"has no button"), std::wstring::npos);
}

TEST(Driver, TimeOutEndsTheProgramAndReportsItsOpenWindows)
{
    e2e::RunOptions options = ShowBox(L"/Window \"Waiting For Nobody\"");
    options.timeoutMs = 1500;

    const e2e::RunResult run = e2e::ProgramDriver(options).Run();

    EXPECT_EQ(run.outcome, e2e::RunOutcome::TimedOut) << run.Describe();
    EXPECT_TRUE(run.dialogs.empty());
    ASSERT_EQ(run.openWindows.size(), 1u) << run.Describe();
    EXPECT_NE(run.openWindows[0].find(L"\"Waiting For Nobody\""), std::wstring::npos) << run.Describe();
    EXPECT_NE(run.openWindows[0].find(L"ShowBoxWindow"), std::wstring::npos) << run.Describe();
    EXPECT_NE(run.Describe().find("timed out"), std::string::npos);
}

TEST(Driver, PollCheckSeesTheProgramsWindowsAndCanEndTheRun)
{
    e2e::RunOptions options = ShowBox(L"/Window \"Polled Window\"");
    bool sawWindow = false;
    options.onPoll = [&](DWORD pid) {
        for (const e2e::WindowInfo& w : e2e::ListTopLevelWindows(pid, true))
            sawWindow = sawWindow || w.title == L"Polled Window";
        return !sawWindow;
    };

    const e2e::RunResult run = e2e::ProgramDriver(options).Run();

    EXPECT_TRUE(sawWindow);
    EXPECT_EQ(run.outcome, e2e::RunOutcome::PollFailed) << run.Describe();
}

TEST(Driver, MissingProgramIsReportedNotStarted)
{
    e2e::RunOptions options;
    options.program = e2e::TestProgramFolder() + L"NoSuchProgram.exe";

    const e2e::RunResult run = e2e::ProgramDriver(options).Run();

    EXPECT_EQ(run.outcome, e2e::RunOutcome::NotStarted);
    EXPECT_NE(run.failure.find(L"NoSuchProgram.exe"), std::wstring::npos);
}

TEST(Driver, DefaultProgramIsTheInstallerInTheSetupFolder)
{
    EXPECT_NE(GetFileAttributesW(e2e::InstallWizardPath().c_str()), INVALID_FILE_ATTRIBUTES)
        << e2e::Utf8(e2e::InstallWizardPath());
    EXPECT_NE(GetFileAttributesW((e2e::MediaFolder() + L"Install.xml").c_str()), INVALID_FILE_ATTRIBUTES);
}

TEST(DriverMatching, TextMatchesByKind)
{
    struct Case
    {
        const wchar_t* actual;
        const wchar_t* expected;
        e2e::TextMatch match;
        bool result;
    };
    const Case cases[] = {
        {L"Line one.\r\nLine two.", L"Line one.\r\nLine two.", e2e::TextMatch::Exact, true},
        {L"Line one.\r\nLine two.", L"Line one.\nLine two.", e2e::TextMatch::Exact, false},
        {L"Abc", L"abc", e2e::TextMatch::Exact, false},
        {L"Abc", L"Ab", e2e::TextMatch::Exact, false},
        {L"Install Wizard could not copy.", L"Install Wizard", e2e::TextMatch::StartsWith, true},
        {L"Install", L"Install Wizard", e2e::TextMatch::StartsWith, false},
        {L"Please ensure that the file 'x' is not in use.", L"'x'", e2e::TextMatch::Contains, true},
        {L"", L"x", e2e::TextMatch::Contains, false},
        {L"", L"anything", e2e::TextMatch::Any, true},
    };
    for (const Case& c : cases)
        EXPECT_EQ(e2e::TextMatches(c.actual, c.expected, c.match), c.result) << e2e::Utf8(c.actual);
}

TEST(DriverMatching, AcceleratorsAreStripped)
{
    EXPECT_EQ(e2e::StripAccelerator(L"&No"), L"No");
    EXPECT_EQ(e2e::StripAccelerator(L"Save && Exit"), L"Save & Exit");
    EXPECT_EQ(e2e::StripAccelerator(L"E&xit"), L"Exit");
    EXPECT_EQ(e2e::StripAccelerator(L"Trailing&"), L"Trailing");
}

TEST(HeldFileLock, BlocksCopyAndDeleteFromOtherProcessesUntilReleased)
{
    const std::wstring folder = e2e::ScratchFolder(L"HeldFileLock");
    ASSERT_FALSE(folder.empty());
    const std::wstring locked = folder + L"Sonora.exe";
    const std::wstring source = folder + L"Sonora.new";
    ASSERT_TRUE(e2e::WriteFileBytes(locked, "old"));
    ASSERT_TRUE(e2e::WriteFileBytes(source, "new"));
    {
        e2e::HeldFileLock lock(locked);
        ASSERT_TRUE(lock.IsHeld()) << e2e::Utf8(lock.Error());

        EXPECT_FALSE(CopyFileW(source.c_str(), locked.c_str(), FALSE));
        EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_SHARING_VIOLATION));
        EXPECT_FALSE(DeleteFileW(locked.c_str()));
        EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_SHARING_VIOLATION));
        std::string bytes;
        EXPECT_FALSE(e2e::ReadFileBytes(locked, bytes));
    }
    std::string bytes;
    ASSERT_TRUE(e2e::ReadFileBytes(locked, bytes));
    EXPECT_EQ(bytes, "old");
    EXPECT_TRUE(CopyFileW(source.c_str(), locked.c_str(), FALSE));
    EXPECT_TRUE(DeleteFileW(locked.c_str()));
}

TEST(HeldFileLock, CreatesAMissingFileAndReportsAnImpossibleOne)
{
    const std::wstring folder = e2e::ScratchFolder(L"HeldFileLockMissing");
    ASSERT_FALSE(folder.empty());
    {
        e2e::HeldFileLock lock(folder + L"Created.dat");
        EXPECT_TRUE(lock.IsHeld()) << e2e::Utf8(lock.Error());
        lock.Release();
        EXPECT_FALSE(lock.IsHeld());
    }
    EXPECT_NE(GetFileAttributesW((folder + L"Created.dat").c_str()), INVALID_FILE_ATTRIBUTES);

    e2e::HeldFileLock impossible(folder + L"No Such Folder\\File.dat");
    EXPECT_FALSE(impossible.IsHeld());
    EXPECT_NE(impossible.Error().find(L"could not hold"), std::wstring::npos) << e2e::Utf8(impossible.Error());
}

TEST(FolderTree, ComparisonReportsMissingAndExtraEntries)
{
    const std::wstring folder = e2e::ScratchFolder(L"FolderTree");
    ASSERT_FALSE(folder.empty());
    ASSERT_TRUE(e2e::WriteFileBytes(folder + L"Sonora.exe", "x"));
    ASSERT_TRUE(e2e::WriteFileBytes(folder + L"Data\\Default Art\\Application.ico", "x"));
    ASSERT_TRUE(e2e::WriteFileBytes(folder + L"Leftover.dll", "x"));
    ASSERT_TRUE(e2e::MakeFolder(folder + L"Empty"));

    EXPECT_EQ(e2e::ListTree(folder),
              (std::vector<std::wstring>{L"Data\\Default Art\\Application.ico", L"Leftover.dll", L"Sonora.exe"}));
    EXPECT_EQ(e2e::ListTree(folder, e2e::TreeEntries::FilesAndFolders),
              (std::vector<std::wstring>{L"Data\\", L"Data\\Default Art\\", L"Data\\Default Art\\Application.ico",
                                         L"Empty\\", L"Leftover.dll", L"Sonora.exe"}));

    // Case and slash direction don't matter, as on Windows.
    const e2e::TreeDifference diff =
        e2e::CompareTree(folder, {L"sonora.EXE", L"Data/Default Art/Application.ico", L"License.txt"});
    EXPECT_EQ(diff.missing, std::vector<std::wstring>{L"License.txt"});
    EXPECT_EQ(diff.extra, std::vector<std::wstring>{L"Leftover.dll"});
    EXPECT_FALSE(diff.Same());
    EXPECT_NE(diff.Describe().find("missing:\n  License.txt"), std::string::npos) << diff.Describe();
    EXPECT_NE(diff.Describe().find("extra:\n  Leftover.dll"), std::string::npos) << diff.Describe();

    EXPECT_TRUE(e2e::TreeMatches(folder, {L"Sonora.exe", L"Leftover.dll", L"Data\\Default Art\\Application.ico"}));
    EXPECT_FALSE(e2e::TreeMatches(folder, {L"Sonora.exe"}));
    EXPECT_TRUE(e2e::CompareTree(folder + L"Missing\\", {}).Same());

    const std::wstring copy = e2e::ScratchFolder(L"FolderTreeCopy");
    ASSERT_TRUE(e2e::CopyTree(folder, copy));
    EXPECT_EQ(e2e::ListTree(copy, e2e::TreeEntries::FilesAndFolders),
              e2e::ListTree(folder, e2e::TreeEntries::FilesAndFolders));
    EXPECT_TRUE(e2e::DeleteTree(copy));
    EXPECT_TRUE(e2e::ListTree(copy).empty());
}

TEST(TestRegistry, ReadsEachViewSeparatelyAndFreshMachineClearsBoth)
{
    const std::wstring key = L"Software\\Halvard\\Sonora 32\\DriverTest";
    ASSERT_TRUE(e2e::RegSetString(HKEY_LOCAL_MACHINE, key, L"Where", L"32-bit", HVRegView::Key32));
    ASSERT_TRUE(e2e::RegSetDword(HKEY_LOCAL_MACHINE, key, L"Count", 32, HVRegView::Key64));

    EXPECT_EQ(e2e::RegString(HKEY_LOCAL_MACHINE, key, L"Where", HVRegView::Key32), L"32-bit");
    EXPECT_EQ(e2e::RegString(HKEY_LOCAL_MACHINE, key, L"Where", HVRegView::Key64), std::nullopt);
    EXPECT_EQ(e2e::RegDword(HKEY_LOCAL_MACHINE, key, L"Count", HVRegView::Key64), 32u);
    EXPECT_EQ(e2e::RegDword(HKEY_LOCAL_MACHINE, key, L"Count", HVRegView::Key32), std::nullopt);
    // A value of another type is not there for the reader that expects a string.
    EXPECT_EQ(e2e::RegString(HKEY_LOCAL_MACHINE, key, L"Count", HVRegView::Key64), std::nullopt);
    EXPECT_EQ(e2e::RegValueNames(HKEY_LOCAL_MACHINE, key, HVRegView::Key64), std::vector<std::wstring>{L"Count"});

    ASSERT_TRUE(e2e::RegSetString(HKEY_CURRENT_USER, L"Software\\Microsoft\\Windows\\CurrentVersion\\RunOnce",
                                  L"Install Wizard Completion", L"x"));
    std::vector<std::wstring> problems;
    EXPECT_TRUE(e2e::ResetToFreshMachine(&problems)) << (problems.empty() ? "" : e2e::Utf8(problems[0]));
    EXPECT_FALSE(e2e::RegKeyExists(HKEY_LOCAL_MACHINE, L"Software\\Halvard", HVRegView::Key32));
    EXPECT_FALSE(e2e::RegKeyExists(HKEY_LOCAL_MACHINE, L"Software\\Halvard", HVRegView::Key64));
    EXPECT_FALSE(e2e::RegValueExists(HKEY_CURRENT_USER, L"Software\\Microsoft\\Windows\\CurrentVersion\\RunOnce",
                                     L"Install Wizard Completion"));
    // Resetting a machine that is already fresh is fine.
    EXPECT_TRUE(e2e::ResetToFreshMachine());
}
}

namespace
{
// Task dialogs keep their texts in several controls and have no message control of id 0xFFFF:
// the driver reads them all, so a rule can match the content.
TEST(Driver, ReadsAndAnswersATaskDialog)
{
    e2e::RunOptions options = ShowBox(L"/Task /Instruction \"Close Sonora?\" \"Install Wizard\" "
                                      L"\"Sonora is running.\" MB_YESNO");
    options.rules = {{.title = L"Install Wizard", .text = L"Sonora is running.", .match = e2e::TextMatch::Contains,
                      .buttonCaption = L"No"}};

    const e2e::RunResult run = e2e::ProgramDriver(options).Run();

    ASSERT_TRUE(run.ExitedWith(IDNO)) << run.Describe();
    ASSERT_EQ(run.dialogs.size(), 1u);
    EXPECT_NE(run.dialogs[0].text.find(L"Close Sonora?"), std::wstring::npos) << run.Describe();
    EXPECT_EQ(run.dialogs[0].pressed, L"No");
}
}

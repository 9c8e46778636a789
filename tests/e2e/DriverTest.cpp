// The end-to-end support's own checks, kept to what would let an installer test pass when it
// should fail: a dialog no rule answers, a rule used up, a text that only nearly matches, a
// button a dialog lacks, buttons other than the rule's, a folder tree that only nearly
// matches. What the support does right is shown by every other end-to-end test; these show
// that it also says when things are wrong.
#include "E2ESupport.h"

#include <gtest/gtest.h>

#include <windows.h>

namespace
{
e2e::RunResult ShowBox(const std::wstring& arguments, std::vector<e2e::DialogRule> rules)
{
    return e2e::ProgramDriver(
               {.program = e2e::ToolPath(L"ShowBox.exe"), .commandLine = arguments, .rules = std::move(rules), .timeoutMs = 30000})
        .Run();
}

TEST(Driver, ADialogNoRuleAnswersFailsTheRun)
{
    struct Row
    {
        const char* name;
        const wchar_t* arguments;
        e2e::DialogRule rule;
        e2e::RunOutcome outcome;
        size_t dialogs;
    } rows[] = {
        {"text differs", L"\"Install Error\" \"Something broke.\" MB_OK",
         {.title = L"Install Error", .text = L"Something else.", .button = IDOK}, e2e::RunOutcome::UnexpectedDialog, 1},
        {"rule used up", L"/Count 2 Question \"Again?\" MB_YESNO",
         {.title = L"Question", .text = L"Again?", .button = IDYES, .times = 1}, e2e::RunOutcome::UnexpectedDialog, 2},
        {"no such button", L"Question \"Continue?\" MB_YESNO",
         {.title = L"Question", .text = L"Continue?", .button = IDRETRY}, e2e::RunOutcome::NoSuchButton, 1},
        {"other buttons", L"Question \"Continue?\" MB_YESNO",
         {.title = L"Question", .text = L"Continue?", .button = IDYES, .buttons = {L"Yes"}}, e2e::RunOutcome::UnexpectedDialog, 1},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        const e2e::RunResult run = ShowBox(row.arguments, {row.rule});
        EXPECT_EQ(run.outcome, row.outcome) << run.Describe();
        ASSERT_EQ(run.dialogs.size(), row.dialogs) << run.Describe();
        EXPECT_TRUE(run.dialogs.back().pressed.empty());
        // The box's program was ended, not left waiting for an answer.
        EXPECT_TRUE(e2e::ListTopLevelWindows(run.processId, true).empty());
    }
}

TEST(Driver, TextsMatchOnlyByTheirKind)
{
    struct Case { const wchar_t* actual; const wchar_t* expected; e2e::TextMatch match; bool result; };
    const Case cases[] = {
        {L"Line one.\r\nLine two.", L"Line one.\r\nLine two.", e2e::TextMatch::Exact, true},
        {L"Line one.\r\nLine two.", L"Line one.\nLine two.", e2e::TextMatch::Exact, false},
        {L"Abc", L"abc", e2e::TextMatch::Exact, false},
        {L"Abc", L"Ab", e2e::TextMatch::Exact, false},
        {L"Install", L"Install Wizard", e2e::TextMatch::StartsWith, false},
        {L"", L"x", e2e::TextMatch::Contains, false},
    };
    for (const Case& c : cases)
        EXPECT_EQ(e2e::TextMatches(c.actual, c.expected, c.match), c.result) << e2e::Utf8(c.actual);
}

TEST(FolderTree, ComparisonReportsMissingAndExtraEntries)
{
    const std::wstring folder = e2e::ScratchFolder(L"FolderTree");
    ASSERT_TRUE(e2e::WriteFileBytes(folder + L"Sonora.exe", "x"));
    ASSERT_TRUE(e2e::WriteFileBytes(folder + L"Data\\Default Art\\Application.ico", "x"));
    ASSERT_TRUE(e2e::WriteFileBytes(folder + L"Leftover.dll", "x"));
    // Case and slash direction don't matter, as on Windows.
    const e2e::TreeDifference diff =
        e2e::CompareTree(folder, {L"sonora.EXE", L"Data/Default Art/Application.ico", L"License.txt"});
    EXPECT_EQ(diff.missing, std::vector<std::wstring>{L"License.txt"});
    EXPECT_EQ(diff.extra, std::vector<std::wstring>{L"Leftover.dll"});
    EXPECT_FALSE(e2e::TreeMatches(folder, {L"Sonora.exe"}));
}
}

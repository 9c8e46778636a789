#include "install/CFinishRules.h"

#include <gtest/gtest.h>

namespace
{
using Box = CFinishRules::Box;
using Leave = CFinishRules::Leave;

TEST(CFinishRules, TheShellExtensionInTheJournalNeedsARestart)
{
    const struct
    {
        bool flag;
        std::vector<HVString> files, registrations;
        bool needed;
    } cases[] = {
        {false, {}, {}, false},
        {true, {}, {}, true},
        {false, {u"C:\\P\\Data\\Startup Tips.txt|_DELETEFILE"}, {}, false},
        {false, {u"C:\\P\\Old\\HVSHELLEXT.DLL|_DELETEFILE"}, {}, true},
        {false, {u"C:\\P\\Setup\\HVShellExt.dll|C:\\P\\HVShellExt.dll"}, {}, true},
        {false, {}, {u"C:\\P\\HVShellExt.dll|_REGISTERFILE"}, true},
        {false, {}, {u"C:\\P\\Plugins\\SampleShell.dll|_REGISTERFILE"}, false},
    };
    for (const auto& c : cases)
        EXPECT_EQ(CFinishRules::RestartNeeded(c.flag, c.files, c.registrations), c.needed)
            << (c.files.empty() ? c.registrations.empty() ? "" : c.registrations[0].ToUtf8() : c.files[0].ToUtf8());
}

TEST(CFinishRules, ChoiceBoxAndLeaving)
{
    const struct
    {
        bool restart, noRun;
        int proposed;
        Box box;
    } pages[] = {
        {true, false, CFinishRules::kRestart, Box::Restart},
        {true, true, CFinishRules::kRestart, Box::Restart},
        {false, false, CFinishRules::kRun, Box::Run},
        {false, true, CFinishRules::kNothing, Box::None},
    };
    for (const auto& p : pages) {
        EXPECT_EQ(CFinishRules::PrepareChoice(p.restart, p.noRun), p.proposed);
        EXPECT_EQ(CFinishRules::BoxShown(p.restart, p.noRun), p.box);
    }
    EXPECT_EQ(CFinishRules::ChoiceOnFinish(Box::Restart, true), CFinishRules::kRestart);
    EXPECT_EQ(CFinishRules::ChoiceOnFinish(Box::Restart, false), CFinishRules::kNothing);
    EXPECT_EQ(CFinishRules::ChoiceOnFinish(Box::Run, true), CFinishRules::kRun);
    EXPECT_EQ(CFinishRules::ChoiceOnFinish(Box::None, true), CFinishRules::kNothing);

    EXPECT_EQ(CFinishRules::LeaveAction(true, CFinishRules::kRestart), Leave::Now);
    EXPECT_EQ(CFinishRules::LeaveAction(true, CFinishRules::kRun), Leave::Now);
    EXPECT_EQ(CFinishRules::LeaveAction(false, CFinishRules::kRun), Leave::HandOver);
    EXPECT_EQ(CFinishRules::LeaveAction(false, CFinishRules::kRestart), Leave::ConfirmRestart);
    EXPECT_EQ(CFinishRules::LeaveAction(false, CFinishRules::kNothing), Leave::Now);
}
}

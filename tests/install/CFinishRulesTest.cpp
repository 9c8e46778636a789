#include "install/CFinishRules.h"

#include <gtest/gtest.h>

namespace
{
TEST(CFinishRules, TheShellExtensionInTheJournalNeedsARestart)
{
    const struct { bool flag; std::vector<HVString> files, registrations; bool needed; } cases[] = {
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

// The box shows unless /NoRun; an answer file may start the run box unchecked.
TEST(CFinishRules, TheFirstChoiceFollowsRestartNoRunAndTheAnswer)
{
    using Box = CFinishRules::Box;
    const struct { bool restart, noRun, runWanted; int choice; Box box; } cases[] = {
        {true, true, false, CFinishRules::kRestart, Box::Restart}, {false, false, true, CFinishRules::kRun, Box::Run},
        {false, false, false, CFinishRules::kNothing, Box::Run},    {false, true, true, CFinishRules::kNothing, Box::None},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(CFinishRules::PrepareChoice(c.restart, c.noRun, c.runWanted), c.choice);
        EXPECT_EQ(CFinishRules::BoxShown(c.restart, c.noRun), c.box);
    }
}
}

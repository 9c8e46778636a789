#include "product/CWizardRules.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

namespace
{
// Flags of InstallOptions that the skip tests read, as one line of a table.
struct Flags
{
    bool silent = false, upgrade = false, express = false, autoInstall = false, portable = false, earlier = false;
};

InstallOptions Options(const Flags& f)
{
    InstallOptions o;
    o.silent = f.silent;
    o.upgrade = f.upgrade;
    o.express = f.express;
    o.autoInstall = f.autoInstall;
    o.portable = f.portable;
    o.earlierInstallationFound = f.earlier;
    return o;
}

struct SkipRow
{
    const char* name;
    Flags flags;
    bool feature173;
    int finishState;
    // Expected skips: setup type, custom setup type, destination, file associations, shortcuts, finish.
    bool setupType, custom, destination, associations, shortcuts, finish;
    bool expressAfter;  // express after the setup type's skip test ran
};

const SkipRow kSkipRows[] = {
    // name                          silent upg   expr   auto   port   earlier  173   fin  st     cust   dest   assoc  short  fin    expr
    {"plain first install",         {false, false, false, false, false, false}, true, 0, false, false, false, false, false, false, false},
    {"silent",                      {true, false, false, false, false, false}, true, 0, true, true, true, true, true, true, false},
    {"upgrade takes express",       {false, true, false, false, false, false}, true, 2, true, true, true, false, true, true, true},
    {"upgrade over earlier",        {false, true, false, false, false, true}, true, 0, true, true, true, true, true, false, true},
    {"auto install",                {false, false, true, true, false, false}, true, 1, true, true, true, false, true, false, true},
    {"auto install before upgrade", {false, true, false, true, false, false}, true, 0, true, false, false, false, false, false, false},
    {"express chosen",              {false, false, true, false, false, false}, true, 2, false, true, true, false, true, true, true},
    {"custom, normal",              {false, false, false, false, false, false}, true, 2, false, false, false, false, false, false, false},
    {"custom, portable",            {false, false, false, false, true, false}, true, 0, false, false, false, true, true, false, false},
    {"portable over earlier",       {false, false, false, false, true, true}, true, 0, false, false, false, true, true, false, false},
    {"custom over earlier",         {false, false, false, false, false, true}, true, 0, false, false, true, false, false, false, false},
    {"feature 173 absent",          {false, false, false, false, false, false}, false, 0, false, true, false, false, false, false, false},
    {"express over earlier",        {false, false, true, false, false, true}, true, 0, false, true, true, true, true, false, true},
};

TEST(CWizardRulesTest, SkipTestsFollowTheOptions)
{
    for (const SkipRow& row : kSkipRows) {
        SCOPED_TRACE(row.name);
        InstallOptions o = Options(row.flags);
        EXPECT_EQ(CWizardRules::SkipSetupType(o), row.setupType);
        EXPECT_EQ(o.express, row.expressAfter);
        // The later pages see what the setup-type page's test left, as in a run.
        const InstallOptions& p = o;
        EXPECT_EQ(CWizardRules::SkipCustomSetupType(p, row.feature173), row.custom);
        EXPECT_EQ(CWizardRules::SkipDestination(p), row.destination);
        EXPECT_EQ(CWizardRules::SkipFileAssociations(p), row.associations);
        EXPECT_EQ(CWizardRules::SkipShortcuts(p), row.shortcuts);
        EXPECT_EQ(CWizardRules::SkipFinish(p, row.finishState), row.finish);
    }
}

// A page as the rules see it, counting what was asked of it.
struct FakeStep : IWizardStep
{
    std::function<bool()> skip = [] { return false; };
    std::function<bool()> leave = [] { return true; };
    int prepared = 0;
    int checked = 0;
    bool SkipTest() override { return skip(); }
    void Prepare() override { ++prepared; }
    bool LeaveCheck() override
    {
        ++checked;
        return leave();
    }
};

TEST(CWizardRulesTest, EnterTestRunsTheLeaveCheckOnlyForSkippedPages)
{
    struct Row { bool skip, leavePasses; bool shown, expressAfter; int prepared, checked; } rows[] = {
        {false, true, true, true, 0, 0},   // shown: prepare comes with showing, not with the test
        {false, false, true, true, 0, 0},
        {true, true, false, true, 1, 1},   // passed over on its defaults
        {true, false, true, false, 1, 1},  // defaults refused: shown after all, no longer Express
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(testing::Message() << "skip " << row.skip << " leave " << row.leavePasses);
        FakeStep step;
        step.skip = [&] { return row.skip; };
        step.leave = [&] { return row.leavePasses; };
        InstallOptions o;
        o.express = true;
        EXPECT_EQ(CWizardRules::EnterTest(step, o), row.shown);
        EXPECT_EQ(o.express, row.expressAfter);
        EXPECT_EQ(step.prepared, row.prepared);
        EXPECT_EQ(step.checked, row.checked);
    }
}

TEST(CWizardRulesTest, CancelIsConfirmedBeforeTheCopyPageAndRefusedFromIt)
{
    for (int position = 1; position <= 8; ++position) {
        SCOPED_TRACE(position);
        EXPECT_EQ(CWizardRules::Cancel(position),
                  position <= 4 ? CWizardRules::CancelAction::Confirm : CWizardRules::CancelAction::Refuse);
    }
}

TEST(CWizardRulesTest, WelcomeStartDecidesTheCountdown)
{
    using W = CWizardRules::WelcomeStart;
    struct Row { Flags flags; bool offered; uint32_t value; W expected; } rows[] = {
        {{.silent = true}, true, 1, W::MoveOn},
        {{.upgrade = true}, false, 1, W::MoveOn},   // the value stays untouched
        {{}, false, 1, W::ForgetAutoInstall},
        {{}, false, 0, W::ForgetAutoInstall},
        {{}, true, 1, W::StartCountdown},
        {{}, true, 7, W::StartCountdown},
        {{}, true, 0, W::Wait},
    };
    for (const Row& row : rows) {
        InstallOptions o = Options(row.flags);
        EXPECT_EQ(CWizardRules::OnWelcomeStart(o, row.offered, row.value), row.expected)
            << "silent " << row.flags.silent << " upgrade " << row.flags.upgrade << " offered " << row.offered
            << " value " << row.value;
    }
}
}   // namespace

#include "product/CWizardRules.h"

#include "CountingWizardStep.h"
#include "OptionsOf.h"

#include <gtest/gtest.h>

namespace
{
struct SkipRow
{
    const char* name;
    InstallOptions options;   // what the run knows before the setup-type page
    bool feature173;
    int finishState;
    // Expected skips: setup type, custom setup type, destination, file associations, shortcuts, finish.
    bool setupType, custom, destination, associations, shortcuts, finish;
    bool expressAfter;  // express after the setup type's skip test ran
};

const SkipRow kSkipRows[] = {
    {"plain first install", {}, true, 0, false, false, false, false, false, false, false},
    {"silent", OptionsOf("silent"), true, 0, true, true, true, true, true, true, false},
    {"upgrade takes express", OptionsOf("upgrade"), true, 2, true, true, true, false, true, true, true},
    {"upgrade over earlier", OptionsOf("upgrade earlier"), true, 0, true, true, true, true, true, false, true},
    {"auto install", OptionsOf("express auto"), true, 1, true, true, true, false, true, false, true},
    {"auto install before upgrade", OptionsOf("upgrade auto"), true, 0, true, false, false, false, false, false, false},
    {"express chosen", OptionsOf("express"), true, 2, false, true, true, false, true, true, true},
    {"custom, normal", {}, true, 2, false, false, false, false, false, false, false},
    {"custom, portable", OptionsOf("portable"), true, 0, false, false, false, true, true, false, false},
    {"portable over earlier", OptionsOf("portable earlier"), true, 0, false, false, false, true, true, false, false},
    {"custom over earlier", OptionsOf("earlier"), true, 0, false, false, true, false, false, false, false},
    {"feature 173 absent", {}, false, 0, false, true, false, false, false, false, false},
    {"express over earlier", OptionsOf("express earlier"), true, 0, false, true, true, true, true, false, true},
};

TEST(CWizardRulesTest, SkipTestsFollowTheOptions)
{
    for (const SkipRow& row : kSkipRows) {
        SCOPED_TRACE(row.name);
        InstallOptions o = row.options;
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
        CountingWizardStep step;
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

TEST(CWizardRulesTest, WelcomeStartDecidesTheCountdown)
{
    using W = CWizardRules::WelcomeStart;
    struct Row { InstallOptions options; bool offered; uint32_t value; W expected; } rows[] = {
        {OptionsOf("silent"), true, 1, W::MoveOn},
        {OptionsOf("upgrade"), false, 1, W::MoveOn},   // the value stays untouched
        {{}, false, 1, W::ForgetAutoInstall},
        {{}, false, 0, W::ForgetAutoInstall},
        {{}, true, 1, W::StartCountdown},
        {{}, true, 7, W::StartCountdown},
        {{}, true, 0, W::Wait},
    };
    for (const Row& row : rows)
        EXPECT_EQ(CWizardRules::OnWelcomeStart(row.options, row.offered, row.value), row.expected)
            << "silent " << row.options.silent << " upgrade " << row.options.upgrade << " offered " << row.offered
            << " value " << row.value;
}
}   // namespace

#include "engine/CInstallSequence.h"

#include "VirtualInstallPage.h"

#include <gtest/gtest.h>

#include <vector>

namespace
{
// effectiveMs: the slideshow's length after the floors; expectedTicks -1: "Finalizing
// installation..." never shown.
TEST(CInstallSequenceTest, EveryPictureIsShownForItsTimeBeforeTheWizardMovesOn)
{
    const struct { const char* name; int32_t promoCount, promoMs, copyMs; bool skip; int32_t effectiveMs, expectedTicks;
                   bool copies; } rows[] = {
        {"fast install waits for the slideshow", 2, 1500, 0, false, 1500, 5, true},
        {"count 0 and a short time count as 1 and 1000 ms", 0, 10, 0, false, 1000, 4, true},
        {"one picture still to come when finalizing", 3, 3000, 1500, false, 3000, 7, true},
        {"slideshow over during a long copy: no finalizing", 2, 1500, 5000, false, 5000, -1, true},
        {"installed files kept: no copy, still the whole slideshow", 4, 2000, 0, true, 2000, 7, false},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        VirtualInstallPage page;
        page.copyMs = row.copyMs;
        page.skip = row.skip;
        CInstallSequence sequence(page, row.promoCount, row.promoMs);
        page.Run(sequence);

        ASSERT_TRUE(sequence.SequenceFinished());
        EXPECT_GE(page.finishedAt, row.effectiveMs);
        EXPECT_LT(page.finishedAt, row.effectiveMs + CInstallSequence::kWaitTickMs + 10);
        EXPECT_EQ(page.finalizingTicks, row.expectedTicks);
        EXPECT_EQ(page.copied, row.copies);
        EXPECT_EQ(page.pluginsRun, row.copies);
        std::vector<int32_t> all;
        for (int32_t n = 1; n <= sequence.PromoCount(); ++n)
            all.push_back(n);
        EXPECT_EQ(page.images, all);
        // The bar never runs past its range while waiting.
        if (row.expectedTicks >= 0) {
            EXPECT_LE(page.waitTicks, row.expectedTicks);
        }
    }
}

TEST(CInstallSequenceTest, AStoppedDependencyStepEndsTheChain)
{
    VirtualInstallPage page;
    page.dependenciesOk = false;
    CInstallSequence sequence(page, 1, 1000);
    page.Run(sequence);
    EXPECT_FALSE(page.copied);
    EXPECT_EQ(page.finishedAt, -1);
    EXPECT_FALSE(sequence.SequenceFinished());
}

TEST(CInstallSequenceTest, MulDivRoundsHalfAwayFromZero)
{
    struct { int32_t a, b, c, expected; } rows[] = {
        {1500, 2, 2, 1500}, {1000, 1, 3, 333}, {2, 1, 3, 1}, {1, 1, 2, 1}, {-1, 1, 2, -1},
        {7, -3, 2, -11}, {5, 1, 0, -1}, {0x40000000, 4, 2, -1}, {0x40000000, 2, 2, 0x40000000},
    };
    for (const auto& r : rows)
        EXPECT_EQ(CInstallSequence::MulDiv(r.a, r.b, r.c), r.expected) << r.a << "*" << r.b << "/" << r.c;
}

TEST(CInstallSequenceTest, OnlyANewerInstalledProgramIsKept)
{
    const CVersionInfo older(32, 0, 0, 9), setup(32, 0, 1, 0), newer(32, 1, 0, 0);
    struct { bool allowDowngrade, found; CVersionInfo installed; bool skip; } rows[] = {
        {false, true, newer, true},  {false, true, setup, false}, {false, true, older, false},
        {true, true, newer, false},  {false, false, newer, false},
    };
    for (const auto& r : rows)
        EXPECT_EQ(CInstallSequence::SkipInstall(r.allowDowngrade, r.found, r.installed, setup), r.skip)
            << r.allowDowngrade << r.found << r.installed.GetText().ToUtf8();
}
} // namespace

#include "engine/CInstallSequence.h"

#include <gtest/gtest.h>

#include <map>
#include <vector>

namespace
{
// The page on a virtual clock: timers fire in time order and re-arm as Windows timers do;
// a step that "takes" time lets due timers fire meanwhile, as draining the queue does.
class VirtualPage : public IInstallSequenceHost
{
public:
    int32_t dependencyMs = 0, copyMs = 0;
    bool dependenciesOk = true, skip = false;

    int64_t now = 0;
    int64_t finishedAt = -1;
    bool copied = false, pluginsRun = false;
    int32_t finalizingTicks = -1, waitTicks = 0;
    std::vector<int32_t> images;

    void Run(CInstallSequence& sequence)
    {
        sequence_ = &sequence;
        sequence.Start();
        while (!due_.empty() && now < 600000)
            FireNext();
    }

    void SetTimer(int32_t id, int32_t ms) override { due_[id] = {now + ms, ms}; }
    void KillTimer(int32_t id) override { due_.erase(id); }
    void ShowImage(int32_t n) override { images.push_back(n); }
    bool RunDependencies() override { Spend(dependencyMs); return dependenciesOk; }
    bool RunCopy() override { copied = true; Spend(copyMs); return true; }
    bool RunPlugins() override { return pluginsRun = true; }
    bool SkipInstall() override { return skip; }
    void BeginFinalizing(int32_t ticks) override { finalizingTicks = ticks; }
    void WaitTick() override { ++waitTicks; }
    void Finish() override { finishedAt = now; }

private:
    struct Timer { int64_t due; int32_t period; };

    void FireNext()
    {
        auto next = due_.begin();
        for (auto it = due_.begin(); it != due_.end(); ++it)
            if (it->second.due < next->second.due)
                next = it;
        const int32_t id = next->first;
        now = next->second.due;
        next->second.due = now + next->second.period;
        EXPECT_TRUE(sequence_->OnTimer(id));
    }

    void Spend(int32_t ms)
    {
        const int64_t end = now + ms;
        while (true) {
            auto it = due_.find(CInstallSequence::kSlideshowTimer);
            if (it == due_.end() || it->second.due > end)
                break;
            FireNext();
        }
        now = end;
    }

    std::map<int32_t, Timer> due_;
    CInstallSequence* sequence_ = nullptr;
};

// effectiveMs: the slideshow's length after the floors; expectedTicks -1: "Finalizing
// installation..." never shown.
TEST(CInstallSequenceTest, EveryPictureIsShownForItsTimeBeforeTheWizardMovesOn)
{
    const struct
    {
        const char* name;
        int32_t promoCount, promoMs, dependencyMs, copyMs;
        bool skip;
        int32_t effectiveMs, expectedTicks;
        bool copies;
    } rows[] = {
        {"fast install waits for the slideshow", 2, 1500, 0, 0, false, 1500, 5, true},
        {"count 0 and a short time count as 1 and 1000 ms", 0, 10, 0, 0, false, 1000, 4, true},
        {"one picture still to come when finalizing", 3, 3000, 0, 1500, false, 3000, 7, true},
        {"slideshow over during a long copy: no finalizing", 2, 1500, 0, 5000, false, 5000, -1, true},
        {"installed files kept: no copy, still the whole slideshow", 4, 2000, 0, 0, true, 2000, 7, false},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        VirtualPage page;
        page.dependencyMs = row.dependencyMs;
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
    VirtualPage page;
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

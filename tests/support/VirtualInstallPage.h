#pragma once

// The copy page as the install sequence drives it, on a virtual clock: timers fire in time
// order and re-arm as Windows timers do; a step that "takes" time lets the slideshow's timer
// fire meanwhile, as draining the queue does. It keeps what the sequence did to it.
// Header-only, so the native core tests and the Windows test programs share it.
//
//   VirtualInstallPage page;
//   page.copyMs = 5000;
//   CInstallSequence sequence(page, 2, 1500);
//   page.Run(sequence);   // until no timer is left, or ten virtual minutes
//   EXPECT_EQ(page.finalizingTicks, -1);

#include "engine/CInstallSequence.h"

#include <gtest/gtest.h>

#include <map>
#include <vector>

class VirtualInstallPage : public IInstallSequenceHost
{
public:
    // How the steps behave.
    int32_t dependencyMs = 0, copyMs = 0;
    bool dependenciesOk = true, skip = false;

    // What the sequence did: virtual milliseconds, -1 for never.
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
        // The sequence owns every timer it set.
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

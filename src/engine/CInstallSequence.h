#pragma once

#include "engine/IInstallSequenceHost.h"
#include "foundation/CVersionInfo.h"
#include "foundation/HVString.h"

#include <cstdint>
#include <vector>

// The chain of install steps behind the copy-and-install page, and its slideshow. Steps run
// from timers on the page's own thread, one after another: 0 dependencies, 1 copy and
// register, 2 plug-ins, 3 finalizing, 4 waiting for the slideshow (every 333 ms), 5 done.
// Each step is started by a 1 ms timer that its handler kills first, so it runs once and from
// the message loop; the slideshow's own timer (100) keeps firing while a step drains the
// queue, which is why a fast install still shows every picture for its time.
class CInstallSequence
{
public:
    enum Step : int32_t
    {
        kDependencies = 0,
        kCopy = 1,
        kPlugins = 2,
        kFinalizing = 3,
        kWaiting = 4,
        kDone = 5,
    };
    static constexpr int32_t kSlideshowTimer = 100;
    static constexpr int32_t kWaitTickMs = 333;
    static constexpr int32_t kMinimumPromoMilliseconds = 1000;

    // Values from the install description: "PromoCount" below 1 counts as 1,
    // "PromoMinimumMilliseconds" below 1000 as 1000.
    CInstallSequence(IInstallSequenceHost& host, int32_t promoCount, int32_t promoMinimumMs);

    // Activation: the first picture, the slideshow timer, then step 0.
    void Start();
    // False for a timer that is not the sequence's.
    bool OnTimer(int32_t id);

    int32_t StepNumber() const { return step_; }
    int32_t CurrentImage() const { return image_; }
    int32_t PromoCount() const { return promoCount_; }
    int32_t PromoMinimumMs() const { return promoMinimumMs_; }
    int32_t SlideIntervalMs() const { return promoMinimumMs_ / promoCount_; }
    bool SlideshowFinished() const { return slideshowFinished_; }
    bool SequenceFinished() const { return sequenceFinished_; }
    // The finalizing wait in 333 ms ticks, for the pictures still to come.
    int32_t FinalizingTicks() const;

    // a * b / c rounded half away from zero; -1 when c is 0 or the result overflows.
    static int32_t MulDiv(int32_t a, int32_t b, int32_t c);
    // The files need not be installed again when an installation was found at the destination,
    // downgrades are not allowed, and the installed program is newer than this setup's (its
    // four version numbers compared in turn). The same version is installed again, which
    // repairs an installation.
    static bool SkipInstall(bool allowDowngrade, bool installationFound, const CVersionInfo& installed,
                            const CVersionInfo& setup);
    // Picture `number` in the order it is looked for: "Setup\Promo%d - <language>.png", ".jpg",
    // then "Setup\Promo%d.png", ".jpg" (setupFolder ends in a backslash).
    static std::vector<HVString> PromoCandidates(const HVString& setupFolder, int32_t number, const HVString& language);

private:
    void Advance();
    void OnSlideTimer();
    void RunStep(int32_t step);

    IInstallSequenceHost& host_;
    int32_t promoCount_;
    int32_t promoMinimumMs_;
    int32_t step_ = 0;
    int32_t image_ = 1;
    bool slideshowFinished_ = false;
    bool sequenceFinished_ = false;
};

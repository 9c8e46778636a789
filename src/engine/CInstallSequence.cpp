#include "engine/CInstallSequence.h"

#include "foundation/HVLog.h"

#include <algorithm>
#include <cstdlib>
#include <limits>

CInstallSequence::CInstallSequence(IInstallSequenceHost& host, int32_t promoCount, int32_t promoMinimumMs)
    : host_(host), promoCount_(std::max(promoCount, 1)),
      promoMinimumMs_(std::max(promoMinimumMs, kMinimumPromoMilliseconds))
{
}

void CInstallSequence::Start()
{
    host_.ShowImage(image_);
    host_.SetTimer(kSlideshowTimer, SlideIntervalMs());
    Advance();
}

void CInstallSequence::Advance()
{
    if (step_ == kCopy && host_.SkipInstall()) {
        HVLog::Write(HVLog::kInfo, "CInstallSequence::Advance", u"The installed files are kept: copy and plug-ins left out");
        step_ = kFinalizing;
    }
    host_.SetTimer(step_, 1);
    ++step_;
}

bool CInstallSequence::OnTimer(int32_t id)
{
    if (id == kSlideshowTimer) {
        OnSlideTimer();
        return true;
    }
    if (id < kDependencies || id > kDone)
        return false;
    host_.KillTimer(id);
    RunStep(id);
    return true;
}

void CInstallSequence::OnSlideTimer()
{
    if (image_ == promoCount_) {
        host_.KillTimer(kSlideshowTimer);
        slideshowFinished_ = true;
        return;
    }
    host_.ShowImage(++image_);
}

void CInstallSequence::RunStep(int32_t step)
{
    switch (step) {
    case kDependencies:
        if (host_.RunDependencies())
            Advance();
        break;
    case kCopy:
        if (host_.RunCopy())
            Advance();
        break;
    case kPlugins:
        if (host_.RunPlugins())
            Advance();
        break;
    case kFinalizing:
        if (!slideshowFinished_)
            host_.BeginFinalizing(FinalizingTicks());
        Advance();
        break;
    case kWaiting:
        if (slideshowFinished_) {
            Advance();
        } else {
            host_.SetTimer(kWaiting, kWaitTickMs);
            host_.WaitTick();
        }
        break;
    case kDone:
        sequenceFinished_ = true;
        host_.Finish();
        break;
    default:
        break;
    }
}

int32_t CInstallSequence::FinalizingTicks() const
{
    const int32_t remainingImages = promoCount_ - image_ + 1;
    const int32_t remainingMs = MulDiv(promoMinimumMs_, remainingImages, promoCount_);
    return remainingMs / kWaitTickMs + 1;
}

int32_t CInstallSequence::MulDiv(int32_t a, int32_t b, int32_t c)
{
    if (c == 0)
        return -1;
    const int64_t product = int64_t(a) * b;
    const bool negative = (product < 0) != (c < 0);
    const uint64_t magnitude = product < 0 ? uint64_t(-product) : uint64_t(product);
    const uint64_t divisor = c < 0 ? uint64_t(-int64_t(c)) : uint64_t(c);
    const uint64_t quotient = (magnitude + divisor / 2) / divisor;
    if (quotient > uint64_t(std::numeric_limits<int32_t>::max()))
        return -1;
    return negative ? -int32_t(quotient) : int32_t(quotient);
}

bool CInstallSequence::SkipInstall(bool allowDowngrade, bool installationFound, const CVersionInfo& installed,
                                   const CVersionInfo& setup)
{
    if (allowDowngrade || !installationFound)
        return false;
    return installed > setup;
}

std::vector<HVString> CInstallSequence::PromoCandidates(const HVString& setupFolder, int32_t number,
                                                         const HVString& language)
{
    return {
        HVString::Format(u"%sSetup\\Promo%d - %s.png", setupFolder, number, language),
        HVString::Format(u"%sSetup\\Promo%d - %s.jpg", setupFolder, number, language),
        HVString::Format(u"%sSetup\\Promo%d.png", setupFolder, number),
        HVString::Format(u"%sSetup\\Promo%d.jpg", setupFolder, number),
    };
}

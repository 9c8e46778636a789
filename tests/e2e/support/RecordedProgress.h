#pragma once

#include "engine/IInstallProgress.h"

#include <utility>
#include <vector>

namespace e2e
{
// Takes the place of the copy-and-install page for engine routines and keeps what they report.
class RecordedProgress : public IInstallProgress
{
public:
    void SetStatusText(const HVString& text) override { statuses.push_back(text); }
    void SetProgressRange(int32_t minimum, int32_t maximum) override { range = {minimum, maximum}; }
    void SetProgressPosition(int32_t position) override { positions.push_back(position); }
    void DrainMessages() override { ++drains; }

    std::vector<HVString> statuses;
    std::pair<int32_t, int32_t> range;
    std::vector<int32_t> positions;
    int drains = 0;
};
}

#pragma once

#include <chrono>
#include <cstdint>

// Logs "Start" when made and, when it goes out of scope, "Finish (result: %d) (%d ms)" or,
// while no result was set, "Finish (%d ms)".
class HVLogTimer
{
public:
    static constexpr int32_t kNoResult = static_cast<int32_t>(0x8A33F231);

    explicit HVLogTimer(const char* source, int level = 3);
    ~HVLogTimer();
    HVLogTimer(const HVLogTimer&) = delete;
    HVLogTimer& operator=(const HVLogTimer&) = delete;

    void SetResult(int32_t result) { result_ = result; }
    int32_t GetResult() const { return result_; }
    int64_t ElapsedMilliseconds() const;

private:
    const char* source_;
    int level_;
    int32_t result_ = kNoResult;
    std::chrono::steady_clock::time_point start_;
};

#pragma once

#include "foundation/IHVStringManager.h"

// The process-wide heap manager used by every HVString that is not given another one.
class HVDefaultStringManager final : public IHVStringManager
{
public:
    static HVDefaultStringManager& Instance();

    HVStringData* Allocate(int32_t capacity) override;
    void Free(HVStringData* data) override;
    HVStringData* Reallocate(HVStringData* data, int32_t capacity) override;
    HVStringData* GetNil() override;

private:
    HVDefaultStringManager() = default;
};

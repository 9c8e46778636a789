#pragma once

#include "foundation/HVStringData.h"

// Owns the memory of string buffers. Every buffer remembers its manager, so a string made by
// one manager is freed by the same one whichever thread drops the last reference.
class IHVStringManager
{
public:
    // A buffer for at least `capacity` characters: length 0, one reference, terminated.
    // Returns nullptr when the memory can't be had.
    virtual HVStringData* Allocate(int32_t capacity) = 0;
    virtual void Free(HVStringData* data) = 0;
    // Grows an unshared buffer in place or by moving it; keeps the characters and the length.
    virtual HVStringData* Reallocate(HVStringData* data, int32_t capacity) = 0;
    // The shared empty buffer (static: never counted or freed).
    virtual HVStringData* GetNil() = 0;

protected:
    ~IHVStringManager() = default;
};

#pragma once

#include "foundation/win/HVUniqueResource.h"

#include <windows.h>

#include <cstdint>
#include <functional>

// The shared memory and the named lock that carry posted strings to one command-target window,
// named after that window so that sender and receiver find the same pair. Either side may make
// them; the block is set up when first seen without its magic (HVPostStringRing).
class HVPostStringBlock
{
public:
    bool Open(HWND target);
    // Runs `use` on the block while holding the lock; false when the block isn't open or the
    // lock can't be had within a few seconds (a holder that hangs must not hang us too).
    bool Locked(const std::function<void(uint8_t* block)>& use);

private:
    HVHandle mapping_;
    HVHandle lock_;
    HVMappedView view_;
};

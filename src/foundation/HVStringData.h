#pragma once

#include <atomic>
#include <cstdint>

class IHVStringManager;

// The header that precedes the characters of every HVString buffer. The characters (and a
// terminating zero) follow the header directly in the same allocation.
//
// Reference count meanings:
//   kStaticRefs  a buffer that is never counted or freed (the shared empty string, constants);
//   kLockedRefs  a buffer locked for writing by its one owner: never shared, copying it copies
//                the characters, releasing it frees it outright;
//   n >= 1       n owners; copies increment, releases decrement, the last frees it through its
//                manager.
struct HVStringData
{
    static constexpr int32_t kStaticRefs = 0x7FFFFC17;   // 2147482647
    static constexpr int32_t kLockedRefs = -1;

    IHVStringManager* manager;
    int32_t length;     // characters, without the terminating zero
    int32_t capacity;   // characters that fit, without the terminating zero
    std::atomic<int32_t> refs;

    char16_t* Chars() { return reinterpret_cast<char16_t*>(this + 1); }
    const char16_t* Chars() const { return reinterpret_cast<const char16_t*>(this + 1); }

    bool IsStatic() const { return refs.load(std::memory_order_relaxed) == kStaticRefs; }
    bool IsLocked() const { return refs.load(std::memory_order_relaxed) == kLockedRefs; }
    bool IsShared() const
    {
        const int32_t r = refs.load(std::memory_order_acquire);
        return r > 1;   // kStaticRefs counts as shared too: nobody may write into it
    }

    void AddRef() { refs.fetch_add(1, std::memory_order_relaxed); }
    void Release();
};

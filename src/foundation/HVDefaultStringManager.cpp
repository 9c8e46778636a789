#include "foundation/HVDefaultStringManager.h"

#include <cstdlib>
#include <new>

namespace
{
// The empty buffer lives in static storage: header followed by one zero character.
struct NilBuffer
{
    HVStringData header;
    char16_t zero[2];
};

size_t BytesFor(int32_t capacity)
{
    return sizeof(HVStringData) + (static_cast<size_t>(capacity) + 1) * sizeof(char16_t);
}

// Buffers grow in steps so that appending one character at a time stays linear.
int32_t RoundCapacity(int32_t capacity)
{
    if (capacity < 8)
        return 8;
    const int64_t rounded = (static_cast<int64_t>(capacity) + 15) & ~int64_t{15};
    return rounded > INT32_MAX - 64 ? capacity : static_cast<int32_t>(rounded);
}
}   // namespace

void HVStringData::Release()
{
    const int32_t r = refs.load(std::memory_order_relaxed);
    if (r == kStaticRefs)
        return;
    if (r == kLockedRefs) {
        manager->Free(this);
        return;
    }
    if (refs.fetch_sub(1, std::memory_order_acq_rel) == 1)
        manager->Free(this);
}

HVDefaultStringManager& HVDefaultStringManager::Instance()
{
    static HVDefaultStringManager manager;
    return manager;
}

HVStringData* HVDefaultStringManager::GetNil()
{
    static NilBuffer nil{{this, 0, 0, {HVStringData::kStaticRefs}}, {0, 0}};
    return &nil.header;
}

HVStringData* HVDefaultStringManager::Allocate(int32_t capacity)
{
    if (capacity < 0)
        return nullptr;
    capacity = RoundCapacity(capacity);
    void* memory = std::malloc(BytesFor(capacity));
    if (!memory)
        return nullptr;
    auto* data = new (memory) HVStringData{this, 0, capacity, {1}};
    data->Chars()[0] = 0;
    return data;
}

void HVDefaultStringManager::Free(HVStringData* data)
{
    if (!data || data == GetNil())
        return;
    data->~HVStringData();
    std::free(data);
}

HVStringData* HVDefaultStringManager::Reallocate(HVStringData* data, int32_t capacity)
{
    if (capacity < 0)
        return nullptr;
    capacity = RoundCapacity(capacity);
    // std::atomic is trivially copyable in practice but not formally; realloc would move it
    // bytewise, so move the header by hand instead.
    HVStringData* grown = Allocate(capacity);
    if (!grown)
        return nullptr;
    const int32_t length = data->length < capacity ? data->length : capacity;
    for (int32_t i = 0; i < length; ++i)
        grown->Chars()[i] = data->Chars()[i];
    grown->Chars()[length] = 0;
    grown->length = length;
    grown->refs.store(data->refs.load(std::memory_order_relaxed), std::memory_order_relaxed);
    Free(data);
    return grown;
}

#include "foundation/HVXMLRecordStore.h"

#include "foundation/HVLog.h"

#include <algorithm>
#include <cstring>

namespace
{
// Records that a store may hold: indexes are 32-bit and 0 means "none".
constexpr uint32_t kMaxRecords = 0xFFFF0000u;

size_t PageRecords(uint32_t capacity, size_t page)
{
    const uint64_t base = static_cast<uint64_t>(page) << HVXMLRecordStore::kPageShift;
    return static_cast<size_t>(std::min<uint64_t>(HVXMLRecordStore::kPageSize, capacity - base));
}
}   // namespace

bool HVXMLRecordStore::Reset(uint32_t expected)
{
    Clear();
    if (!Reserve(std::clamp<uint32_t>(expected, 1, kMaxRecords)))
        return false;
    count_ = 1;
    std::memset(&(*this)[0], 0, sizeof(HVXMLElementRecord));
    return true;
}

void HVXMLRecordStore::Clear()
{
    pages_.clear();
    count_ = 0;
    capacity_ = 0;
}

bool HVXMLRecordStore::Grow()
{
    if (capacity_ >= kMaxRecords)
        return false;
    // Half again as many, but never more than one page past the page now in use: a huge
    // document then overshoots by one page at most.
    const uint64_t lastUsedPage = capacity_ == 0 ? 0 : (static_cast<uint64_t>(capacity_) - 1) >> kPageShift;
    uint64_t wanted = static_cast<uint64_t>(capacity_) + std::max<uint32_t>(capacity_ / 2, 8);
    wanted = std::min<uint64_t>(wanted, (lastUsedPage + 2) << kPageShift);
    wanted = std::min<uint64_t>(wanted, kMaxRecords);
    if (!Reserve(static_cast<uint32_t>(wanted))) {
        HVLog::Write(HVLog::kError, "HVXMLRecordStore::Grow", u"Out of memory for %d element records",
                     static_cast<int64_t>(wanted));
        return false;
    }
    return true;
}

bool HVXMLRecordStore::Reserve(uint32_t capacity)
{
    if (capacity <= capacity_)
        return true;
    const size_t pagesNeeded = ((static_cast<size_t>(capacity) - 1) >> kPageShift) + 1;
    // The last page may be partial: bring it to its new size first (the only move of records).
    if (!pages_.empty()) {
        const size_t last = pages_.size() - 1;
        const size_t oldSize = PageRecords(capacity_, last);
        const size_t newSize = PageRecords(capacity, last);
        if (newSize > oldSize) {
            void* grown = std::realloc(pages_[last].get(), newSize * sizeof(HVXMLElementRecord));
            if (!grown)
                return false;
            (void)pages_[last].release();
            pages_[last].reset(static_cast<HVXMLElementRecord*>(grown));
        }
    }
    pages_.reserve(pagesNeeded);
    while (pages_.size() < pagesNeeded) {
        const size_t records = PageRecords(capacity, pages_.size());
        Page page(static_cast<HVXMLElementRecord*>(std::malloc(records * sizeof(HVXMLElementRecord))));
        if (!page) {
            // Keep the store consistent: capacity covers only the pages that exist.
            capacity_ = static_cast<uint32_t>(std::min<uint64_t>(
                capacity, static_cast<uint64_t>(pages_.size()) << kPageShift));
            return false;
        }
        pages_.push_back(std::move(page));
    }
    capacity_ = capacity;
    return true;
}

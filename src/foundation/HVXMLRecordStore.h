#pragma once

#include "foundation/HVXMLElementRecord.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <vector>

// The element records of one document, in pages of 65,536 records. Growth adds at most one
// page beyond the last used one and reallocates at most the last (partial) page, so indexing a
// huge document never moves the records already made. Pages come from malloc untouched:
// capacity that is never used costs address space, not memory.
class HVXMLRecordStore
{
public:
    static constexpr uint32_t kPageShift = 16;
    static constexpr uint32_t kPageSize = 1u << kPageShift;
    static constexpr uint32_t kPageMask = kPageSize - 1;

    HVXMLRecordStore() = default;
    HVXMLRecordStore(const HVXMLRecordStore&) = delete;
    HVXMLRecordStore& operator=(const HVXMLRecordStore&) = delete;

    // Drops every record, sizes the store for `expected` records and makes record 0, zeroed.
    // Returns false when not even record 0 could be had.
    bool Reset(uint32_t expected);
    // Frees everything; the store then holds no record at all.
    void Clear();

    // A new record at the end, its fields not yet set. Returns 0 when memory ran out.
    uint32_t Add()
    {
        if (count_ == capacity_ && !Grow())
            return 0;
        return count_++;
    }

    HVXMLElementRecord& operator[](uint32_t index) { return pages_[index >> kPageShift].get()[index & kPageMask]; }
    const HVXMLElementRecord& operator[](uint32_t index) const
    {
        return pages_[index >> kPageShift].get()[index & kPageMask];
    }

    uint32_t GetCount() const { return count_; }
    uint32_t GetCapacity() const { return capacity_; }
    size_t GetPageCount() const { return pages_.size(); }
    // Bytes held for records (capacity, not count).
    size_t GetBytes() const { return static_cast<size_t>(capacity_) * sizeof(HVXMLElementRecord); }

private:
    struct FreeDeleter
    {
        void operator()(HVXMLElementRecord* p) const { std::free(p); }
    };
    using Page = std::unique_ptr<HVXMLElementRecord, FreeDeleter>;

    bool Grow();
    // Makes the pages hold `capacity` records; only the last page may be partial.
    bool Reserve(uint32_t capacity);

    std::vector<Page> pages_;
    uint32_t count_ = 0;
    uint32_t capacity_ = 0;
};

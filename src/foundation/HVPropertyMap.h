#pragma once

#include "foundation/HVString.h"

#include <cstdint>
#include <string_view>
#include <utility>
#include <vector>

// Named values carried with a file name: name to value, names unique and compared exactly,
// kept in the order they were first set (so a written form is stable). Maps hold a handful of
// entries, so lookups are a plain scan.
class HVPropertyMap
{
public:
    // Sets or replaces; a replaced value keeps its place in the order.
    void Set(const HVString& name, const HVString& value);
    bool Lookup(std::u16string_view name, HVString& value) const;
    // The value, or `fallback` when the name is not there.
    HVString Get(std::u16string_view name, const HVString& fallback = HVString()) const;
    bool Contains(std::u16string_view name) const { return Find(name) >= 0; }
    bool Remove(std::u16string_view name);
    void Clear() { entries_.clear(); }

    int32_t GetCount() const { return static_cast<int32_t>(entries_.size()); }
    bool IsEmpty() const { return entries_.empty(); }
    const HVString& GetNameAt(int32_t index) const { return entries_[static_cast<size_t>(index)].first; }
    const HVString& GetValueAt(int32_t index) const { return entries_[static_cast<size_t>(index)].second; }

    friend bool operator==(const HVPropertyMap& a, const HVPropertyMap& b) { return a.entries_ == b.entries_; }

private:
    int32_t Find(std::u16string_view name) const;

    std::vector<std::pair<HVString, HVString>> entries_;
};

#include "foundation/HVPropertyMap.h"

void HVPropertyMap::Set(const HVString& name, const HVString& value)
{
    const int32_t at = Find(name.view());
    if (at >= 0)
        entries_[static_cast<size_t>(at)].second = value;
    else
        entries_.emplace_back(name, value);
}

bool HVPropertyMap::Lookup(std::u16string_view name, HVString& value) const
{
    const int32_t at = Find(name);
    if (at < 0)
        return false;
    value = entries_[static_cast<size_t>(at)].second;
    return true;
}

HVString HVPropertyMap::Get(std::u16string_view name, const HVString& fallback) const
{
    const int32_t at = Find(name);
    return at < 0 ? fallback : entries_[static_cast<size_t>(at)].second;
}

bool HVPropertyMap::Remove(std::u16string_view name)
{
    const int32_t at = Find(name);
    if (at < 0)
        return false;
    entries_.erase(entries_.begin() + at);
    return true;
}

int32_t HVPropertyMap::Find(std::u16string_view name) const
{
    for (size_t i = 0; i < entries_.size(); ++i)
        if (entries_[i].first.view() == name)
            return static_cast<int32_t>(i);
    return -1;
}

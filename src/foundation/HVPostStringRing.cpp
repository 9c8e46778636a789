#include "foundation/HVPostStringRing.h"

#include <algorithm>
#include <cstring>

namespace
{
constexpr char kMagic[4] = {'H', 'V', 'P', 'S'};

int32_t Index(const uint8_t* block, size_t offset)
{
    int32_t value;
    std::memcpy(&value, block + offset, 4);
    return value;
}

void SetIndex(uint8_t* block, size_t offset, size_t value)
{
    const int32_t v = static_cast<int32_t>(value % HVPostStringRing::kRingSize);
    std::memcpy(block + offset, &v, 4);
}

bool IndexesValid(const uint8_t* block)
{
    const int32_t read = Index(block, 4);
    const int32_t write = Index(block, 8);
    return read >= 0 && write >= 0 && read < static_cast<int32_t>(HVPostStringRing::kRingSize) &&
           write < static_cast<int32_t>(HVPostStringRing::kRingSize);
}

void CopyIn(uint8_t* block, size_t at, const void* data, size_t size)
{
    uint8_t* ring = block + 12;
    const size_t first = std::min(size, HVPostStringRing::kRingSize - at);
    std::memcpy(ring + at, data, first);
    std::memcpy(ring, static_cast<const uint8_t*>(data) + first, size - first);
}

void CopyOut(const uint8_t* block, size_t at, void* data, size_t size)
{
    const uint8_t* ring = block + 12;
    const size_t first = std::min(size, HVPostStringRing::kRingSize - at);
    std::memcpy(data, ring + at, first);
    std::memcpy(static_cast<uint8_t*>(data) + first, ring, size - first);
}

size_t Used(const uint8_t* block)
{
    const int32_t n = static_cast<int32_t>(HVPostStringRing::kRingSize);
    return static_cast<size_t>(((Index(block, 8) - Index(block, 4)) % n + n) % n);
}
}   // namespace

void HVPostStringRing::Prepare(uint8_t* block)
{
    if (std::memcmp(block, kMagic, 4) == 0 && IndexesValid(block))
        return;
    std::memset(block, 0, kBlockSize);
    std::memcpy(block, kMagic, 4);
}

size_t HVPostStringRing::FreeRoom(const uint8_t* block)
{
    const int32_t n = static_cast<int32_t>(kRingSize);
    return static_cast<size_t>(((Index(block, 4) - Index(block, 8) - 1) % n + n) % n);
}

bool HVPostStringRing::Write(uint8_t* block, int32_t type, const HVString& text)
{
    const size_t bytes = static_cast<size_t>(text.GetLength()) * 2;
    if (!Fits(static_cast<size_t>(text.GetLength())) || bytes + kRecordHeader > FreeRoom(block))
        return false;
    size_t at = static_cast<size_t>(Index(block, 8));
    const uint32_t header[2] = {static_cast<uint32_t>(type), static_cast<uint32_t>(bytes)};
    CopyIn(block, at, header, sizeof(header));
    at = (at + sizeof(header)) % kRingSize;
    CopyIn(block, at, text.c_str(), bytes);
    SetIndex(block, 8, at + bytes);
    return true;
}

bool HVPostStringRing::Read(uint8_t* block, int32_t& type, HVString& text)
{
    const size_t used = Used(block);
    if (used < kRecordHeader)
        return false;
    size_t at = static_cast<size_t>(Index(block, 4));
    uint32_t header[2];
    CopyOut(block, at, header, sizeof(header));
    if (header[1] % 2 != 0 || header[1] > used - kRecordHeader) {
        // Someone wrote over the ring: what is there can't be trusted, so it is dropped.
        SetIndex(block, 4, static_cast<size_t>(Index(block, 8)));
        return false;
    }
    at = (at + sizeof(header)) % kRingSize;
    const int32_t characters = static_cast<int32_t>(header[1] / 2);
    char16_t* out = text.GetBuffer(characters);
    CopyOut(block, at, out, header[1]);
    text.ReleaseBuffer(characters);
    type = static_cast<int32_t>(header[0]);
    SetIndex(block, 4, at + header[1]);
    return true;
}

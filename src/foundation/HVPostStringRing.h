#pragma once

#include "foundation/HVString.h"

#include <cstddef>
#include <cstdint>

// The shared block through which CPostString hands strings to another process's command
// target, as plain bytes (the caller maps it and holds its lock around every call):
//   offset 0   "HVPS"
//   offset 4   read index (signed 32-bit)
//   offset 8   write index (signed 32-bit)
//   offset 12  16,384 bytes of ring; indexes run modulo 16,384, one byte always stays free.
// Each string is one record: its type and its byte count (32 bits each, little-endian) and
// then its UTF-16 characters. The record carries the type so that a reader never pairs a
// string with another sender's message.
class HVPostStringRing
{
public:
    static constexpr size_t kRingSize = 16384;
    static constexpr size_t kBlockSize = 12 + kRingSize;
    static constexpr size_t kRecordHeader = 8;

    // Sets the block up afresh when it lacks the magic (new, or written over).
    static void Prepare(uint8_t* block);
    static size_t FreeRoom(const uint8_t* block);
    // Whether a string of this many characters can go through the ring at all.
    static bool Fits(size_t characters) { return characters * 2 + kRecordHeader < kRingSize; }
    // False (nothing written) when the record doesn't fit in the free room.
    static bool Write(uint8_t* block, int32_t type, const HVString& text);
    // The oldest record; false when the ring is empty or damaged (it is then emptied).
    static bool Read(uint8_t* block, int32_t& type, HVString& text);
};

#pragma once

#include "foundation/HVString.h"

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

// Reads zip archives that came from somewhere we don't trust (packages, downloads). Open checks
// the whole central directory before anything is extracted, so a caller that unpacks only after
// a successful Open never writes part of a hostile archive:
//   - every name is a plain relative path: no "..", no root, no drive letter, no ":" (alternate
//     data streams), no device name ("CON", "NUL", "COM1", ...), no character Windows refuses,
//     no component ending in a point or blank, and no two names that fold alike (HVCaseFold);
//   - every member's bytes lie inside the archive, before the central directory, and apart from
//     every other member's (overlapping members are how small archives unpack to huge sizes);
//   - the unpacked sizes stay under the limits, and no member unpacks to more than kMaxRatio
//     times its packed size.
// Extract then inflates one member, never past the size the directory gave, and checks its CRC.
// Only stored and deflated members are read; encrypted, multi-disk and ZIP64 archives are refused.
// The archive's bytes belong to the caller and must outlive the reader.
class HVZipReader
{
public:
    struct Limits
    {
        uint64_t maxMemberSize = 512ull << 20;
        uint64_t maxTotalSize = 2048ull << 20;
        uint32_t maxMembers = 65535;
    };
    static constexpr uint64_t kMaxRatio = 1100;
    static constexpr int32_t kMaxNameLength = 1024;

    struct Member
    {
        HVString name;  // with backslashes; a folder's name ends in one
        bool isFolder = false;
        uint16_t method = 0;
        uint32_t crc = 0;
        uint64_t packedSize = 0;
        uint64_t size = 0;
        uint64_t headerOffset = 0;
        uint64_t dataOffset = 0;
    };

    HVZipReader() = default;
    explicit HVZipReader(const Limits& limits) : limits_(limits) {}

    // False with the reason in GetError; the reader then holds no members.
    bool Open(const uint8_t* data, size_t size);
    const std::vector<Member>& Members() const { return members_; }
    // The member's bytes, whole and checked, or false with the reason in GetError.
    bool Extract(size_t index, std::vector<uint8_t>& out);
    // The member whose name is this one without regard to case, or -1.
    int32_t Find(std::u16string_view name) const;
    const HVString& GetError() const { return error_; }
    uint64_t TotalSize() const { return totalSize_; }

    // Whether a member name (slashes already made backslashes) may be unpacked under a folder.
    static bool IsSafeName(std::u16string_view name);

private:
    bool Fail(const char16_t* format, const HVString& name = HVString());
    bool ReadMember(size_t& pos, size_t centralEnd);
    bool Inflate(const Member& member, std::vector<uint8_t>& out);

    Limits limits_;
    const uint8_t* data_ = nullptr;
    size_t size_ = 0;
    std::vector<Member> members_;
    uint64_t totalSize_ = 0;
    HVString error_;
};

#pragma once

#include "foundation/HVString.h"

#include <compare>
#include <cstdint>

// A file version: four 16-bit numbers (major, minor, build, revision) as the fixed file
// information of a version resource holds them. Versions compare as the four numbers in turn,
// never as text ("10.0" is above "9.9").
//
// A file that can't be read or has no version resource yields 0.0.0.0, which the copy rules
// treat as "older than anything": such a file is always replaced by one that has a version.
class CVersionInfo
{
public:
    CVersionInfo() = default;
    CVersionInfo(uint16_t major, uint16_t minor, uint16_t build, uint16_t revision)
        : major_(major), minor_(minor), build_(build), revision_(revision)
    {
    }

#ifdef _WIN32
    // Reads the version resource of a file (any path length). Version.dll is loaded on the
    // first call and kept for the life of the process.
    explicit CVersionInfo(const HVString& filePath);
    bool Read(const HVString& filePath);
    bool HasVersionResource() const { return hasResource_; }
#endif

    // Dotted text of one to four numbers ("5.0", "11.0.22000.1"), surrounding spaces allowed;
    // missing parts are 0. Anything else (empty parts, letters, a number above 65535, a fifth
    // part) fails and leaves `out` untouched.
    static bool Parse(std::u16string_view text, CVersionInfo& out);

    uint16_t GetMajor() const { return major_; }
    uint16_t GetMinor() const { return minor_; }
    uint16_t GetBuild() const { return build_; }
    uint16_t GetRevision() const { return revision_; }
    // The four numbers in one value, in comparison order (major in the top 16 bits).
    uint64_t GetPacked() const
    {
        return (uint64_t(major_) << 48) | (uint64_t(minor_) << 32) | (uint64_t(build_) << 16) | revision_;
    }
    bool IsZero() const { return GetPacked() == 0; }

    // "%d.%d.%d.%d" and, where the revision isn't shown, "%d.%d.%d".
    HVString GetText() const;
    HVString GetShortText() const;

    int Compare(const CVersionInfo& other) const
    {
        return GetPacked() < other.GetPacked() ? -1 : GetPacked() > other.GetPacked() ? 1 : 0;
    }
    friend bool operator==(const CVersionInfo& a, const CVersionInfo& b) { return a.GetPacked() == b.GetPacked(); }
    friend std::strong_ordering operator<=>(const CVersionInfo& a, const CVersionInfo& b)
    {
        return a.GetPacked() <=> b.GetPacked();
    }

private:
    uint16_t major_ = 0;
    uint16_t minor_ = 0;
    uint16_t build_ = 0;
    uint16_t revision_ = 0;
#ifdef _WIN32
    bool hasResource_ = false;
#endif
};

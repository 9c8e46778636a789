// The zip reader on arbitrary bytes: whatever it accepts must extract without reading or
// writing out of bounds, and every member it hands out must match its size and have a name
// that stays inside the unpack folder.
#include "foundation/HVZipReader.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>
#include <vector>

namespace
{
// Told apart from the reader's own test: no part of the name climbs out (Windows also takes a
// part of dots and blanks such as ".. ." for ".."), none names a drive or a stream, and the name
// is not rooted, so joined to the unpack folder it can lead nowhere else.
bool StaysInside(std::u16string_view name)
{
    if (name.empty() || name.front() == u'\\' || name.front() == u'/')
        return false;
    size_t start = 0;
    for (size_t i = 0; i <= name.size(); ++i) {
        if (i < name.size() && name[i] != u'\\' && name[i] != u'/') {
            if (name[i] == u':' || name[i] < 0x20)
                return false;
            continue;
        }
        const std::u16string_view part = name.substr(start, i - start);
        if (part.find_first_not_of(u". ") == std::u16string_view::npos && part.find(u"..") != std::u16string_view::npos)
            return false;
        start = i + 1;
    }
    return true;
}
}   // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    // Small limits keep each run short; the checks against them are the same at any size.
    HVZipReader::Limits limits;
    limits.maxMemberSize = 256u << 10;
    limits.maxTotalSize = 1u << 20;
    HVZipReader reader(limits);
    if (!reader.Open(data, size))
        return 0;
    std::vector<uint8_t> bytes;
    for (size_t i = 0; i < reader.Members().size(); ++i) {
        const HVZipReader::Member& member = reader.Members()[i];
        if (!StaysInside(member.name.view()))
            std::abort();
        if (reader.Extract(i, bytes) && bytes.size() != member.size)
            std::abort();
    }
    return 0;
}

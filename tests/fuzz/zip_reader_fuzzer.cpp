// The zip reader on arbitrary bytes: whatever it accepts must extract without reading or
// writing out of bounds, and every member it hands out must match its size and have a name
// that stays inside the unpack folder.
#include "foundation/HVZipReader.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <vector>

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
        const HVString bare = member.isFolder ? member.name.Left(member.name.GetLength() - 1) : member.name;
        if (!HVZipReader::IsSafeName(bare.view()))
            std::abort();
        if (reader.Extract(i, bytes) && bytes.size() != member.size)
            std::abort();
    }
    return 0;
}

#pragma once

// Zip archives for tests, made in memory: well-formed ones, and ones with exactly the damage a
// test asks for (a wrong CRC, a size that lies, two members sharing their bytes, ...).
// Header-only, so the native core tests and the Windows test programs share it.

#include <zlib.h>

#include <cstdint>
#include <string>
#include <vector>

namespace ZipBuilder
{
struct Entry
{
    std::string name;
    std::string data;
    bool deflate = false;
    // Damage done on purpose.
    int64_t declaredSize = -1;   // the directory's unpacked size instead of the true one
    uint32_t crcXor = 0;
    uint16_t flags = 0;
    bool sameLocalAsPrevious = false;
};

inline void Put16(std::string& out, uint32_t v) { out += char(v & 0xFF), out += char((v >> 8) & 0xFF); }
inline void Put32(std::string& out, uint32_t v) { Put16(out, v & 0xFFFF), Put16(out, v >> 16); }

inline std::string Deflate(const std::string& data)
{
    z_stream s{};
    deflateInit2(&s, 9, Z_DEFLATED, -MAX_WBITS, 8, Z_DEFAULT_STRATEGY);
    std::string out(deflateBound(&s, data.size()), '\0');
    s.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(data.data()));
    s.avail_in = static_cast<uInt>(data.size());
    s.next_out = reinterpret_cast<Bytef*>(out.data());
    s.avail_out = static_cast<uInt>(out.size());
    deflate(&s, Z_FINISH);
    out.resize(s.total_out);
    deflateEnd(&s);
    return out;
}

// A zip archive as a writer would make it, but with the damage the entries ask for.
inline std::string MakeZip(const std::vector<Entry>& entries)
{
    std::string body, central;
    uint32_t previousLocal = 0;
    for (const Entry& entry : entries) {
        const std::string packed = entry.deflate ? Deflate(entry.data) : entry.data;
        const uint32_t crc = static_cast<uint32_t>(crc32(0, reinterpret_cast<const Bytef*>(entry.data.data()),
                                                         static_cast<uInt>(entry.data.size()))) ^ entry.crcXor;
        const uint32_t size = entry.declaredSize >= 0 ? static_cast<uint32_t>(entry.declaredSize) : static_cast<uint32_t>(entry.data.size());
        uint32_t local = static_cast<uint32_t>(body.size());
        std::string fields;
        Put16(fields, entry.flags), Put16(fields, entry.deflate ? 8 : 0), Put32(fields, 0), Put32(fields, crc);
        Put32(fields, static_cast<uint32_t>(packed.size())), Put32(fields, size), Put16(fields, static_cast<uint32_t>(entry.name.size()));
        if (entry.sameLocalAsPrevious) {
            local = previousLocal;
        } else {
            Put32(body, 0x04034b50), Put16(body, 20), body += fields, Put16(body, 0);
            body += entry.name + packed;
        }
        previousLocal = local;
        Put32(central, 0x02014b50), Put16(central, 20), Put16(central, 20), central += fields;
        Put16(central, 0), Put16(central, 0), Put16(central, 0), Put16(central, 0), Put32(central, 0), Put32(central, local);
        central += entry.name;
    }
    std::string zip = body + central;
    Put32(zip, 0x06054b50), Put16(zip, 0), Put16(zip, 0), Put16(zip, static_cast<uint32_t>(entries.size()));
    Put16(zip, static_cast<uint32_t>(entries.size())), Put32(zip, static_cast<uint32_t>(central.size()));
    Put32(zip, static_cast<uint32_t>(body.size())), Put16(zip, 0);
    return zip;
}

}   // namespace ZipBuilder

#include "foundation/HVZipReader.h"

#include "foundation/HVCaseFold.h"
#include "foundation/HVLog.h"

#include <zlib.h>

#include <algorithm>
#include <unordered_set>
#include <utility>

namespace
{
constexpr uint32_t kEndSignature = 0x06054b50;
constexpr uint32_t kCentralSignature = 0x02014b50;
constexpr uint32_t kLocalSignature = 0x04034b50;
constexpr size_t kEndSize = 22;
constexpr size_t kCentralSize = 46;
constexpr size_t kLocalSize = 30;
constexpr uint16_t kFlagEncrypted = 0x0001;
constexpr uint16_t kFlagUtf8 = 0x0800;

uint16_t Read16(const uint8_t* p)
{
    return static_cast<uint16_t>(p[0] | (p[1] << 8));
}

uint32_t Read32(const uint8_t* p)
{
    return static_cast<uint32_t>(p[0]) | (static_cast<uint32_t>(p[1]) << 8) | (static_cast<uint32_t>(p[2]) << 16) |
           (static_cast<uint32_t>(p[3]) << 24);
}

// Names without the UTF-8 flag are in the old DOS code page; their ASCII part is all that
// matters for the checks, and the rest is kept as Latin-1 rather than guessed.
HVString DecodeName(const uint8_t* p, size_t length, bool utf8)
{
    const std::string_view bytes(reinterpret_cast<const char*>(p), length);
    HVString name;
    if (utf8) {
        name = HVString::FromUtf8(bytes);
    } else {
        for (unsigned char c : bytes)
            name += static_cast<char16_t>(c);
    }
    name.Replace(u'/', u'\\');
    return name;
}

bool IsDeviceName(std::u16string_view component)
{
    // "CON.txt" and "nul .mp3" open the device too: the part before the first point counts,
    // without trailing blanks.
    std::u16string_view stem = component.substr(0, component.find(u'.'));
    while (!stem.empty() && stem.back() == u' ')
        stem.remove_suffix(1);
    if (stem.size() != 3 && stem.size() != 4)
        return false;
    HVString upper(stem);
    upper.MakeUpper();
    static const char16_t* const kDevices[] = {u"CON", u"PRN", u"AUX", u"NUL"};
    for (const char16_t* device : kDevices) {
        if (upper == device)
            return true;
    }
    if (upper.GetLength() == 4 && (upper.StartsWith(u"COM") || upper.StartsWith(u"LPT")))
        return upper[3] >= u'0' && upper[3] <= u'9';
    return false;
}

bool IsSafeComponent(std::u16string_view component)
{
    if (component.empty() || component == u"." || component == u"..")
        return false;
    if (component.back() == u'.' || component.back() == u' ')
        return false;
    for (char16_t ch : component) {
        if (ch < 0x20 || std::u16string_view(u"<>:\"|?*/").find(ch) != std::u16string_view::npos)
            return false;
    }
    return !IsDeviceName(component);
}
}   // namespace

bool HVZipReader::IsSafeName(std::u16string_view name)
{
    if (name.empty() || name.size() > static_cast<size_t>(kMaxNameLength))
        return false;
    size_t start = 0;
    for (;;) {
        const size_t end = name.find(u'\\', start);
        if (!IsSafeComponent(name.substr(start, end == std::u16string_view::npos ? end : end - start)))
            return false;
        if (end == std::u16string_view::npos)
            return true;
        start = end + 1;
    }
}

bool HVZipReader::Fail(const char16_t* format, const HVString& name)
{
    error_ = HVString::Format(format, name);
    HVLog::Write(HVLog::kWarning, "HVZipReader", u"%s", error_);
    return false;
}

bool HVZipReader::Open(const uint8_t* data, size_t size)
{
    data_ = data;
    size_ = size;
    members_.clear();
    totalSize_ = 0;
    error_ = HVString();

    // The end record sits in the last 22 bytes plus at most a 65,535-byte comment.
    if (size < kEndSize)
        return Fail(u"Not a zip archive (too short)");
    size_t end = size - kEndSize + 1;
    const size_t lowest = size > kEndSize + 0xFFFF ? size - kEndSize - 0xFFFF : 0;
    bool found = false;
    while (end-- > lowest) {
        if (Read32(data + end) == kEndSignature && end + kEndSize + Read16(data + end + 20) == size) {
            found = true;
            break;
        }
    }
    if (!found)
        return Fail(u"Not a zip archive (no end of central directory)");
    const uint8_t* record = data + end;
    const uint16_t disk = Read16(record + 4);
    const uint16_t centralDisk = Read16(record + 6);
    const uint16_t entriesHere = Read16(record + 8);
    const uint16_t entries = Read16(record + 10);
    const uint32_t centralSize = Read32(record + 12);
    const uint32_t centralOffset = Read32(record + 16);
    if (disk != 0 || centralDisk != 0 || entriesHere != entries)
        return Fail(u"Archives on several disks are not supported");
    if (entries == 0xFFFF || centralSize == 0xFFFFFFFF || centralOffset == 0xFFFFFFFF)
        return Fail(u"ZIP64 archives are not supported");
    if (entries > limits_.maxMembers)
        return Fail(u"Too many members");
    if (static_cast<uint64_t>(centralOffset) + centralSize > end)
        return Fail(u"The central directory lies outside the archive");

    size_t pos = centralOffset;
    const size_t centralEnd = static_cast<size_t>(centralOffset) + centralSize;
    members_.reserve(entries);
    for (uint32_t i = 0; i < entries; ++i) {
        if (!ReadMember(pos, centralEnd)) {
            members_.clear();
            return false;
        }
    }

    // Every member's bytes, from its local header to the end of its data, apart from all others.
    std::vector<std::pair<uint64_t, uint64_t>> spans;
    spans.reserve(members_.size());
    std::unordered_set<HVString> names;
    for (const Member& member : members_) {
        HVString folded = HVCaseFold::Folded(member.name.view());
        if (folded.EndsWith(u"\\"))
            folded = folded.Left(folded.GetLength() - 1);
        if (!names.insert(folded).second) {
            const HVString name = member.name;
            members_.clear();
            return Fail(u"The name '%s' is in the archive twice", name);
        }
        spans.emplace_back(member.headerOffset, member.dataOffset + member.packedSize);
    }
    std::sort(spans.begin(), spans.end());
    for (size_t i = 1; i < spans.size(); ++i) {
        if (spans[i].first < spans[i - 1].second) {
            members_.clear();
            return Fail(u"Members of the archive overlap");
        }
    }
    if (!spans.empty() && spans.back().second > centralOffset) {
        members_.clear();
        return Fail(u"A member runs into the central directory");
    }
    return true;
}

bool HVZipReader::ReadMember(size_t& pos, size_t centralEnd)
{
    if (pos + kCentralSize > centralEnd || Read32(data_ + pos) != kCentralSignature)
        return Fail(u"The central directory is damaged");
    const uint8_t* header = data_ + pos;
    const uint16_t flags = Read16(header + 8);
    Member member;
    member.method = Read16(header + 10);
    member.crc = Read32(header + 16);
    member.packedSize = Read32(header + 20);
    member.size = Read32(header + 24);
    const uint16_t nameLength = Read16(header + 28);
    const uint16_t extraLength = Read16(header + 30);
    const uint16_t commentLength = Read16(header + 32);
    const uint32_t localOffset = Read32(header + 42);
    const size_t next = pos + kCentralSize + nameLength + extraLength + commentLength;
    if (next > centralEnd)
        return Fail(u"The central directory is damaged");
    member.name = DecodeName(header + kCentralSize, nameLength, (flags & kFlagUtf8) != 0);
    pos = next;

    member.isFolder = member.name.EndsWith(u"\\");
    const std::u16string_view bare =
        member.isFolder ? member.name.view().substr(0, member.name.view().size() - 1) : member.name.view();
    if (!IsSafeName(bare))
        return Fail(u"The member name '%s' would leave the unpack folder", member.name);
    if (flags & kFlagEncrypted)
        return Fail(u"The member '%s' is encrypted", member.name);
    if (member.method != 0 && member.method != 8)
        return Fail(u"The member '%s' is packed with a method that is not supported", member.name);
    if (member.packedSize == 0xFFFFFFFF || member.size == 0xFFFFFFFF || localOffset == 0xFFFFFFFF)
        return Fail(u"ZIP64 archives are not supported");
    if (member.method == 0 && member.packedSize != member.size)
        return Fail(u"The member '%s' is damaged", member.name);
    if (member.size > limits_.maxMemberSize)
        return Fail(u"The member '%s' is too large", member.name);
    // Deflate can't shrink anything more than about 1,032 to 1 (a run of zeros); more is a bomb.
    if (member.size > (member.packedSize + 1) * kMaxRatio)
        return Fail(u"The member '%s' unpacks to far more than it holds", member.name);
    totalSize_ += member.size;
    if (totalSize_ > limits_.maxTotalSize)
        return Fail(u"The archive unpacks to more than the limit");

    if (static_cast<uint64_t>(localOffset) + kLocalSize > size_ || Read32(data_ + localOffset) != kLocalSignature)
        return Fail(u"The member '%s' has no local header", member.name);
    const uint8_t* local = data_ + localOffset;
    member.dataOffset = static_cast<uint64_t>(localOffset) + kLocalSize + Read16(local + 26) + Read16(local + 28);
    if (member.dataOffset + member.packedSize > size_)
        return Fail(u"The member '%s' is cut short", member.name);
    member.headerOffset = localOffset;
    members_.push_back(std::move(member));
    return true;
}

int32_t HVZipReader::Find(std::u16string_view name) const
{
    for (size_t i = 0; i < members_.size(); ++i) {
        if (members_[i].name.EqualsNoCase(name))
            return static_cast<int32_t>(i);
    }
    return -1;
}

bool HVZipReader::Extract(size_t index, std::vector<uint8_t>& out)
{
    out.clear();
    if (index >= members_.size())
        return Fail(u"No such member");
    const Member& member = members_[index];
    const uint8_t* packed = data_ + member.dataOffset;
    if (member.method == 0)
        out.assign(packed, packed + member.packedSize);
    else if (!Inflate(member, out))
        return false;
    const uLong crc = crc32_z(crc32_z(0, Z_NULL, 0), out.data(), out.size());
    if (crc != member.crc) {
        out.clear();
        return Fail(u"The member '%s' is damaged (CRC)", member.name);
    }
    return true;
}

bool HVZipReader::Inflate(const Member& member, std::vector<uint8_t>& out)
{
    // One byte more than the directory promised: a stream that fills it says more than it
    // declared and is refused instead of being followed.
    out.resize(static_cast<size_t>(member.size) + 1);
    z_stream stream{};
    if (inflateInit2(&stream, -MAX_WBITS) != Z_OK)
        return Fail(u"The unpacker could not start");
    const uint8_t* next = data_ + member.dataOffset;
    uint64_t inLeft = member.packedSize;
    stream.next_out = out.data();
    stream.avail_out = static_cast<uInt>(std::min<uint64_t>(out.size(), 0x40000000));
    int result = Z_OK;
    while (result == Z_OK) {
        if (stream.avail_in == 0 && inLeft > 0) {
            const uInt chunk = static_cast<uInt>(std::min<uint64_t>(inLeft, 0x40000000));
            stream.next_in = const_cast<Bytef*>(next);
            stream.avail_in = chunk;
            next += chunk;
            inLeft -= chunk;
        }
        if (stream.avail_out == 0) {
            const uint64_t written = static_cast<uint64_t>(stream.next_out - out.data());
            if (written >= out.size())
                break;
            stream.avail_out = static_cast<uInt>(std::min<uint64_t>(out.size() - written, 0x40000000));
        }
        result = inflate(&stream, Z_NO_FLUSH);
        if (result == Z_BUF_ERROR && stream.avail_in == 0 && inLeft == 0)
            break;
    }
    const uint64_t written = static_cast<uint64_t>(stream.next_out - out.data());
    inflateEnd(&stream);
    if (result != Z_STREAM_END || written != member.size) {
        out.clear();
        return Fail(u"The member '%s' is damaged", member.name);
    }
    out.resize(static_cast<size_t>(written));
    return true;
}

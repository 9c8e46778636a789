#include "foundation/HVZipReader.h"

#include <gtest/gtest.h>

#include <zlib.h>

#include <string>
#include <vector>

namespace
{
struct Spec
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

void Put16(std::string& out, uint32_t v) { out += char(v & 0xFF), out += char((v >> 8) & 0xFF); }
void Put32(std::string& out, uint32_t v) { Put16(out, v & 0xFFFF), Put16(out, v >> 16); }

std::string Deflate(const std::string& data)
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

// A zip archive as a writer would make it, but with the damage the specs ask for.
std::string MakeZip(const std::vector<Spec>& specs)
{
    std::string body, central;
    uint32_t previousLocal = 0;
    for (const Spec& spec : specs) {
        const std::string packed = spec.deflate ? Deflate(spec.data) : spec.data;
        const uint32_t crc = static_cast<uint32_t>(crc32(0, reinterpret_cast<const Bytef*>(spec.data.data()),
                                                         static_cast<uInt>(spec.data.size()))) ^ spec.crcXor;
        const uint32_t size = spec.declaredSize >= 0 ? static_cast<uint32_t>(spec.declaredSize) : static_cast<uint32_t>(spec.data.size());
        uint32_t local = static_cast<uint32_t>(body.size());
        std::string fields;
        Put16(fields, spec.flags), Put16(fields, spec.deflate ? 8 : 0), Put32(fields, 0), Put32(fields, crc);
        Put32(fields, static_cast<uint32_t>(packed.size())), Put32(fields, size), Put16(fields, static_cast<uint32_t>(spec.name.size()));
        if (spec.sameLocalAsPrevious) {
            local = previousLocal;
        } else {
            Put32(body, 0x04034b50), Put16(body, 20), body += fields, Put16(body, 0);
            body += spec.name + packed;
        }
        previousLocal = local;
        Put32(central, 0x02014b50), Put16(central, 20), Put16(central, 20), central += fields;
        Put16(central, 0), Put16(central, 0), Put16(central, 0), Put16(central, 0), Put32(central, 0), Put32(central, local);
        central += spec.name;
    }
    std::string zip = body + central;
    Put32(zip, 0x06054b50), Put16(zip, 0), Put16(zip, 0), Put16(zip, static_cast<uint32_t>(specs.size()));
    Put16(zip, static_cast<uint32_t>(specs.size())), Put32(zip, static_cast<uint32_t>(central.size()));
    Put32(zip, static_cast<uint32_t>(body.size())), Put16(zip, 0);
    return zip;
}

bool Open(HVZipReader& reader, const std::string& zip)
{
    return reader.Open(reinterpret_cast<const uint8_t*>(zip.data()), zip.size());
}
}   // namespace

TEST(HVZipReaderTest, StoredAndDeflatedMembersComeBackWhole)
{
    const std::string text(5000, 'x');
    const std::string zip = MakeZip({{"Skin/main.xml", text, true}, {"a.txt", "hello"}, {"Skin/", ""}});
    HVZipReader reader;
    ASSERT_TRUE(Open(reader, zip)) << reader.GetError().ToUtf8();
    ASSERT_EQ(reader.Members().size(), 3u);
    EXPECT_EQ(reader.Members()[0].name, u"Skin\\main.xml");
    EXPECT_TRUE(reader.Members()[2].isFolder);
    EXPECT_EQ(reader.Find(u"A.TXT"), 1);
    std::vector<uint8_t> out;
    ASSERT_TRUE(reader.Extract(0, out));
    EXPECT_EQ(std::string(out.begin(), out.end()), text);
    ASSERT_TRUE(reader.Extract(1, out));
    EXPECT_EQ(std::string(out.begin(), out.end()), "hello");
}

TEST(HVZipReaderTest, NamesThatCouldLeaveTheFolderAreRefused)
{
    const struct
    {
        const char16_t* name;
        bool safe;
    } cases[] = {
        {u"a.txt", true}, {u"Skins\\Lounge View\\main.xml", true}, {u"console\\x.txt", true}, {u"COM10", true},
        {u"..\\evil.txt", false}, {u"a\\..\\..\\b", false}, {u"\\Windows\\x.dll", false}, {u"C:x.dll", false},
        {u"a.txt:stream", false}, {u"CON", false}, {u"nul.mp3", false}, {u"Lpt1", false}, {u"aux .txt", false}, {u"CON.txt.bak", false},
        {u"a\\\\b", false}, {u"trailing.", false}, {u"blank ", false}, {u"q?.txt", false}, {u"", false},
        {u".", false},
    };
    for (const auto& c : cases)
        EXPECT_EQ(HVZipReader::IsSafeName(c.name), c.safe) << HVString(c.name).ToUtf8();
}

TEST(HVZipReaderTest, HostileArchivesAreRefusedWhole)
{
    const std::string zeros(2000, '\0');
    const struct
    {
        const char* what;
        std::vector<Spec> specs;
    } cases[] = {
        {"zip slip after a good member", {{"ok.txt", "x"}, {"../../evil.txt", "evil"}}},
        {"absolute path", {{"/etc/passwd", "x"}}},
        {"alternate data stream", {{"a.txt:hidden", "x"}}},
        {"device name", {{"dir/NUL", "x"}}},
        {"same name twice, by case", {{"a.txt", "x"}, {"A.TXT", "y"}}},
        {"overlapping members", {{"a", zeros, true}, {"b", zeros, true, -1, 0, 0, true}}},
        {"says it unpacks to more than deflate can make of it", {{"a", "x", true, 5000000}}},
        {"encrypted", {{"a", "x", false, -1, 0, 1}}},
    };
    for (const auto& c : cases) {
        HVZipReader reader;
        EXPECT_FALSE(Open(reader, MakeZip(c.specs))) << c.what;
        EXPECT_TRUE(reader.Members().empty()) << c.what;
        EXPECT_FALSE(reader.GetError().IsEmpty()) << c.what;
    }
}

TEST(HVZipReaderTest, DamagedMembersFailOnExtract)
{
    const std::string text(3000, 'y');
    const struct
    {
        const char* what;
        Spec spec;
    } cases[] = {
        {"wrong CRC", {"a", text, true, -1, 0x1234}},
        {"stream longer than declared", {"a", text, true, 1000}},
        {"stream shorter than declared", {"a", text, true, 4000}},
    };
    for (const auto& c : cases) {
        HVZipReader reader;
        ASSERT_TRUE(Open(reader, MakeZip({c.spec}))) << c.what;
        std::vector<uint8_t> out;
        EXPECT_FALSE(reader.Extract(0, out)) << c.what;
        EXPECT_TRUE(out.empty()) << c.what;
    }
}

TEST(HVZipReaderTest, TruncatedArchivesAndLimits)
{
    const std::string zip = MakeZip({{"a.txt", std::string(4000, 'z'), true}, {"b.txt", "b"}});
    for (size_t cut : {size_t(0), size_t(10), zip.size() / 2, zip.size() - 1}) {
        HVZipReader reader;
        EXPECT_FALSE(Open(reader, zip.substr(0, cut))) << cut;
    }
    HVZipReader::Limits small;
    small.maxMemberSize = 3999;
    HVZipReader limited(small);
    EXPECT_FALSE(Open(limited, zip));
    small.maxMemberSize = 4000;
    small.maxMembers = 1;
    HVZipReader few(small);
    EXPECT_FALSE(Open(few, zip));
}

#include "HVTextFileReader.h"

#ifndef _WIN32

#include "HVLog.h"
#include "HVTextDecoder.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <memory>
#include <string>

namespace
{
struct FileCloser
{
    void operator()(std::FILE* f) const { std::fclose(f); }
};
using File = std::unique_ptr<std::FILE, FileCloser>;

constexpr long long kMaxFileBytes = INT32_MAX / 2;
}   // namespace

bool HVTextFileReader::Read(const HVString& path, HVString& text)
{
    text.Empty();
    const std::string name = path.ToUtf8();
    File file(std::fopen(name.c_str(), "rb"));
    if (!file) {
        HVLog::Write(HVLog::kError, "HVTextFileReader::Read", u"Can't open %s: %s", path, std::strerror(errno));
        return false;
    }
    std::string bytes;
    char chunk[1 << 16];
    for (;;) {
        const size_t got = std::fread(chunk, 1, sizeof(chunk), file.get());
        bytes.append(chunk, got);
        if (static_cast<long long>(bytes.size()) > kMaxFileBytes) {
            HVLog::Write(HVLog::kError, "HVTextFileReader::Read", u"%s is too large to read as text", path);
            return false;
        }
        if (got < sizeof(chunk))
            break;
    }
    if (std::ferror(file.get())) {
        HVLog::Write(HVLog::kError, "HVTextFileReader::Read", u"Error reading %s", path);
        return false;
    }
    text = HVTextDecoder::Decode(bytes, &HVTextDecoder::DecodeLatin1);
    return true;
}

#endif

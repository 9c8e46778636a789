#include "foundation/HVTextFileReader.h"

#ifndef _WIN32

#include "foundation/HVLog.h"
#include "foundation/HVTextDecoder.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <memory>
#include <string>
#include <sys/stat.h>

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
    struct stat info{};
    if (::fstat(::fileno(file.get()), &info) == 0 && S_ISDIR(info.st_mode)) {
        HVLog::Write(HVLog::kError, "HVTextFileReader::Read", u"Can't read %s: it is a folder", path);
        return false;
    }
    // Read at the size the file has now, then on to its true end in case it grows meanwhile.
    std::string bytes;
    if (std::fseek(file.get(), 0, SEEK_END) == 0) {
        const long size = std::ftell(file.get());
        if (size > kMaxFileBytes) {
            HVLog::Write(HVLog::kError, "HVTextFileReader::Read", u"%s is too large to read as text", path);
            return false;
        }
        if (size > 0)
            bytes.resize(static_cast<size_t>(size));
        std::rewind(file.get());
    }
    size_t done = 0;
    for (;;) {
        if (done == bytes.size())
            bytes.resize(bytes.size() + (1 << 16));
        done += std::fread(bytes.data() + done, 1, bytes.size() - done, file.get());
        if (done < bytes.size() || std::ferror(file.get()))
            break;
        if (static_cast<long long>(done) > kMaxFileBytes) {
            HVLog::Write(HVLog::kError, "HVTextFileReader::Read", u"%s is too large to read as text", path);
            return false;
        }
    }
    bytes.resize(done);
    if (std::ferror(file.get())) {
        HVLog::Write(HVLog::kError, "HVTextFileReader::Read", u"Error reading %s", path);
        return false;
    }
    text = HVTextDecoder::Decode(bytes, &HVTextDecoder::DecodeLatin1);
    return true;
}

#endif

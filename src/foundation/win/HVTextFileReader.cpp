#include "foundation/HVTextFileReader.h"

#include "foundation/HVLog.h"
#include "foundation/HVTextDecoder.h"
#include "foundation/win/HVUniqueResource.h"

#include <windows.h>

#include <algorithm>
#include <string>

namespace
{
constexpr LONGLONG kMaxFileBytes = INT32_MAX / 2;

// Absolute paths get the "\\?\" (or "\\?\UNC\") form so that paths past MAX_PATH open too.
HVString LongPathForm(const HVString& path)
{
    if (path.StartsWith(u"\\\\?\\") || path.StartsWith(u"\\\\.\\"))
        return path;
    DWORD needed = ::GetFullPathNameW(path.w(), 0, nullptr, nullptr);
    if (needed == 0)
        return path;
    HVString full;
    wchar_t* buffer = full.GetWBuffer(static_cast<int32_t>(needed));
    if (!buffer)
        return path;
    const DWORD length = ::GetFullPathNameW(path.w(), needed, buffer, nullptr);
    full.ReleaseBuffer(length < needed ? static_cast<int32_t>(length) : 0);
    if (full.IsEmpty())
        return path;
    if (full.StartsWith(u"\\\\"))
        return u"\\\\?\\UNC\\" + full.Mid(2);
    return u"\\\\?\\" + full;
}

HVString DecodeSystemCodePage(std::string_view bytes)
{
    if (bytes.empty() || bytes.size() > static_cast<size_t>(kMaxFileBytes))
        return HVString();
    const int size = static_cast<int>(bytes.size());
    const int needed = ::MultiByteToWideChar(CP_ACP, 0, bytes.data(), size, nullptr, 0);
    if (needed <= 0)
        return HVTextDecoder::DecodeLatin1(bytes);
    HVString text;
    wchar_t* buffer = text.GetWBuffer(needed);
    if (!buffer)
        return HVString();
    const int written = ::MultiByteToWideChar(CP_ACP, 0, bytes.data(), size, buffer, needed);
    text.ReleaseBuffer(written > 0 ? written : 0);
    return text;
}
}   // namespace

bool HVTextFileReader::Read(const HVString& path, HVString& text)
{
    text.Empty();
    const HVString longPath = LongPathForm(path);
    HVFileHandle file(::CreateFileW(longPath.w(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                                    nullptr, OPEN_EXISTING, FILE_FLAG_SEQUENTIAL_SCAN, nullptr));
    if (!file) {
        HVLog::Write(HVLog::kError, "HVTextFileReader::Read", u"Can't open %s, error: %d", path,
                     static_cast<int64_t>(::GetLastError()));
        return false;
    }
    LARGE_INTEGER size{};
    if (!::GetFileSizeEx(file.Get(), &size) || size.QuadPart > kMaxFileBytes) {
        HVLog::Write(HVLog::kError, "HVTextFileReader::Read", u"Can't read %s: size unknown or too large", path);
        return false;
    }
    std::string bytes(static_cast<size_t>(size.QuadPart), '\0');
    size_t done = 0;
    while (done < bytes.size()) {
        DWORD got = 0;
        const DWORD want = static_cast<DWORD>(std::min<size_t>(bytes.size() - done, 1u << 24));
        if (!::ReadFile(file.Get(), bytes.data() + done, want, &got, nullptr)) {
            HVLog::Write(HVLog::kError, "HVTextFileReader::Read", u"Error reading %s, error: %d", path,
                         static_cast<int64_t>(::GetLastError()));
            return false;
        }
        if (got == 0)
            break;   // the file got shorter since its size was read
        done += got;
    }
    bytes.resize(done);
    text = HVTextDecoder::Decode(bytes, &DecodeSystemCodePage);
    return true;
}

#include "foundation/win/HVSha256.h"

#include "foundation/HVLog.h"
#include "foundation/win/HVFileSystem.h"
#include "foundation/win/HVUniqueResource.h"

#include <bcrypt.h>

#include <vector>

namespace
{
struct AlgorithmTraits
{
    using Type = BCRYPT_ALG_HANDLE;
    static Type Invalid() { return nullptr; }
    static void Close(Type h) { ::BCryptCloseAlgorithmProvider(h, 0); }
};
struct HashTraits
{
    using Type = BCRYPT_HASH_HANDLE;
    static Type Invalid() { return nullptr; }
    static void Close(Type h) { ::BCryptDestroyHash(h); }
};
using Algorithm = HVUniqueResource<AlgorithmTraits>;
using Hash = HVUniqueResource<HashTraits>;

constexpr ULONG kDigestBytes = 32;

bool Succeeded(NTSTATUS status, const char16_t* what)
{
    if (status >= 0)
        return true;
    HVLog::Write(HVLog::kError, "HVSha256::OfFile", u"%s failed (0x%08X)", what, static_cast<uint32_t>(status));
    return false;
}
}

HVString HVSha256::OfFile(HANDLE file)
{
    Algorithm algorithm;
    Hash hash;
    if (!Succeeded(::BCryptOpenAlgorithmProvider(algorithm.Receive(), BCRYPT_SHA256_ALGORITHM, nullptr, 0),
                   u"BCryptOpenAlgorithmProvider") ||
        !Succeeded(::BCryptCreateHash(algorithm.Get(), hash.Receive(), nullptr, 0, nullptr, 0, 0), u"BCryptCreateHash"))
        return HVString();
    LARGE_INTEGER start = {};
    if (!::SetFilePointerEx(file, start, nullptr, FILE_BEGIN)) {
        HVLog::Write(HVLog::kError, "HVSha256::OfFile", u"Can't read the file (error %d)", ::GetLastError());
        return HVString();
    }
    std::vector<UCHAR> buffer(64 * 1024);
    for (;;) {
        DWORD read = 0;
        if (!::ReadFile(file, buffer.data(), static_cast<DWORD>(buffer.size()), &read, nullptr)) {
            HVLog::Write(HVLog::kError, "HVSha256::OfFile", u"Can't read the file (error %d)", ::GetLastError());
            return HVString();
        }
        if (read == 0)
            break;
        if (!Succeeded(::BCryptHashData(hash.Get(), buffer.data(), read, 0), u"BCryptHashData"))
            return HVString();
    }
    UCHAR digest[kDigestBytes];
    if (!Succeeded(::BCryptFinishHash(hash.Get(), digest, kDigestBytes, 0), u"BCryptFinishHash"))
        return HVString();
    static const char16_t kHex[] = u"0123456789abcdef";
    char16_t text[kDigestBytes * 2];
    for (ULONG i = 0; i < kDigestBytes; ++i) {
        text[2 * i] = kHex[digest[i] >> 4];
        text[2 * i + 1] = kHex[digest[i] & 15];
    }
    return HVString(text, static_cast<int32_t>(kDigestBytes * 2));
}

bool HVSha256::Matches(const HVString& actual, const HVString& expected)
{
    HVString wanted = expected;
    wanted.Trim();
    return !actual.IsEmpty() && actual.GetLength() == static_cast<int32_t>(kDigestBytes * 2) && actual.EqualsNoCase(wanted);
}

HVString HVSha256::OfPath(const HVString& path)
{
    const HVFileHandle file = HVFileSystem::OpenFile(path, GENERIC_READ, FILE_SHARE_READ, OPEN_EXISTING);
    return file ? OfFile(file.Get()) : HVString();
}

#include "GeneratedTree.h"

#include "FolderTree.h"
#include "foundation/win/HVUniqueResource.h"

#include <algorithm>
#include <cstring>

namespace e2e
{
namespace
{
uint64_t SplitMix(uint64_t& state)
{
    uint64_t z = (state += 0x9E3779B97F4A7C15ull);
    z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9ull;
    z = (z ^ (z >> 27)) * 0x94D049BB133111EBull;
    return z ^ (z >> 31);
}

uint64_t HashPath(const std::wstring& path)
{
    uint64_t hash = 0xCBF29CE484222325ull;
    for (wchar_t c : path)
        hash = (hash ^ static_cast<uint64_t>(c)) * 0x100000001B3ull;
    return hash;
}

// Before scaling: seven in ten files of 1 to 32 KB, a quarter of 32 to 256 KB, one in twenty
// of 0.5 to 4 MB, roughly the mix of a media player's program folder.
uint64_t RawSize(uint64_t& state)
{
    const uint64_t kind = SplitMix(state) % 100;
    const uint64_t pick = SplitMix(state);
    if (kind < 70)
        return 1024 + pick % (31 * 1024);
    if (kind < 95)
        return 32 * 1024 + pick % (224 * 1024);
    return 512 * 1024 + pick % (3584 * 1024);
}

std::wstring FolderOf(const TreeShape& shape, int index)
{
    std::wstring folder = shape.top;
    const int depth = 1 + index % 3;
    if (depth >= 2)
        folder += L"Part" + std::to_wstring(index % 7) + L"\\";
    if (depth == 3)
        folder += L"Set" + std::to_wstring(index % 5) + L"\\";
    return folder + L"Folder" + std::to_wstring(index) + L"\\";
}
}

std::vector<GeneratedFile> PlanTree(const TreeShape& shape)
{
    uint64_t state = shape.seed;
    std::vector<GeneratedFile> files(static_cast<size_t>(std::max(shape.files, 0)));
    uint64_t raw = 0;
    for (size_t i = 0; i < files.size(); ++i) {
        wchar_t name[32];
        swprintf(name, std::size(name), L"File%05zu.bin", i);
        files[i].path = FolderOf(shape, static_cast<int>(i) / std::max(shape.filesPerFolder, 1)) + name;
        files[i].size = RawSize(state);
        raw += files[i].size;
    }
    if (raw > 0)
        for (GeneratedFile& f : files)
            f.size = std::max<uint64_t>(1, static_cast<uint64_t>(static_cast<double>(f.size) * shape.totalBytes / raw));
    return files;
}

uint64_t TotalSize(const std::vector<GeneratedFile>& files)
{
    uint64_t total = 0;
    for (const GeneratedFile& f : files)
        total += f.size;
    return total;
}

std::vector<GeneratedFile> ResizeSome(std::vector<GeneratedFile> files, int every)
{
    for (size_t i = 0; every > 0 && i < files.size(); i += static_cast<size_t>(every))
        files[i].size = files[i].size / 2 + 7;
    return files;
}

std::string GeneratedContent(const GeneratedFile& file, uint32_t edition)
{
    uint64_t state = HashPath(file.path) ^ (static_cast<uint64_t>(edition) << 40);
    std::string bytes(static_cast<size_t>(file.size), '\0');
    for (size_t at = 0; at < bytes.size(); at += 8) {
        const uint64_t word = SplitMix(state);
        std::memcpy(bytes.data() + at, &word, std::min<size_t>(8, bytes.size() - at));
    }
    return bytes;
}

bool WriteGeneratedTree(const std::wstring& root, const std::vector<GeneratedFile>& files, uint32_t edition,
                        const FILETIME* lastWrite)
{
    std::wstring lastFolder;
    for (const GeneratedFile& f : files) {
        const std::wstring path = root + f.path;
        const std::wstring folder = path.substr(0, path.find_last_of(L'\\') + 1);
        if (folder != lastFolder && !MakeFolder(folder))
            return false;
        lastFolder = folder;
        const std::string bytes = GeneratedContent(f, edition);
        HVFileHandle file(CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL,
                                      nullptr));
        DWORD written = 0;
        if (!file || !WriteFile(file.Get(), bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr) ||
            written != bytes.size())
            return false;
        if (lastWrite && !SetFileTime(file.Get(), nullptr, nullptr, lastWrite))
            return false;
    }
    return true;
}

FILETIME EditionStamp(WORD year)
{
    const SYSTEMTIME time = {year, 3, 0, 1, 12, 0, 0, 0};
    FILETIME stamp = {};
    SystemTimeToFileTime(&time, &stamp);
    return stamp;
}

bool HasStamp(const WIN32_FIND_DATAW& file, const FILETIME& stamp)
{
    return CompareFileTime(&file.ftLastWriteTime, &stamp) == 0;
}

std::vector<uint32_t> EditionsFound(const std::wstring& root, const std::vector<GeneratedFile>& older, uint32_t olderEdition,
                                    const std::vector<GeneratedFile>& newer, uint32_t newerEdition)
{
    std::vector<uint32_t> editions;
    for (size_t i = 0; i < older.size(); ++i) {
        std::string bytes;
        ReadFileBytes(root + older[i].path, bytes);
        editions.push_back(bytes == GeneratedContent(older[i], olderEdition)   ? olderEdition
                           : bytes == GeneratedContent(newer[i], newerEdition) ? newerEdition
                                                                               : 0);
    }
    return editions;
}
}

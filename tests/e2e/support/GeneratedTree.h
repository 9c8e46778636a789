#pragma once

#include <windows.h>

#include <cstdint>
#include <string>
#include <vector>

namespace e2e
{
// A made-up tree of program files for copy tests and the install benchmark. The same shape
// gives the same names, sizes and bytes on every machine, so runs can be compared and a test
// can tell each file's edition from its bytes alone.
struct GeneratedFile
{
    std::wstring path;  // relative: "Bulk\Part3\Set1\Folder12\File00307.bin"
    uint64_t size = 0;
};

struct TreeShape
{
    int files = 0;
    // The sizes are mixed (mostly small files, some of a few hundred KB, a few of MBs) and then
    // scaled so that they add up to about this.
    uint64_t totalBytes = 0;
    int filesPerFolder = 25;
    // Folders nest one to three levels below `top`, so that a copy also has to make folders.
    std::wstring top = L"Bulk\\";
    uint32_t seed = 1;
};

std::vector<GeneratedFile> PlanTree(const TreeShape& shape);
uint64_t TotalSize(const std::vector<GeneratedFile>& files);

// The same plan with the size of every `every`-th file changed, as a newer edition of the
// product would have it.
std::vector<GeneratedFile> ResizeSome(std::vector<GeneratedFile> files, int every);

// The bytes of a file in one edition: different editions of one path never share their bytes.
std::string GeneratedContent(const GeneratedFile& file, uint32_t edition);

// Writes every file below `root` (with a backslash). When `lastWrite` is given, each file gets
// it as its last-write time, which copies keep: a test can then tell editions apart from a
// folder listing, without reading a byte.
bool WriteGeneratedTree(const std::wstring& root, const std::vector<GeneratedFile>& files, uint32_t edition,
                        const FILETIME* lastWrite = nullptr);
// The edition of each file of a plan as found below `root`: `olderEdition` or `newerEdition`
// (whose plan has the same paths, the sizes maybe changed), or 0 for bytes of neither.
std::vector<uint32_t> EditionsFound(const std::wstring& root, const std::vector<GeneratedFile>& older, uint32_t olderEdition,
                                    const std::vector<GeneratedFile>& newer, uint32_t newerEdition);
// A last-write time for an edition: noon on the first of March of `year`; and whether a file
// of a folder listing carries it.
FILETIME EditionStamp(WORD year);
bool HasStamp(const WIN32_FIND_DATAW& file, const FILETIME& stamp);
}

#pragma once

#include "foundation/HVString.h"

#include <cstdint>
#include <string_view>

// The text side of the file system layer: everything about paths that needs no system call,
// kept apart so that it builds and is tested natively. HVFileSystem (Windows) builds on it.
//
// Paths use backslashes. A folder path ends in a backslash; functions that take folders
// accept them with or without it. The long-path form ("\\?\C:\..." and "\\?\UNC\server\...")
// is made here for the system calls only: callers, messages and logs keep the plain form.
class HVFileSystemPath
{
public:
    // "C:\..." or "\\" followed by a letter or digit (a network path). A long-path form counts
    // by what follows its prefix.
    static bool IsAbsolute(std::u16string_view path);
    static bool IsNetworkPath(std::u16string_view path);
    static bool HasLongPathPrefix(std::u16string_view path);

    // The form handed to the system: "\\?\" before a drive path, "\\?\UNC\" instead of the two
    // leading backslashes of a network path. Since the prefix switches off the system's own
    // path parsing, slashes become backslashes and "." and ".." are resolved first. Paths that
    // already carry a prefix, and relative paths (which the prefix can't express), are
    // returned unchanged.
    static HVString ToLongPath(const HVString& path);
    // The plain form of a path that may carry the long-path prefix.
    static HVString FromLongPath(const HVString& path);

    // Number of characters of the root: 3 for "C:\", the whole "\\server\share\" for a network
    // path, 1 for "\..." and 0 for a relative path.
    static int32_t RootLength(std::u16string_view path);

    // Slashes made backslashes, "." and ".." resolved (".." never climbs above the root),
    // doubled separators made single. A trailing backslash is kept.
    static HVString ResolveDots(const HVString& path);
    // ResolveDots plus a trailing backslash; an empty path stays empty.
    static HVString NormalizeFolderPath(const HVString& path);

    static HVString AddBackslash(const HVString& path);
    // Removes every trailing backslash, but keeps the one of a drive root ("C:\").
    static HVString RemoveBackslash(const HVString& path);
    // The folder part with its trailing backslash ("" when there is none).
    static HVString GetFolder(const HVString& path);
    // The last component; for a folder path ending in a backslash, the folder's own name.
    static HVString GetFileName(const HVString& path);

    // Makes a path the system accepts from text that came from users or from names: no
    // component ending in a space or point or starting with a space, single separators (a
    // network path keeps its leading two), control characters as spaces, and the characters
    // ":/*?"<>|" as "_" except the colon of a drive letter. A leading "\\?\" survives.
    static void CleanPath(HVString& path);
    static bool IsInvalidPathChar(char16_t ch);

    // The next candidate of the unique-name rule: " - 1" goes behind the base name (before the
    // extension); a name that already ends in " - N" gets N + 1. Folders keep their backslash.
    static HVString NextUniqueName(const HVString& path);

    // "%d bytes" below 1,024; otherwise KB, MB, GB, TB or PB with three significant digits
    // (truncated, as Explorer shows sizes), e.g. "1.50 KB", "12.3 MB", "999 GB".
    static HVString FileSizeText(uint64_t bytes);

    // The thumbnail cache Explorer leaves in picture folders: ignored when asking whether a
    // folder is empty.
    static bool IsThumbsDb(std::u16string_view name);
};

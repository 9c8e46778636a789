#pragma once

#include <gtest/gtest.h>

#include <windows.h>

#include <functional>
#include <map>
#include <string>
#include <vector>

namespace e2e
{
enum class TreeEntries
{
    Files,            // files only: "Sonora.exe", "Data\Default Art\Application.ico"
    FilesAndFolders,  // folders too, with a trailing backslash: "Data\", "Data\Default Art\"
};

// Relative paths below `folder`, sorted without regard to case. Empty when the folder is missing.
std::vector<std::wstring> ListTree(const std::wstring& folder, TreeEntries entries = TreeEntries::Files);

// The names in `folder` (not below it) that match a wildcard pattern ("HV Download (*).dat").
std::vector<std::wstring> FindFiles(const std::wstring& folder, const std::wstring& pattern);

// How many files below `folder` pass `which`, from a listing alone (names, sizes, times): fast
// enough to follow a running copy. Copies keep a file's last-write time, so a test that stamps
// the files it gives the installer can tell them apart in the destination.
int CountFiles(const std::wstring& folder, const std::function<bool(const WIN32_FIND_DATAW&)>& which);

struct TreeDifference
{
    std::vector<std::wstring> missing;  // expected but not there
    std::vector<std::wstring> extra;    // there but not expected
    bool Same() const { return missing.empty() && extra.empty(); }
    // "missing: ...\nextra: ..." (UTF-8), one path per line.
    std::string Describe() const;
};

// Compares the tree with the expected relative paths (case ignored, as Windows does; "/" and
// "\" both accepted). With FilesAndFolders the expected list names folders with a trailing "\".
TreeDifference CompareTree(const std::wstring& folder, const std::vector<std::wstring>& expected,
                           TreeEntries entries = TreeEntries::Files);
// For EXPECT_TRUE(e2e::TreeMatches(folder, {...})): the failure message is the difference.
::testing::AssertionResult TreeMatches(const std::wstring& folder, const std::vector<std::wstring>& expected,
                                       TreeEntries entries = TreeEntries::Files);

// Copies a folder with everything below it (for tests that need a changed setup folder).
bool CopyTree(const std::wstring& from, const std::wstring& to);
// Deletes a folder with everything below it, clearing read-only attributes first. True when
// the folder is gone afterwards (also when it never existed).
bool DeleteTree(const std::wstring& folder);
// Makes a folder and its missing parents. True when it exists afterwards.
bool MakeFolder(const std::wstring& folder);
// Under Wine, for what Wine can't do itself: the Linux name of a Windows path (empty outside
// Wine), and a program of the Linux machine started like any other ("/usr/bin/openssl ...",
// arguments with blanks quoted). Wine's process handle doesn't wait for a Linux program, so
// the caller says when it is done: true once `done` holds, false after ten seconds without.
std::wstring UnixPath(const std::wstring& path);
bool RunLinuxProgram(std::wstring commandLine, const std::function<bool()>& done);
// Makes `link` a junction to the existing folder `target`. Wine 8 has no junctions
// (FSCTL_SET_REPARSE_POINT fails): there the link is a symbolic link of the Linux file system
// (made with /bin/ln), which Wine shows as a reparse point and resolves in final paths.
bool MakeFolderLink(const std::wstring& link, const std::wstring& target);
// Removes such a link, never what it leads to. True when it is gone.
bool RemoveFolderLink(const std::wstring& link);
// Every file below the folders with its bytes, by full path: what "nothing was written" is
// checked against.
std::map<std::wstring, std::string> TreeContents(const std::vector<std::wstring>& folders);
// The name alone of a file's short (8.3) name, as the system made it ("PACK~SKP.EXE" in Wine).
std::wstring ShortFileName(const std::wstring& path);
// The security descriptor of a file or folder in the system's text form (SDDL): owner and
// access list. Empty when it can't be read.
std::wstring SecurityDescriptorText(const std::wstring& path);
// Writes a file (UTF-8 bytes as given), making its folder. For arranging test input.
bool WriteFileBytes(const std::wstring& path, const std::string& bytes);
// Reads a whole file; false when it can't be read.
bool ReadFileBytes(const std::wstring& path, std::string& bytes);
// The same for checks that only look at the text: empty when the file can't be read.
std::string ReadFileText(const std::wstring& path);
// The file's text once it has `lines` line breaks, or whatever it has after ten seconds: for
// files another process writes (the sample product's record of commands).
std::string WaitForLines(const std::wstring& path, int lines);
}

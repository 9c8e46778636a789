#include "FolderTree.h"

#include "TestPaths.h"
#include "foundation/win/HVUniqueResource.h"

#include <windows.h>
#include <aclapi.h>
#include <sddl.h>
#include <winioctl.h>

#include <algorithm>
#include <functional>
#include <vector>

namespace e2e
{
namespace
{
std::wstring WithSlash(std::wstring folder)
{
    if (!folder.empty() && folder.back() != L'\\' && folder.back() != L'/')
        folder += L'\\';
    return folder;
}

std::wstring Normalised(std::wstring path)
{
    std::replace(path.begin(), path.end(), L'/', L'\\');
    return path;
}

std::wstring Folded(const std::wstring& path)
{
    std::wstring out = Normalised(path);
    if (!out.empty())
        CharUpperBuffW(out.data(), static_cast<DWORD>(out.size()));
    return out;
}

bool LessNoCase(const std::wstring& a, const std::wstring& b)
{
    return Folded(a) < Folded(b);
}

bool IsDots(const wchar_t* name)
{
    return wcscmp(name, L".") == 0 || wcscmp(name, L"..") == 0;
}

// Every file and folder below root + relative, parents before their contents.
void Walk(const std::wstring& root, const std::wstring& relative,
          const std::function<void(const std::wstring& path, const WIN32_FIND_DATAW& data)>& visit)
{
    WIN32_FIND_DATAW data;
    HVFindHandle find(FindFirstFileW((root + relative + L"*").c_str(), &data));
    if (!find)
        return;
    do
    {
        if (IsDots(data.cFileName))
            continue;
        const std::wstring path = relative + data.cFileName;
        const bool folder = (data.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
        visit(folder ? path + L"\\" : path, data);
        if (folder)
            Walk(root, path + L"\\", visit);
    } while (FindNextFileW(find.Get(), &data));
}
}

std::vector<std::wstring> FindFiles(const std::wstring& folder, const std::wstring& pattern)
{
    std::vector<std::wstring> found;
    WIN32_FIND_DATAW data;
    const HVFindHandle find(::FindFirstFileW((WithSlash(folder) + pattern).c_str(), &data));
    for (bool more = find.IsValid(); more; more = ::FindNextFileW(find.Get(), &data) != FALSE)
        found.push_back(data.cFileName);
    return found;
}

std::vector<std::wstring> ListTree(const std::wstring& folder, TreeEntries entries)
{
    std::vector<std::wstring> out;
    Walk(WithSlash(folder), L"", [&](const std::wstring& path, const WIN32_FIND_DATAW&) {
        if (entries == TreeEntries::FilesAndFolders || path.back() != L'\\')
            out.push_back(path);
    });
    std::sort(out.begin(), out.end(), LessNoCase);
    return out;
}

int CountFiles(const std::wstring& folder, const std::function<bool(const WIN32_FIND_DATAW&)>& which)
{
    int count = 0;
    Walk(WithSlash(folder), L"", [&](const std::wstring&, const WIN32_FIND_DATAW& data) {
        count += !(data.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) && which(data);
    });
    return count;
}

std::string TreeDifference::Describe() const
{
    std::string out;
    if (!missing.empty())
    {
        out += "missing:";
        for (const std::wstring& p : missing)
            out += "\n  " + Utf8(p);
    }
    if (!extra.empty())
    {
        out += out.empty() ? "extra:" : "\nextra:";
        for (const std::wstring& p : extra)
            out += "\n  " + Utf8(p);
    }
    return out.empty() ? "the trees are the same" : out;
}

TreeDifference CompareTree(const std::wstring& folder, const std::vector<std::wstring>& expected, TreeEntries entries)
{
    std::vector<std::wstring> actual = ListTree(folder, entries);
    std::vector<std::wstring> wanted;
    for (const std::wstring& p : expected)
        wanted.push_back(Normalised(p));
    std::sort(wanted.begin(), wanted.end(), LessNoCase);
    wanted.erase(std::unique(wanted.begin(), wanted.end(),
                             [](const std::wstring& a, const std::wstring& b) { return Folded(a) == Folded(b); }),
                 wanted.end());

    TreeDifference diff;
    std::set_difference(wanted.begin(), wanted.end(), actual.begin(), actual.end(), std::back_inserter(diff.missing),
                        LessNoCase);
    std::set_difference(actual.begin(), actual.end(), wanted.begin(), wanted.end(), std::back_inserter(diff.extra),
                        LessNoCase);
    return diff;
}

::testing::AssertionResult TreeMatches(const std::wstring& folder, const std::vector<std::wstring>& expected,
                                       TreeEntries entries)
{
    const TreeDifference diff = CompareTree(folder, expected, entries);
    if (diff.Same())
        return ::testing::AssertionSuccess();
    return ::testing::AssertionFailure() << "the folder " << Utf8(folder) << " differs from the expected tree\n"
                                         << diff.Describe();
}

bool MakeFolder(const std::wstring& folder)
{
    const std::wstring path = WithSlash(Normalised(folder));
    // Make each level in turn; the drive ("C:\") and an existing level are simply passed.
    for (size_t cut = path.find(L'\\'); cut != std::wstring::npos; cut = path.find(L'\\', cut + 1))
    {
        const std::wstring level = path.substr(0, cut);
        if (level.empty() || level.back() == L':')
            continue;
        CreateDirectoryW(level.c_str(), nullptr);
    }
    const DWORD attributes = GetFileAttributesW(path.c_str());
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY);
}

bool CopyTree(const std::wstring& from, const std::wstring& to)
{
    const std::wstring source = WithSlash(from);
    const std::wstring target = WithSlash(to);
    if (!MakeFolder(target))
        return false;
    bool ok = true;
    for (const std::wstring& entry : ListTree(source, TreeEntries::FilesAndFolders))
    {
        if (entry.back() == L'\\')
            ok = MakeFolder(target + entry) && ok;
        else
            ok = CopyFileW((source + entry).c_str(), (target + entry).c_str(), FALSE) && ok;
    }
    return ok;
}

bool DeleteTree(const std::wstring& folder)
{
    const std::wstring root = WithSlash(folder);
    if (GetFileAttributesW(root.c_str()) == INVALID_FILE_ATTRIBUTES)
        return true;
    std::vector<std::wstring> entries = ListTree(root, TreeEntries::FilesAndFolders);
    // Deepest first, so that each folder is empty when its turn comes.
    std::sort(entries.begin(), entries.end(), [](const std::wstring& a, const std::wstring& b) { return a > b; });
    for (const std::wstring& entry : entries)
    {
        const std::wstring path = root + entry;
        SetFileAttributesW(path.c_str(), FILE_ATTRIBUTE_NORMAL);
        if (entry.back() == L'\\')
            RemoveDirectoryW(path.c_str());
        else
            DeleteFileW(path.c_str());
    }
    RemoveDirectoryW(root.c_str());
    return GetFileAttributesW(root.c_str()) == INVALID_FILE_ATTRIBUTES;
}

bool WriteFileBytes(const std::wstring& path, const std::string& bytes)
{
    const std::wstring normal = Normalised(path);
    const size_t cut = normal.find_last_of(L'\\');
    if (cut != std::wstring::npos && !MakeFolder(normal.substr(0, cut + 1)))
        return false;
    HVFileHandle file(CreateFileW(normal.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL,
                                  nullptr));
    if (!file)
        return false;
    DWORD written = 0;
    return WriteFile(file.Get(), bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr) &&
           written == bytes.size();
}

bool ReadFileBytes(const std::wstring& path, std::string& bytes)
{
    bytes.clear();
    HVFileHandle file(CreateFileW(Normalised(path).c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE,
                                  nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
    if (!file)
        return false;
    char buffer[64 * 1024];
    DWORD got = 0;
    while (ReadFile(file.Get(), buffer, sizeof(buffer), &got, nullptr) && got > 0)
        bytes.append(buffer, got);
    return true;
}

std::string ReadFileText(const std::wstring& path)
{
    std::string bytes;
    ReadFileBytes(path, bytes);
    return bytes;
}

std::string WaitForLines(const std::wstring& path, int lines)
{
    std::string text = ReadFileText(path);
    for (int i = 0; i < 500 && static_cast<int>(std::count(text.begin(), text.end(), '\n')) < lines; ++i) {
        ::Sleep(20);
        text = ReadFileText(path);
    }
    return text;
}

std::wstring UnixPath(const std::wstring& path)
{
    using UnixName = char*(CDECL*)(LPCWSTR);
    const auto unixName = reinterpret_cast<UnixName>(
        reinterpret_cast<void*>(::GetProcAddress(::GetModuleHandleW(L"kernel32.dll"), "wine_get_unix_file_name")));
    char* name = unixName ? unixName(Normalised(path).c_str()) : nullptr;
    const std::wstring unix = name ? Wide(name) : std::wstring();
    ::HeapFree(::GetProcessHeap(), 0, name);
    return unix;
}

bool RunLinuxProgram(std::wstring commandLine, const std::function<bool()>& done)
{
    STARTUPINFOW startup = {};
    startup.cb = sizeof(startup);
    PROCESS_INFORMATION process = {};
    const std::wstring exe = Normalised(L"Z:" + commandLine.substr(0, commandLine.find(L' ')));
    if (!::CreateProcessW(exe.c_str(), commandLine.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup, &process))
        return false;
    // Wine starts a Linux program without a Windows process: no process handle comes back, and
    // the thread value is not a handle of ours (closing it closed a socket of the next test).
    const HVHandle running(process.hProcess), thread(process.hProcess ? process.hThread : nullptr);
    for (int i = 0; i < 200 && !done(); ++i)
        ::Sleep(50);
    return done();
}

bool MakeFolderLink(const std::wstring& link, const std::wstring& target)
{
    if (!::CreateDirectoryW(link.c_str(), nullptr))
        return false;
    {
        // A mount-point reparse buffer: tag, sizes, then the "\\??\\" name and the printed name.
        const std::wstring substitute = L"\\??\\" + target, print = target;
        std::vector<char> buffer(16 + (substitute.size() + print.size() + 2) * sizeof(wchar_t));
        const auto put16 = [&](size_t at, size_t value) { *reinterpret_cast<USHORT*>(&buffer[at]) = static_cast<USHORT>(value); };
        *reinterpret_cast<ULONG*>(&buffer[0]) = IO_REPARSE_TAG_MOUNT_POINT;
        put16(4, buffer.size() - 8);
        put16(10, substitute.size() * sizeof(wchar_t));
        put16(12, (substitute.size() + 1) * sizeof(wchar_t));
        put16(14, print.size() * sizeof(wchar_t));
        std::copy_n(reinterpret_cast<const char*>(substitute.c_str()), substitute.size() * 2, &buffer[16]);
        std::copy_n(reinterpret_cast<const char*>(print.c_str()), print.size() * 2, &buffer[16 + (substitute.size() + 1) * 2]);
        const HVFileHandle folder(::CreateFileW(link.c_str(), GENERIC_WRITE, 0, nullptr, OPEN_EXISTING,
                                                FILE_FLAG_BACKUP_SEMANTICS | FILE_FLAG_OPEN_REPARSE_POINT, nullptr));
        DWORD returned = 0;
        if (folder && ::DeviceIoControl(folder.Get(), FSCTL_SET_REPARSE_POINT, buffer.data(), static_cast<DWORD>(buffer.size()),
                                        nullptr, 0, &returned, nullptr))
            return true;
    }
    ::RemoveDirectoryW(link.c_str());
    return RunLinuxProgram(L"/bin/ln -s \"" + UnixPath(target) + L"\" \"" + UnixPath(link) + L"\"", [&] {
        const DWORD attributes = ::GetFileAttributesW(link.c_str());
        return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_REPARSE_POINT);
    });
}

bool RemoveFolderLink(const std::wstring& link)
{
    const auto gone = [&] { return ::GetFileAttributesW(link.c_str()) == INVALID_FILE_ATTRIBUTES; };
    return ::RemoveDirectoryW(link.c_str()) || gone() || RunLinuxProgram(L"/bin/rm \"" + UnixPath(link) + L"\"", gone);
}

std::map<std::wstring, std::string> TreeContents(const std::vector<std::wstring>& folders)
{
    std::map<std::wstring, std::string> files;
    for (const std::wstring& folder : folders) {
        for (const std::wstring& file : ListTree(folder))
            files[WithSlash(folder) + file] = ReadFileText(WithSlash(folder) + file);
    }
    return files;
}

std::wstring ShortFileName(const std::wstring& path)
{
    wchar_t buffer[MAX_PATH] = {};
    const std::wstring shortPath(buffer, ::GetShortPathNameW(path.c_str(), buffer, MAX_PATH));
    return shortPath.substr(shortPath.rfind(L'\\') + 1);
}

std::wstring SecurityDescriptorText(const std::wstring& path)
{
    constexpr SECURITY_INFORMATION kWhat = OWNER_SECURITY_INFORMATION | DACL_SECURITY_INFORMATION;
    PSECURITY_DESCRIPTOR raw = nullptr;
    if (::GetNamedSecurityInfoW(path.c_str(), SE_FILE_OBJECT, kWhat, nullptr, nullptr, nullptr, nullptr, &raw) != ERROR_SUCCESS)
        return {};
    const HVLocalMemory descriptor(raw);
    LPWSTR text = nullptr;
    if (!::ConvertSecurityDescriptorToStringSecurityDescriptorW(raw, SDDL_REVISION_1, kWhat, &text, nullptr))
        return {};
    const HVLocalMemory owned(text);
    return text;
}
}

#include "foundation/win/HVContainedPath.h"

#include "foundation/HVFileSystemPath.h"
#include "foundation/HVLog.h"
#include "foundation/win/HVFileSystem.h"

#include <vector>

namespace
{
using Path = HVFileSystemPath;

template <class... Args>
bool Refuse(const char16_t* format, const Args&... args)
{
    HVLog::Write(HVLog::kWarning, "HVContainedPath::Check", format, args...);
    return false;
}
}   // namespace

HVString HVContainedPath::FinalPath(const HVString& path)
{
    // No access asked for: a file held open without sharing still tells where it is.
    const HVFileHandle file = HVFileSystem::OpenFile(path, 0, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                                                     OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS);
    if (!file)
        return HVString();
    std::vector<wchar_t> buffer(MAX_PATH + 1);
    for (int tries = 0; tries < 2; ++tries) {
        const DWORD length = ::GetFinalPathNameByHandleW(file.Get(), buffer.data(), static_cast<DWORD>(buffer.size()),
                                                         FILE_NAME_NORMALIZED | VOLUME_NAME_DOS);
        if (length == 0)
            return HVString();
        if (length < buffer.size()) {
            const HVString plain = Path::FromLongPath(HVString(buffer.data(), static_cast<int32_t>(length)));
            return HVFileSystem::FolderExists(path) ? Path::AddBackslash(plain) : plain;
        }
        buffer.resize(length + 1);
    }
    return HVString();
}

bool HVContainedPath::Check(const HVString& path, const HVString& folder)
{
    const HVString root = Path::NormalizeFolderPath(folder);
    const HVString resolved = Path::ResolveDots(path);
    if (root.IsEmpty() || !resolved.StartsWithNoCase(root.view()))
        return Refuse(u"%s does not lie in %s", path, root);
    const HVString rootFinal = FinalPath(root);
    if (rootFinal.IsEmpty())
        return true;  // nothing of it exists yet, so nothing in it can lead elsewhere

    HVString current = root;
    HVString deepest = root;
    const HVString rest = resolved.Mid(root.GetLength());
    for (int32_t start = 0; start < rest.GetLength();) {
        int32_t end = rest.Find(u'\\', start);
        if (end < 0)
            end = rest.GetLength();
        const HVString part = rest.Mid(start, end - start);
        start = end + 1;
        current += part;
        WIN32_FIND_DATAW found;
        const HVFindHandle find(::FindFirstFileW(Path::ToLongPath(current).w(), &found));
        if (!find)
            break;  // the rest is still to be made
        if (found.dwFileAttributes & FILE_ATTRIBUTE_REPARSE_POINT)
            return Refuse(u"%s is a junction or link: not followed", current);
        if (::CompareStringOrdinal(found.cFileName, -1, part.w(), part.GetLength(), TRUE) != CSTR_EQUAL)
            return Refuse(u"%s is another name of %s", current, HVString(found.cFileName));
        deepest = current;
        current += u"\\";
    }
    const HVString deepestFinal = FinalPath(deepest);
    if (deepestFinal.IsEmpty() || !Path::AddBackslash(deepestFinal).StartsWithNoCase(rootFinal.view()))
        return Refuse(u"%s leads to %s", deepest, deepestFinal);
    return true;
}

#include "foundation/win/HVZipUnpacker.h"

#include "foundation/HVFileSystemPath.h"
#include "foundation/HVLog.h"
#include "foundation/win/HVContainedPath.h"
#include "foundation/win/HVFileSystem.h"

bool HVZipUnpacker::ReadArchive(const HVString& path, std::vector<uint8_t>& bytes, uint64_t maxBytes)
{
    uint64_t size = 0;
    if (!HVFileSystem::GetFileSize(path, size) || size > maxBytes)
        return false;
    return HVFileSystem::ReadFile(path, bytes);
}

bool HVZipUnpacker::Unpack(HVZipReader& reader, const HVString& folder, bool keepFolders, HVString& error)
{
    const HVString root = HVFileSystemPath::NormalizeFolderPath(folder);
    uint64_t freeBytes = 0;
    if (HVFileSystem::GetFreeDiskSpace(root, freeBytes) && freeBytes < reader.TotalSize() + (16u << 20)) {
        error = HVString::Format(u"Not enough room on the drive of %s", root);
        return false;
    }
    if (!HVFileSystem::MakeDirectoryTree(root)) {
        error = HVString::Format(u"Cannot make the folder %s", root);
        return false;
    }
    std::vector<uint8_t> bytes;
    for (size_t i = 0; i < reader.Members().size(); ++i) {
        const HVZipReader::Member& member = reader.Members()[i];
        if (member.isFolder && !keepFolders)
            continue;
        const HVString relative = keepFolders ? member.name : HVFileSystemPath::GetFileName(member.name);
        const HVString target = root + relative;
        // The reader has refused every name that could leave the folder; this is the second lock.
        if (!HVContainedPath::Check(target, root)) {
            error = HVString::Format(u"The member '%s' would leave the folder", member.name);
            return false;
        }
        if (member.isFolder) {
            HVFileSystem::MakeDirectoryTree(target);
            continue;
        }
        // The folder was empty and every path differs from every other: a file already there is
        // one the system takes this name for too (its case folded another way, a short alias).
        if (keepFolders && HVFileSystem::Exists(target, true)) {
            error = HVString::Format(u"The member '%s' names a file the archive has already written", member.name);
            return false;
        }
        if (!reader.Extract(i, bytes)) {
            error = reader.GetError();
            return false;
        }
        HVFileSystem::MakeDirectoryTree(HVFileSystemPath::GetFolder(target));
        const HVString partial = target + u".part";
        if (!HVFileSystem::WriteFile(partial, bytes.data(), bytes.size()) ||
            !HVFileSystem::MoveFile(partial, target, true, false)) {
            HVFileSystem::DeleteFile(partial);
            error = HVString::Format(u"Cannot write %s", target);
            return false;
        }
    }
    HVLog::Write(HVLog::kInfo, "HVZipUnpacker::Unpack", u"%d members into %s",
                 static_cast<int32_t>(reader.Members().size()), root);
    return true;
}

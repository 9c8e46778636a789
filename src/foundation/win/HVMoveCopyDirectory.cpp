#include "foundation/win/HVMoveCopyDirectory.h"

#include "foundation/HVLog.h"
#include "foundation/win/HVFileSystem.h"

bool HVMoveCopyDirectory::AddTree(const HVString& sourceFolder, const HVString& targetFolder)
{
    const HVString source = HVFileSystemPath::AddBackslash(sourceFolder);
    const HVString target = HVFileSystemPath::AddBackslash(targetFolder);
    std::vector<HVFileSystem::Entry> entries;
    if (!HVFileSystem::EnumerateFolder(source, entries)) {
        HVLog::Write(HVLog::kError, "HVMoveCopyDirectory::AddTree", u"Error %d reading folder %s", ::GetLastError(),
                     sourceFolder);
        return false;
    }
    AddItem(source, target, true);
    bool ok = true;
    for (const HVFileSystem::Entry& entry : entries)
        if (!entry.isFolder)
            AddItem(source + entry.name, target + entry.name, false);
    for (const HVFileSystem::Entry& entry : entries)
        if (entry.isFolder && !(entry.attributes & FILE_ATTRIBUTE_REPARSE_POINT))
            ok = AddTree(source + entry.name, target + entry.name) && ok;
    return ok;
}

void HVMoveCopyDirectory::AddItem(const HVString& source, const HVString& target, bool isFolder)
{
    items_.push_back({source, target, isFolder});
}

bool HVMoveCopyDirectory::Run()
{
    failed_.clear();
    for (const Item& item : items_) {
        if (item.isFolder && !HVFileSystem::MakeDirectoryTree(item.target))
            failed_.push_back(item);
    }
    for (const Item& item : items_) {
        if (item.isFolder)
            continue;
        if (replaceExisting_ && HVFileSystem::Exists(item.target, false))
            HVFileSystem::SetNormalAttributes(item.target);
        DWORD error = ERROR_SUCCESS;
        const bool done = mode_ == Mode::Copy
                              ? HVFileSystem::CopyFile(item.source, item.target, !replaceExisting_, &error)
                              : HVFileSystem::MoveFile(item.source, item.target, replaceExisting_, true, &error);
        if (!done) {
            HVLog::Write(HVLog::kError, "HVMoveCopyDirectory::Run", mode_ == Mode::Copy ? u"Error %d copying %s to %s"
                                                                                        : u"Error %d moving %s to %s",
                         error, item.source, item.target);
            failed_.push_back(item);
        }
    }
    if (mode_ == Mode::Move) {
        // Deepest first, so that a parent is only asked once its children are gone; a folder
        // that still holds something (a file that failed to move) simply stays.
        for (auto it = items_.rbegin(); it != items_.rend(); ++it)
            if (it->isFolder && HVFileSystem::IsFolderEmpty(it->source, true))
                HVFileSystem::DeleteFolderTree(it->source);
    }
    return failed_.empty();
}

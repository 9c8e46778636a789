#include "changes/win/CInstallRecordFile.h"

#include "changes/CInstallRecord.h"
#include "foundation/HVLog.h"
#include "foundation/win/HVFileSystem.h"

HVString CInstallRecordFile::PathIn(const HVString& installFolder)
{
    return HVFileSystem::NormalizeFolderPath(installFolder) + CInstallRecord::kFileName;
}

bool CInstallRecordFile::Open(const HVString& installFolder, const std::vector<InstallChange>& earlier,
                              const std::vector<HVString>& userFolders, bool endsWithoutLineEnd)
{
    path_ = PathIn(installFolder);
    file_ = HVFileSystem::OpenFile(path_, FILE_APPEND_DATA | SYNCHRONIZE, FILE_SHARE_READ, OPEN_ALWAYS);
    if (!file_) {
        HVLog::Write(HVLog::kError, "CInstallRecordFile::Open", u"Error %d opening %s: changes are not recorded",
                     static_cast<int>(::GetLastError()), path_);
        return false;
    }
    if (!Write((endsWithoutLineEnd ? "\r\n" : "") + CInstallRecord::Header(userFolders)))
        return false;
    for (const InstallChange& change : earlier)
        Append(change);
    HVLog::Write(HVLog::kInfo, "CInstallRecordFile::Open", u"Recording changes in %s (%d noted before)", path_,
                 static_cast<int>(earlier.size()));
    return true;
}

bool CInstallRecordFile::Append(const InstallChange& change)
{
    return file_ && Write(CInstallRecord::EncodeLine(change));
}

bool CInstallRecordFile::Append(std::span<const InstallChange> changes)
{
    std::string lines;
    for (const InstallChange& change : changes)
        lines += CInstallRecord::EncodeLine(change);
    return file_ && Write(lines);
}

bool CInstallRecordFile::Write(const std::string& bytes)
{
    DWORD written = 0;
    if (::WriteFile(file_.Get(), bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr) &&
        written == bytes.size())
        return true;
    // Once is enough in the log: a full disk fails every line after.
    if (!failed_)
        HVLog::Write(HVLog::kError, "CInstallRecordFile::Write", u"Error %d writing %s", static_cast<int>(::GetLastError()),
                     path_);
    failed_ = true;
    return false;
}

void CInstallRecordFile::Finish()
{
    if (!file_)
        return;
    if (!::FlushFileBuffers(file_.Get()))
        HVLog::Write(HVLog::kWarning, "CInstallRecordFile::Finish", u"Error %d flushing %s",
                     static_cast<int>(::GetLastError()), path_);
    file_.Reset();
}

bool CInstallRecordFile::CutBack(const HVString& installFolder, uint64_t size)
{
    const HVString path = PathIn(installFolder);
    if (size == 0)
        return !HVFileSystem::Exists(path, false) || HVFileSystem::DeleteFile(path);
    const HVFileHandle file = HVFileSystem::OpenFile(path, GENERIC_WRITE, 0, OPEN_EXISTING);
    LARGE_INTEGER at;
    at.QuadPart = static_cast<LONGLONG>(size);
    const bool cut = file && ::SetFilePointerEx(file.Get(), at, nullptr, FILE_BEGIN) && ::SetEndOfFile(file.Get());
    HVLog::Write(cut ? HVLog::kInfo : HVLog::kError, "CInstallRecordFile::CutBack", u"%s cut back to %I64u bytes: %s", path,
                 size, cut ? u"done" : u"failed");
    return cut;
}

#include "changes/win/CInstallRecordFile.h"

#include "changes/CInstallRecord.h"
#include "foundation/HVLog.h"
#include "foundation/win/HVFileSystem.h"

bool CInstallRecordFile::Open(const HVString& installFolder, const std::vector<InstallChange>& earlier)
{
    path_ = HVFileSystem::NormalizeFolderPath(installFolder) + CInstallRecord::kFileName;
    // A run ended by a kill may have left its last line without a line end; this run's header
    // must start a line of its own, or it would be read as part of that torn line.
    std::string start;
    std::vector<uint8_t> existing;
    DWORD disposition = OPEN_ALWAYS;
    if (HVFileSystem::Exists(path_, false) && HVFileSystem::ReadFile(path_, existing) && !existing.empty()) {
        const std::string_view text(reinterpret_cast<const char*>(existing.data()), existing.size());
        const CInstallRecord::Contents contents = CInstallRecord::Parse(text);
        if (!contents.problem.IsEmpty() && contents.changes.empty()) {
            // Nothing in it can be read back: not a record this program can add to.
            HVLog::Write(HVLog::kWarning, "CInstallRecordFile::Open", u"%s is started again: %s", path_, contents.problem);
            disposition = CREATE_ALWAYS;
        } else if (text.back() != '\n') {
            start = "\r\n";
        }
    }
    file_ = HVFileSystem::OpenFile(path_, FILE_APPEND_DATA | SYNCHRONIZE, FILE_SHARE_READ, disposition);
    if (!file_) {
        HVLog::Write(HVLog::kError, "CInstallRecordFile::Open", u"Error %d opening %s: changes are not recorded",
                     static_cast<int>(::GetLastError()), path_);
        return false;
    }
    if (!Write(start + CInstallRecord::Header()))
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

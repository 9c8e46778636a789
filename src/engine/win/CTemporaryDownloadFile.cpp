#include "engine/win/CTemporaryDownloadFile.h"

#include "engine/CDependencyRules.h"
#include "foundation/HVLog.h"
#include "foundation/win/HVFileSystem.h"

CTemporaryDownloadFile::~CTemporaryDownloadFile()
{
    file_.Reset();
    if (created_ && !::DeleteFileW(path_.w()))
        HVLog::Write(HVLog::kError, "CTemporaryDownloadFile", u"Can't delete %s (error %d)", path_, ::GetLastError());
}

bool CTemporaryDownloadFile::Create()
{
    wchar_t folder[MAX_PATH + 1] = {};
    const DWORD length = ::GetTempPathW(MAX_PATH + 1, folder);
    if (length == 0 || length > MAX_PATH) {
        HVLog::Write(HVLog::kError, "CTemporaryDownloadFile::Create", u"No temporary folder (error %d)", ::GetLastError());
        return false;
    }
    const HVString temporary = HVFileSystem::NormalizeFolderPath(HVString(folder, static_cast<int32_t>(length)));
    for (int32_t number = 1; number <= kMaxNumber; ++number) {
        path_ = CDependencyRules::TemporaryDownloadPath(temporary, number);
        // CREATE_NEW: a name that is taken, by whomever, is passed by.
        file_.Reset(::CreateFileW(path_.w(), GENERIC_WRITE, 0, nullptr, CREATE_NEW, FILE_ATTRIBUTE_TEMPORARY, nullptr));
        if (file_) {
            created_ = true;
            return true;
        }
        const DWORD error = ::GetLastError();
        if (error != ERROR_FILE_EXISTS && error != ERROR_ALREADY_EXISTS && error != ERROR_ACCESS_DENIED) {
            HVLog::Write(HVLog::kError, "CTemporaryDownloadFile::Create", u"Can't create %s (error %d)", path_, error);
            return false;
        }
    }
    HVLog::Write(HVLog::kError, "CTemporaryDownloadFile::Create", u"No free name up to %s", path_);
    return false;
}

bool CTemporaryDownloadFile::ReopenForReading()
{
    if (!created_)
        return false;
    file_.Reset();
    file_.Reset(::CreateFileW(path_.w(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL,
                              nullptr));
    if (!file_)
        HVLog::Write(HVLog::kError, "CTemporaryDownloadFile::ReopenForReading", u"Can't open %s (error %d)", path_,
                     ::GetLastError());
    return file_.IsValid();
}

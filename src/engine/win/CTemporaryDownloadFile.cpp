#include "engine/win/CTemporaryDownloadFile.h"

#include "engine/CDependencyRules.h"
#include "foundation/HVFileSystemPath.h"
#include "foundation/HVLog.h"
#include "foundation/win/HVFileSystem.h"

#include <sddl.h>

namespace
{
// "<Windows>\Temp\", where only the system's own processes and administrators work; the
// machine's program data where that is missing.
HVString SecureBase()
{
    wchar_t buffer[MAX_PATH + 1] = {};
    const UINT length = ::GetWindowsDirectoryW(buffer, MAX_PATH + 1);
    if (length > 0 && length <= MAX_PATH) {
        const HVString temp = HVFileSystemPath::AddBackslash(HVString(buffer)) + u"Temp\\";
        if (HVFileSystem::FolderExists(temp))
            return temp;
    }
    const DWORD data = ::GetEnvironmentVariableW(L"ProgramData", buffer, MAX_PATH + 1);
    return data > 0 && data <= MAX_PATH ? HVFileSystemPath::AddBackslash(HVString(buffer)) : HVString();
}
}   // namespace

CTemporaryDownloadFile::~CTemporaryDownloadFile()
{
    file_.Reset();
    if (created_ && !::DeleteFileW(path_.w()))
        HVLog::Write(HVLog::kError, "CTemporaryDownloadFile", u"Can't delete %s (error %d)", path_, ::GetLastError());
    if (!folder_.IsEmpty() && !HVFileSystem::RemoveFolder(folder_))
        HVLog::Write(HVLog::kError, "CTemporaryDownloadFile", u"Can't remove %s (error %d)", folder_, ::GetLastError());
}

bool CTemporaryDownloadFile::CreateFolder()
{
    const HVString base = SecureBase();
    HVLocalMemory descriptor;
    if (base.IsEmpty() || !::ConvertStringSecurityDescriptorToSecurityDescriptorW(
                              kFolderSecurity, SDDL_REVISION_1, reinterpret_cast<PSECURITY_DESCRIPTOR*>(descriptor.Receive()),
                              nullptr)) {
        HVLog::Write(HVLog::kError, "CTemporaryDownloadFile::Create", u"No place for downloads (error %d)", ::GetLastError());
        return false;
    }
    SECURITY_ATTRIBUTES attributes = {sizeof(attributes), descriptor.Get(), FALSE};
    for (int32_t number = 1; number <= kMaxNumber; ++number) {
        const HVString folder = HVString::Format(u"%sInstall Wizard Download %d\\", base, number);
        path_ = folder;
        // Made new: a folder someone else made under that name may let them in, and is passed by.
        if (::CreateDirectoryW(HVFileSystemPath::ToLongPath(folder).w(), &attributes)) {
            folder_ = folder;
            return true;
        }
        const DWORD error = ::GetLastError();
        if (error != ERROR_ALREADY_EXISTS && error != ERROR_ACCESS_DENIED) {
            HVLog::Write(HVLog::kError, "CTemporaryDownloadFile::Create", u"Can't make %s (error %d)", folder, error);
            return false;
        }
    }
    HVLog::Write(HVLog::kError, "CTemporaryDownloadFile::Create", u"No free name up to %s", path_);
    return false;
}

bool CTemporaryDownloadFile::Create(const HVString& name)
{
    if (!CreateFolder())
        return false;
    path_ = name.IsEmpty() ? CDependencyRules::TemporaryDownloadPath(folder_, 1) : folder_ + name;
    file_ = HVFileSystem::OpenFile(path_, GENERIC_WRITE, 0, CREATE_NEW, FILE_ATTRIBUTE_TEMPORARY);
    if (!file_) {
        HVLog::Write(HVLog::kError, "CTemporaryDownloadFile::Create", u"Can't create %s (error %d)", path_, ::GetLastError());
        return false;
    }
    created_ = true;
    return true;
}

bool CTemporaryDownloadFile::ReopenForReading()
{
    if (!created_)
        return false;
    file_.Reset();
    file_ = HVFileSystem::OpenFile(path_, GENERIC_READ, FILE_SHARE_READ, OPEN_EXISTING);
    if (!file_)
        HVLog::Write(HVLog::kError, "CTemporaryDownloadFile::ReopenForReading", u"Can't open %s (error %d)", path_,
                     ::GetLastError());
    return file_.IsValid();
}

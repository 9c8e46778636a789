#include "foundation/win/HVFileLogger.h"

#include <string>

bool HVFileLogger::Open(const HVString& path)
{
    std::lock_guard lock(mutex_);
    file_.Reset(::CreateFileW(path.w(), GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, CREATE_ALWAYS,
                              FILE_ATTRIBUTE_NORMAL, nullptr));
    if (!file_)
        return false;
    path_ = path;
    return true;
}

void HVFileLogger::Write(int level, const char* source, const HVString& message)
{
    SYSTEMTIME now;
    ::GetLocalTime(&now);
    const HVString line = HVString::Format(u"%04d-%02d-%02d %02d:%02d:%02d.%03d [%5d] L%d %s: %s\r\n", now.wYear,
                                           now.wMonth, now.wDay, now.wHour, now.wMinute, now.wSecond,
                                           now.wMilliseconds, ::GetCurrentThreadId(), level, source ? source : "",
                                           message);
    const std::string utf8 = line.ToUtf8();
    std::lock_guard lock(mutex_);
    if (!file_)
        return;
    DWORD written = 0;
    ::WriteFile(file_.Get(), utf8.data(), static_cast<DWORD>(utf8.size()), &written, nullptr);
}

HVString HVFileLogger::DatedName(const HVString& folder, const HVString& stem)
{
    SYSTEMTIME now;
    ::GetLocalTime(&now);
    HVString name = folder;
    if (!name.IsEmpty() && !name.EndsWith(u"\\"))
        name += u'\\';
    name.AppendFormat(u"%s %04d-%02d-%02d %02d-%02d-%02d.log", stem, now.wYear, now.wMonth, now.wDay, now.wHour,
                      now.wMinute, now.wSecond);
    return name;
}

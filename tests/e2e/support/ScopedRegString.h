#pragma once

#include <windows.h>

#include <optional>
#include <string>

namespace e2e
{
// A registry string set for as long as the object lives, then put back as it was (Wine's
// "Software\Wine" "Version" picks the Windows version new processes see).
class ScopedRegString
{
public:
    ScopedRegString(HKEY root, std::wstring path, std::wstring name, const std::wstring& value);
    ~ScopedRegString();
    ScopedRegString(const ScopedRegString&) = delete;
    ScopedRegString& operator=(const ScopedRegString&) = delete;

private:
    HKEY root_;
    std::wstring path_;
    std::wstring name_;
    std::optional<std::wstring> old_;
};
}

#pragma once

// Shared by the stand-in programs that leave a trace for tests to read: a UTF-8 line appended
// to a file beside the program.
#include "foundation/win/HVUniqueResource.h"

#include <windows.h>

#include <string>

namespace sample
{
// The folder of the running module (program or DLL), with a trailing backslash.
inline std::wstring ModuleFolder(HMODULE module = nullptr)
{
    wchar_t path[MAX_PATH * 4];
    const DWORD length = GetModuleFileNameW(module, path, static_cast<DWORD>(std::size(path)));
    std::wstring full(path, length);
    return full.substr(0, full.find_last_of(L'\\') + 1);
}

inline std::wstring ModulePath(HMODULE module)
{
    wchar_t path[MAX_PATH * 4];
    const DWORD length = GetModuleFileNameW(module, path, static_cast<DWORD>(std::size(path)));
    return std::wstring(path, length);
}

inline std::string Utf8(const std::wstring& text)
{
    if (text.empty())
        return {};
    const int size = WideCharToMultiByte(CP_UTF8, 0, text.c_str(), static_cast<int>(text.size()), nullptr, 0,
                                         nullptr, nullptr);
    std::string out(size, '\0');
    WideCharToMultiByte(CP_UTF8, 0, text.c_str(), static_cast<int>(text.size()), out.data(), size, nullptr, nullptr);
    return out;
}

// Appends (or, with `append` false, writes) one line; other processes may read the file at
// the same time.
inline bool WriteLine(const std::wstring& path, const std::wstring& line, bool append = true)
{
    HVFileHandle file(CreateFileW(path.c_str(), GENERIC_WRITE, FILE_SHARE_READ, nullptr,
                                  append ? OPEN_ALWAYS : CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr));
    if (!file)
        return false;
    const std::string bytes = Utf8(line) + "\r\n";
    DWORD written = 0;
    SetFilePointer(file.Get(), 0, nullptr, FILE_END);
    return WriteFile(file.Get(), bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr) &&
           written == bytes.size();
}
}

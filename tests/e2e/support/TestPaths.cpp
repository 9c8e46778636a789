#include "TestPaths.h"

#include "FolderTree.h"
#include "foundation/HVString.h"

#include <windows.h>

namespace e2e
{
namespace
{
std::wstring FullPath(const std::wstring& path)
{
    wchar_t buffer[MAX_PATH * 4];
    const DWORD length = GetFullPathNameW(path.c_str(), static_cast<DWORD>(std::size(buffer)), buffer, nullptr);
    if (length == 0 || length >= std::size(buffer))
        return path;
    return std::wstring(buffer, length);
}
}

std::wstring TestProgramFolder()
{
    wchar_t buffer[MAX_PATH * 4];
    const DWORD length = GetModuleFileNameW(nullptr, buffer, static_cast<DWORD>(std::size(buffer)));
    std::wstring path(buffer, length);
    return path.substr(0, path.find_last_of(L'\\') + 1);
}

std::wstring MediaFolder()
{
    return FullPath(TestProgramFolder() + L"..\\media\\");
}

std::wstring InstallWizardPath()
{
    return MediaFolder() + L"InstallWizard.exe";
}

std::wstring ToolPath(const std::wstring& fileName)
{
    return TestProgramFolder() + fileName;
}

std::wstring ScratchFolder(const std::wstring& name)
{
    const std::wstring folder = FullPath(TestProgramFolder() + L"..\\scratch\\" + name + L"\\");
    if (!DeleteTree(folder) || !MakeFolder(folder))
        return {};
    return folder;
}

std::string Utf8(const std::wstring& text)
{
    return HVString(text.c_str(), static_cast<int32_t>(text.size())).ToUtf8();
}

std::wstring Wide(const std::string& utf8)
{
    std::wstring wide(utf8.size(), L'\0');
    wide.resize(MultiByteToWideChar(CP_UTF8, 0, utf8.data(), static_cast<int>(utf8.size()), wide.data(),
                                    static_cast<int>(wide.size())));
    return wide;
}

std::wstring TempFolder()
{
    wchar_t folder[MAX_PATH + 1] = {};
    return std::wstring(folder, GetTempPathW(MAX_PATH + 1, folder));
}

bool PathExists(const std::wstring& path)
{
    return GetFileAttributesW(path.c_str()) != INVALID_FILE_ATTRIBUTES;
}
}

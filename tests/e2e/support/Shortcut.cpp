#include "Shortcut.h"

#include "SetupRun.h"
#include "foundation/win/HVComInit.h"
#include "foundation/win/HVComPtr.h"

#include <windows.h>
#include <shlobj.h>

namespace e2e
{
std::optional<ShortcutTarget> ReadShortcut(const std::wstring& link)
{
    const HVComInit com;
    HVComPtr<IShellLinkW> shell;
    if (GetFileAttributesW(link.c_str()) == INVALID_FILE_ATTRIBUTES ||
        FAILED(CoCreateInstance(CLSID_ShellLink, nullptr, CLSCTX_INPROC_SERVER, IID_IShellLinkW, shell.ReceiveVoid())))
        return std::nullopt;
    const HVComPtr<IPersistFile> file = shell.As<IPersistFile>(IID_IPersistFile);
    wchar_t path[MAX_PATH] = {};
    wchar_t arguments[1024] = {};
    wchar_t icon[MAX_PATH] = {};
    int index = 0;
    if (!file || FAILED(file->Load(link.c_str(), STGM_READ)) || FAILED(shell->GetPath(path, MAX_PATH, nullptr, SLGP_RAWPATH)) ||
        FAILED(shell->GetArguments(arguments, 1024)) || FAILED(shell->GetIconLocation(icon, MAX_PATH, &index)))
        return std::nullopt;
    return ShortcutTarget{path, arguments, icon};
}

std::wstring StartMenuFolder() { return Expand(L"%APPDATA%\\Microsoft\\Windows\\Start Menu\\Programs\\Sonora\\"); }

std::wstring DesktopLink() { return Expand(L"%USERPROFILE%\\Desktop\\Sonora.lnk"); }

std::wstring QuickLaunchLink() { return Expand(L"%APPDATA%\\Microsoft\\Internet Explorer\\Quick Launch\\Sonora.lnk"); }
}

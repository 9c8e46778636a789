#include "foundation/win/HVProductPaths.h"

#include "foundation/HVFileSystemPath.h"
#include "foundation/win/HVFileSystem.h"

#include <shlobj.h>

#include <mutex>

namespace
{
constexpr HVRegView kViewOrder[] = {HVRegView::Native, HVRegView::Key32};

HVString ShellFolder(int csidl)
{
    HVString path;
    wchar_t* buffer = path.GetWBuffer(MAX_PATH + 1);
    const bool ok = SUCCEEDED(::SHGetFolderPathW(nullptr, csidl, nullptr, SHGFP_TYPE_CURRENT, buffer));
    path.ReleaseBuffer(ok ? -1 : 0);
    return HVFileSystemPath::AddBackslash(path);
}
}

namespace
{
std::mutex g_installFolderLock;
HVString g_installFolder;
}

void HVProductPaths::SetInstallFolder(const HVString& installFolder)
{
    const std::lock_guard<std::mutex> lock(g_installFolderLock);
    g_installFolder = installFolder;
}

HVString HVProductPaths::GetInstallFolder()
{
    const std::lock_guard<std::mutex> lock(g_installFolderLock);
    return g_installFolder;
}

HVString HVProductPaths::FolderOfInstallationPath(const HVString& path)
{
    HVString trimmed = path;
    trimmed.Trim();
    if (trimmed.IsEmpty())
        return HVString();
    if (trimmed.EndsWith(u"\\") || HVFileSystem::FolderExists(trimmed))
        return HVFileSystemPath::AddBackslash(trimmed);
    return HVFileSystemPath::GetFolder(trimmed);
}

HVString HVProductPaths::GetInstallationFolder(const HVString& installationKey)
{
    HVString keyPath = kInstallationsKey;
    if (!installationKey.IsEmpty())
        keyPath += u"\\" + installationKey;
    for (HVRegView view : kViewOrder) {
        HVRegKey key;
        HVString path;
        if (key.Open(HKEY_LOCAL_MACHINE, keyPath, KEY_READ, view) && key.QueryString(u"Path", path)) {
            const HVString folder = FolderOfInstallationPath(path);
            if (!folder.IsEmpty())
                return folder;
        }
    }
    return HVString();
}

std::vector<HVProductPaths::Installation> HVProductPaths::ListInstallations()
{
    std::vector<Installation> result;
    for (HVRegView view : kViewOrder) {
        HVRegKey root;
        if (!root.Open(HKEY_LOCAL_MACHINE, kInstallationsKey, KEY_READ, view))
            continue;
        for (const HVString& name : root.EnumSubKeys()) {
            HVRegKey key;
            Installation installation;
            if (!key.Open(root.Get(), name, KEY_READ, view) || !key.QueryString(u"Path", installation.launcherPath))
                continue;
            installation.folder = FolderOfInstallationPath(installation.launcherPath);
            if (installation.folder.IsEmpty())
                continue;
            installation.keyName = name;
            installation.view = view;
            result.push_back(std::move(installation));
        }
    }
    return result;
}

HVString HVProductPaths::GetProgramFolder64(const HVString& installFolder)
{
    if (installFolder.IsEmpty())
        return HVString();
    return HVFileSystemPath::AddBackslash(installFolder) + u"x64\\";
}

HVString HVProductPaths::GetRunningProgramFolder()
{
    HVString path;
    DWORD capacity = MAX_PATH;
    while (true) {
        wchar_t* buffer = path.GetWBuffer(static_cast<int32_t>(capacity));
        const DWORD length = ::GetModuleFileNameW(nullptr, buffer, capacity);
        if (length == 0) {
            path.ReleaseBuffer(0);
            return HVString();
        }
        if (length < capacity) {
            path.ReleaseBuffer(static_cast<int32_t>(length));
            break;
        }
        path.ReleaseBuffer(0);
        capacity *= 2;
        if (capacity > 32768 * 2)
            return HVString();
    }
    return HVFileSystemPath::GetFolder(HVFileSystemPath::FromLongPath(path));
}

HVString HVProductPaths::GetUserDataFolder()
{
    const HVString appData = ShellFolder(CSIDL_APPDATA);
    return appData.IsEmpty() ? HVString() : appData + u"Halvard\\";
}

HVString HVProductPaths::GetProgramFilesFolder()
{
    HVRegKey key;
    HVString folder;
    if (key.Open(HKEY_LOCAL_MACHINE, u"SOFTWARE\\Microsoft\\Windows\\CurrentVersion") &&
        key.QueryString(u"ProgramFilesDir", folder)) {
        folder.Trim();
        if (!folder.IsEmpty())
            return HVFileSystemPath::AddBackslash(folder);
    }
    return u"C:\\Program Files\\";
}

HVString HVProductPaths::GetMusicFolder() { return ShellFolder(CSIDL_MYMUSIC); }

HVString HVProductPaths::GetStartMenuProgramsFolder() { return ShellFolder(CSIDL_PROGRAMS); }

HVString HVProductPaths::GetDesktopFolder() { return ShellFolder(CSIDL_DESKTOPDIRECTORY); }

HVString HVProductPaths::GetAppDataFolder() { return ShellFolder(CSIDL_APPDATA); }

HVString HVProductPaths::GetResourceFolder(const HVString& installFolder, Resource resource)
{
    if (installFolder.IsEmpty())
        return HVString();
    const char16_t* name = u"Skins";
    switch (resource) {
    case Resource::Skins:
        name = u"Skins";
        break;
    case Resource::Visualizations:
        name = u"Visualizations";
        break;
    case Resource::MiniView:
        name = u"Mini View";
        break;
    case Resource::LoungeView:
        name = u"Lounge View";
        break;
    case Resource::TrackInfo:
        name = u"Track Info";
        break;
    }
    return HVFileSystemPath::AddBackslash(installFolder) + name + u'\\';
}

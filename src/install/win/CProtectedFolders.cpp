#include "install/win/CProtectedFolders.h"

#include "foundation/HVFileSystemPath.h"
#include "foundation/HVLog.h"
#include "foundation/win/HVProductPaths.h"
#include "foundation/win/HVRegKey.h"

namespace
{
HVString Expand(const HVString& text)
{
    if (text.Find(u'%') < 0)
        return text;
    const DWORD needed = ::ExpandEnvironmentStringsW(text.w(), nullptr, 0);
    if (needed == 0)
        return text;
    HVString expanded;
    wchar_t* buffer = expanded.GetWBuffer(static_cast<int32_t>(needed));
    const DWORD written = ::ExpandEnvironmentStringsW(text.w(), buffer, needed);
    expanded.ReleaseBuffer(written == 0 || written > needed ? 0 : -1);
    return expanded.IsEmpty() ? text : expanded;
}

HVString Normalize(const HVString& path) { return HVFileSystemPath::NormalizeFolderPath(path); }
}

CProtectedFolders::Context CProtectedFolders::ThisMachine(const HVString& ownUninstallKey,
                                                          const HVString& earlierInstallationFolder)
{
    Context context;
    context.ownUninstallKey = ownUninstallKey;
    context.earlierInstallationFolder = earlierInstallationFolder;

    wchar_t windows[MAX_PATH] = {};
    const UINT length = ::GetWindowsDirectoryW(windows, MAX_PATH);
    if (length > 0 && length < MAX_PATH)
        context.windowsFolder = HVString(windows);

    context.programFilesFolders.push_back(HVProductPaths::GetProgramFilesFolder());
    HVRegKey key;
    if (key.Open(HKEY_LOCAL_MACHINE, u"SOFTWARE\\Microsoft\\Windows\\CurrentVersion", KEY_READ)) {
        for (const char16_t* name : {u"ProgramFilesDir (x86)", u"ProgramW6432Dir"}) {
            HVString folder;
            if (key.QueryString(name, folder) && !folder.IsEmpty())
                context.programFilesFolders.push_back(folder);
        }
    }
    return context;
}

HVString CProtectedFolders::LocationFolder(const HVString& location)
{
    HVString value = location;
    value.Trim();
    value.Trim(u"\"");
    value.Trim();
    return value.IsEmpty() ? HVString() : Normalize(Expand(value));
}

bool CProtectedFolders::Accept(const HVString& entryName, const HVString& location, const Context& context,
                               HVString& folder)
{
    if (!context.ownUninstallKey.IsEmpty() && entryName.EqualsNoCase(context.ownUninstallKey.view()))
        return false;
    folder = LocationFolder(location);
    if (folder.IsEmpty() || !HVFileSystemPath::IsAbsolute(folder.view()))
        return false;
    if (folder.GetLength() <= HVFileSystemPath::RootLength(folder.view()))
        return false;   // a drive root or a share
    if (!context.windowsFolder.IsEmpty() && folder.EqualsNoCase(Normalize(context.windowsFolder).view()))
        return false;
    for (const HVString& programFiles : context.programFilesFolders)
        if (!programFiles.IsEmpty() && folder.EqualsNoCase(Normalize(programFiles).view()))
            return false;
    const HVString earlier = Normalize(context.earlierInstallationFolder);
    if (!earlier.IsEmpty() && earlier.StartsWithNoCase(folder.view()))
        return false;   // the earlier folder itself, or a folder above it
    return true;
}

std::vector<HVString> CProtectedFolders::Read(const Context& context)
{
    std::vector<HVString> folders;
    const HKEY roots[] = {HKEY_LOCAL_MACHINE, HKEY_CURRENT_USER};
    const HVRegView views[] = {HVRegView::Key64, HVRegView::Key32};
    for (HKEY root : roots) {
        for (HVRegView view : views) {
            HVRegKey uninstall;
            if (!uninstall.Open(root, kUninstallKey, KEY_READ, view))
                continue;
            for (const HVString& entryName : uninstall.EnumSubKeys()) {
                HVRegKey entry;
                HVString location;
                if (!entry.Open(uninstall.Get(), entryName, KEY_READ, view) ||
                    !entry.QueryString(u"InstallLocation", location))
                    continue;
                HVString folder;
                if (!Accept(entryName, location, context, folder))
                    continue;
                bool known = false;
                for (const HVString& f : folders)
                    known = known || f.EqualsNoCase(folder.view());
                if (!known)
                    folders.push_back(folder);
            }
        }
    }
    HVLog::Write(HVLog::kDetail, "CProtectedFolders::Read", u"%d folders of other programs", folders.size());
    return folders;
}

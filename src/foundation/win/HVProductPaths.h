#pragma once

#include "foundation/HVString.h"
#include "foundation/win/HVRegKey.h"

#include <vector>

// Where the product family keeps itself on this machine: the installations recorded in the
// registry, the per-user data folder, and the system folders the installer proposes. Folder
// results end in a backslash; an empty result means "not known here".
class HVProductPaths
{
public:
    // Under HKEY_LOCAL_MACHINE; one subkey per installed copy, whose "Path" is its launcher.
    static constexpr const char16_t* kInstallationsKey = u"Software\\Halvard\\Corvale\\Installations";

    enum class Resource { Skins, Visualizations, MiniView, LoungeView, TrackInfo };

    struct Installation
    {
        HVString keyName;        // the subkey under kInstallationsKey
        HVString launcherPath;   // its "Path"
        HVString folder;         // the folder of the launcher, with a backslash
        HVRegView view = HVRegView::Native;
    };

    // The folder of the installation recorded under the given subkey (an empty name reads
    // "Path" of the installations key itself). The native view is asked first: a 64-bit
    // installation is the one this installer replaces; the 32-bit view ("WOW6432Node") finds
    // what a 32-bit installer recorded.
    static HVString GetInstallationFolder(const HVString& installationKey);
    // Every recorded installation, native view first; entries without a usable "Path" are left out.
    static std::vector<Installation> ListInstallations();
    // The folder of a "Path" value: the value itself when it names a folder, else its folder part.
    static HVString FolderOfInstallationPath(const HVString& path);

    // The folder of the installation this process installs or serves, set once the
    // destination is known; empty before. Safe from any thread.
    static void SetInstallFolder(const HVString& installFolder);
    static HVString GetInstallFolder();

    // "x64\" beneath a program folder: where the 64-bit build keeps its binaries.
    static HVString GetProgramFolder64(const HVString& installFolder);
    // The folder of the running program.
    static HVString GetRunningProgramFolder();
    // "Halvard\" under the user's application data.
    static HVString GetUserDataFolder();
    // "ProgramFilesDir" of "SOFTWARE\Microsoft\Windows\CurrentVersion"; "C:\Program Files\"
    // when it is missing (or not a string).
    static HVString GetProgramFilesFolder();
    // The user's music folder ("My Music").
    static HVString GetMusicFolder();
    // The user's Start Menu "Programs" folder, desktop folder and roaming application data.
    static HVString GetStartMenuProgramsFolder();
    static HVString GetDesktopFolder();
    static HVString GetAppDataFolder();
    // "Skins\", "Visualizations\", "Mini View\", "Lounge View\" or "Track Info\" beneath the
    // install folder.
    static HVString GetResourceFolder(const HVString& installFolder, Resource resource);
};

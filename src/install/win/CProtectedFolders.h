#pragma once

#include "foundation/HVString.h"

#include <windows.h>

#include <vector>

// The folders of other programs, in which the product must not be installed: every
// "InstallLocation" of the system's uninstall entries
// ("SOFTWARE\Microsoft\Windows\CurrentVersion\Uninstall\<entry>"), under HKEY_LOCAL_MACHINE
// and HKEY_CURRENT_USER, in the 64-bit and the 32-bit registry view.
//
// Left out, because refusing them would refuse every folder or the product's own:
// - empty values, values that aren't absolute paths, and drive roots;
// - the Windows folder and the Program Files folders themselves (a program that names one of
//   those as its location doesn't own it);
// - the product's own entry (the one whose key name the installations record gives as its
//   "Uninstall Key"; another vendor's entry whose name merely begins like the product's stays)
//   and its earlier installation folder, together with any folder that contains it (a vendor
//   folder above it may not block reinstalling in place).
// Each folder comes back normalised with a trailing backslash, once (compared without regard
// to case), in the order found.
//
//   CProtectedFolders::Context c = CProtectedFolders::ThisMachine(ownUninstallKey, earlierFolder);
//   std::vector<HVString> folders = CProtectedFolders::Read(c);
class CProtectedFolders
{
public:
    static constexpr const char16_t* kUninstallKey = u"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Uninstall";

    struct Context
    {
        HVString ownUninstallKey;                // the product's own entry; empty when none
        HVString earlierInstallationFolder;      // empty when none
        HVString windowsFolder;
        std::vector<HVString> programFilesFolders;
    };

    // The context with this machine's Windows and Program Files folders filled in.
    static Context ThisMachine(const HVString& ownUninstallKey, const HVString& earlierInstallationFolder);

    static std::vector<HVString> Read(const Context& context);

    // An "InstallLocation" value as a folder: blanks and quotes around it removed, environment
    // variables expanded, normalised with a trailing backslash; empty when nothing is left.
    static HVString LocationFolder(const HVString& location);

    // The decision for one uninstall entry: true and its LocationFolder when it is protected.
    static bool Accept(const HVString& entryName, const HVString& location, const Context& context, HVString& folder);
};

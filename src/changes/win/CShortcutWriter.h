#pragma once

#include "foundation/HVString.h"

class CInstallChangeLog;

// Makes shell links (".lnk" files) through the shell's link object and notes each one, so
// that an uninstall removes exactly the shortcuts the install made, and only while they are as
// the install left them. A link that was there is kept first (in the install folder's
// "Replaced Shortcuts\"), so that the uninstall can put it back. COM must be initialised on the
// calling thread (the application does it for its whole run).
//
//   CShortcutWriter writer(changes, installFolder);
//   writer.Write({.link = folder + u"Sonora.lnk", .target = installFolder + u"Sonora.exe", ...});
class CShortcutWriter
{
public:
    struct Shortcut
    {
        HVString link;         // the ".lnk" file to write; its folder must exist
        HVString target;
        HVString arguments;
        HVString description;
        HVString icon;         // icon file; index 0
        HVString workingFolder;
    };

    // Where the links that were replaced are kept, below the install folder: for the
    // installation's whole life, so no later install may clean it.
    static constexpr const char16_t* kKeptFolder = u"Replaced Shortcuts\\";
    // installFolder ends in a backslash.
    CShortcutWriter(CInstallChangeLog& changes, const HVString& installFolder)
        : changes_(changes), installFolder_(installFolder)
    {
    }

    // An existing link of that name is replaced: it may still point at an older version's
    // program folder. False (logged, nothing noted) when the link object or the file fails.
    bool Write(const Shortcut& shortcut);

private:
    // A copy of the link that is about to be replaced; empty when none could be kept.
    HVString Keep(const HVString& link);

    CInstallChangeLog& changes_;
    HVString installFolder_;
};

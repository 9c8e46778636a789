#pragma once

#include "foundation/HVString.h"

class CInstallChangeLog;

// Makes shell links (".lnk" files) through the shell's link object and notes each one, so
// that an uninstall removes exactly the shortcuts the install made. COM must be initialised
// on the calling thread (the application does it for its whole run).
//
//   CShortcutWriter writer(changes);
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

    explicit CShortcutWriter(CInstallChangeLog& changes) : changes_(changes) {}

    // An existing link of that name is replaced: it may still point at an older version's
    // program folder. False (logged, nothing noted) when the link object or the file fails.
    bool Write(const Shortcut& shortcut);

private:
    CInstallChangeLog& changes_;
};

#pragma once

#include "foundation/HVString.h"

// Whether a path lies inside a folder as the file system resolves it, not as its text reads:
// a junction or a symbolic link inside the folder can make "<folder>Data\" the user's music,
// and a short (8.3) name can make "PACKAG~1.EXE" another file than its text says. Used before
// anything the installer deletes or overwrites on a package's word.
class HVContainedPath
{
public:
    // True when `path` (which need not exist) lies in `folder`. Below the folder, each part of
    // the path that exists is looked at without following it: a reparse point (junction,
    // symbolic link, mount point) refuses, and so does a part reached by another name than
    // its own (a short alias). The deepest existing part's final path must then lie in the
    // folder's final path. A refusal is logged with its reason.
    static bool Check(const HVString& path, const HVString& folder);
    // The final path (GetFinalPathNameByHandleW) of an existing file or folder, plain form,
    // folders with a backslash; empty when it can't be opened.
    static HVString FinalPath(const HVString& path);
};

#pragma once

#include "foundation/HVString.h"

#include <cstdint>
#include <vector>

// The uninstaller's command line, one argument a piece (the program's own path left out).
// Switches are matched without regard to case; an unknown one is kept for the log and
// ignored, so that a mistyped switch never stops an unattended removal.
struct CUninstallOptions
{
    bool silent = false;           // "/Silent": no questions, library and settings kept
    bool removeSettings = false;   // "/RemoveSettings"
    bool suppressMessages = false; // "/SuppressMessages": no box at all, each takes its default
    bool log = false;              // "/Log" or "/Log=<file>"
    HVString logPath;
    // "/RemoveAfter=<process id> <file> <folder>...": the copy that removes what the
    // uninstaller itself kept in use.
    uint32_t removeAfter = 0;
    std::vector<HVString> removeAfterPaths;
    std::vector<HVString> unknown;

    static CUninstallOptions Parse(const std::vector<HVString>& arguments);
};

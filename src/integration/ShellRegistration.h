#pragma once

#include "foundation/HVString.h"

// What one install registers with the shell: the ProgID stem of this product version, the
// program that shell verbs start, and the user's association choices. The install sequence
// fills one and completes it (CompleteShellRegistration) once the files are in place.
struct ShellRegistration
{
    bool applyTable = true;      // build and apply the action table, then the association steps
    bool notifyShell = true;     // tell the shell that associations changed (also without the table)
    // The association steps after the table: file types, the MIME extension, URL protocols and
    // Default Programs. "/NoAssociations" clears it: the user keeps every opener as it is.
    bool associate = true;
    HVString productWithVersion; // [PRODUCTWITHVERSION], "Sonora32"
    HVString launcherPath;       // [LAUNCHERPATH]; empty leaves out the Applications\ lines
    HVString launcherName;       // [LAUNCHERNAME]
    HVString fileTypes;          // the chosen extensions, ";"-separated
    HVString protocols;          // the chosen URL protocols, ";"-separated
    HVString mimeExtension;      // the extension whose ProgID is the ".Mime" one, associated always
};

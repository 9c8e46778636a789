#pragma once

#include "foundation/HVString.h"
#include "product/InstallAnswers.h"

// The one record of the run's choices: what the command line asked for and what the user
// picked on the wizard's pages. The application object owns it for the whole process; the
// pages and the install engine read and fill it. Every flag starts false, every string empty.
struct InstallOptions
{
    // From the command line.
    bool silent = false;         // "/Silent": no questions; the affirmative answer is taken
    bool suppressMessages = false; // "/SuppressMessages": no box is shown; each takes its default answer
    bool upgrade = false;        // "/Upgrade": upgrade of an existing installation
    bool noAssociations = false; // "/NoAssociations"
    bool noDependencies = false; // "/NoDependencies"
    bool noUpgrade = false;      // "/NoUpgrade": settings of an earlier version stay behind
    bool noDriver = false;       // "/NoDriver"
    bool noRun = false;          // "/NoRun": the installed program is not started at the end
    bool rollback = false;       // "/Rollback": an install stopped before its end is undone, nothing installed
    bool regFileAssociations = false; // "/RegFileAssociations": the kept or default choice, unasked
    HVString distributorId;      // "/DistributorID <id>", blanks around the id removed
    // destinationFolder (below) may come from "/Dir=<folder>": the destination page then
    // proposes it and checks it as it would a folder the user typed.

    // Switches for people running the setup by hand, not part of any unattended contract.
    bool log = false;            // "/Log" or "/Log=<path>": write a log of the run
    HVString logPath;            // empty: a dated file in %TEMP%
    bool help = false;           // "/?" or "/Help": list the switches and end
    HVString loadInfPath;        // "/LoadInf=<file>": start from the choices of an answer file
    HVString saveInfPath;        // "/SaveInf=<file>": write this run's choices as an answer file

    // From the wizard's pages.
    bool express = false;
    bool autoInstall = false;
    bool portable = false;
    bool earlierInstallationFound = false;
    HVString destinationFolder;
    // The choices without a field above, given by an answer file or made on the pages.
    InstallAnswers answers;

    // From start-up: the setup media and the install settings of Install.xml.
    bool allowDowngrade = false;
    HVString supportFolder;
    HVString libraryFolder;
    HVString bundledMediaFolder;
    HVString installDescriptionPath;
};

#pragma once

// The setup program's exit codes, in the style of the Windows Installer so that deployment
// tools that know msiexec read them the same way.
enum InstallExitCode : int
{
    kExitInstalled = 0,             // installed (also: the switch list was shown)
    kExitCancelled = 1602,          // the user cancelled: wizard Cancel, "No" to closing the product
    kExitFatalError = 1603,         // a fatal error: start-up failed, a needed file couldn't be copied
    kExitAnotherInstaller = 1618,   // another installer holds the single-instance mutex
    kExitNotSupported = 1633,       // this processor (no SSE2) or Windows version is not supported
    kExitProductRunning = 1650,     // the product is running and could not be closed
    kExitBrowserTooOld = 1654,      // the browser engine is older than the install description requires
    kExitNoRights = 1925,           // no rights to write machine-wide settings
    kExitRestartNeeded = 3010,      // installed; Windows must restart to finish
};

// Every code above, for the tables that deployment tools are given (the package manager's
// manifest maps each to what it means for a deployment). The uninstaller ends with a few of
// the same codes (0, 3010, 1602, 1603, and 1618 when the product kept running).
inline constexpr InstallExitCode kInstallExitCodes[] = {
    kExitInstalled,    kExitCancelled,     kExitFatalError, kExitAnotherInstaller, kExitNotSupported,
    kExitProductRunning, kExitBrowserTooOld, kExitNoRights,   kExitRestartNeeded,
};

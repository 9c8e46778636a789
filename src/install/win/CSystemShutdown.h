#pragma once

// Ends the Windows session: restart, shut down and power off, or suspend. The shutdown
// privilege is enabled in the process token for the call and all privileges are disabled
// again afterwards. Failures are logged, never shown: the user asked for the restart and
// Windows tells them itself when it refuses.
class CSystemShutdown
{
public:
    enum class Mode
    {
        Restart,   // ExitWindowsEx flags 0x12: reboot, force if hung
        PowerOff,  // 0x19: shut down, power off, force if hung
        Suspend,   // SetSuspendState from PowrProf.dll
    };

    // True when Windows accepted the request.
    static bool Shutdown(Mode mode);
};

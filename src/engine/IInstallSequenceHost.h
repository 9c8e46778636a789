#pragma once

#include <cstdint>

// What the install sequence asks of the page it runs on: timers, the slideshow picture, the
// steps' work and the progress texts of the finalizing stage. The copy-and-install page
// implements it on its window; tests implement it on a virtual clock.
class IInstallSequenceHost
{
public:
    virtual void SetTimer(int32_t id, int32_t elapseMs) = 0;
    virtual void KillTimer(int32_t id) = 0;
    // Show slideshow picture `number` (1-based); the previous one stays when it has no file.
    virtual void ShowImage(int32_t number) = 0;
    // The steps. False stops the sequence: no further timer is set and the step has already
    // closed or cancelled the wizard as needed.
    virtual bool RunDependencies() = 0;
    virtual bool RunCopy() = 0;
    virtual bool RunPlugins() = 0;
    // Whether the files need not be installed again (the copy and plug-in steps are left out).
    virtual bool SkipInstall() = 0;
    // Finalizing: progress range 0..ticks at 0 and the "Finalizing installation..." status.
    virtual void BeginFinalizing(int32_t ticks) = 0;
    // One 333 ms tick of the wait for the slideshow: progress one further.
    virtual void WaitTick() = 0;
    // Done: progress at its maximum, Next allowed and pressed.
    virtual void Finish() = 0;

protected:
    ~IInstallSequenceHost() = default;
};

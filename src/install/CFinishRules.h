#pragma once

#include "foundation/HVString.h"

#include <vector>

// The finish page's decisions that need no window: whether Windows must restart, what the
// page proposes, which check box it shows, what Finish then means and what leaving does.
class CFinishRules
{
public:
    // The finish choice.
    static constexpr int kNothing = 0;
    static constexpr int kRestart = 1;
    static constexpr int kRun = 2;

    // The engine's restart flag, or a deferred operation on the product's shell extension
    // ("shellext.dll" in a journal entry, without regard to case): Explorer keeps the old
    // extension loaded until it restarts, and a delete or install of it that waits for the
    // next logon leaves the shell and the program folder out of step until then.
    static bool RestartNeeded(bool restartFlag, const std::vector<HVString>& pendingFiles,
                              const std::vector<HVString>& pendingRegistrations);

    // runWanted: the box starts checked (an answer file may have cleared it).
    static int PrepareChoice(bool restartNeeded, bool noRun, bool runWanted = true);

    // At most one check box: "Restart Windows now" or "Run installed program now".
    enum class Box
    {
        None,
        Restart,
        Run,
    };
    static Box BoxShown(bool restartNeeded, bool noRun);
    // Finish pressed with the box as the user left it.
    static int ChoiceOnFinish(Box box, bool checked);

    enum class Leave
    {
        Now,             // silent, or nothing to do
        HandOver,        // write "Finish.txt" naming the launcher
        ConfirmRestart,  // ask "Confirm Restart"; only "Restart" leaves
    };
    static Leave LeaveAction(bool silent, int choice);
};

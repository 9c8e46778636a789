#pragma once

#include "changes/CInstallChangeLog.h"
#include "engine/CUninstallPlan.h"
#include "foundation/HVString.h"

#include <cstdint>
#include <vector>

// Undoes one install run that did not end well, by the uninstall's own undo of each kind of
// change, so that the machine is as it was before the run: what the run replaced or removed
// comes back from where it was kept, what it made goes, values go back while they hold what it
// wrote. The run's lines then leave the record, which is cut back to what it was before the run.
class CInstallRollback
{
public:
    struct Outcome
    {
        bool complete = false;      // every step was done
        bool restartNeeded = false; // a file in use comes back at the next restart
    };

    // `changes`: the run's, in the order they were noted; `recordLengthBefore`: the record's
    // length before the run (0: the run made it). `ownPath`: the running program.
    static Outcome Run(const std::vector<InstallChange>& changes, const CUninstallPlan::Places& places,
                       uint64_t recordLengthBefore, const HVString& ownPath);

    // The box's text when a run was undone: the user reads what happened.
    static constexpr const char16_t* kReturnedText =
        u"Setup did not complete. Your computer was returned to the state it was in before.";
};

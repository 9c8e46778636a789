#pragma once

#include "foundation/win/HVUniqueResource.h"

#include <windows.h>

#include <optional>
#include <string>

namespace e2e
{
// The setup program of a setup folder started and left running beside the test, for a test
// that needs it waiting (at a question, say) while it does something else; ended when the
// object goes, if it hasn't ended by then.
class RunningSetup
{
public:
    RunningSetup(const std::wstring& setupFolder, const std::wstring& arguments);
    ~RunningSetup();
    RunningSetup(const RunningSetup&) = delete;
    RunningSetup& operator=(const RunningSetup&) = delete;

    bool Started() const { return static_cast<bool>(process_); }
    DWORD ProcessId() const { return processId_; }
    // Its exit code once it has ended within `timeoutMs`; none while it still runs.
    std::optional<DWORD> WaitForExit(DWORD timeoutMs) const;

private:
    HVHandle process_;
    DWORD processId_ = 0;
};

// A mutex of this name that exists but that nobody may open (an empty access list): what the
// installer finds when another user's installer holds its machine-wide mutex.
HVHandle UnopenableMutex(const std::wstring& name);
}

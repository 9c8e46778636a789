#pragma once

#include "engine/IInstallProgress.h"
#include "foundation/HVString.h"

#include <cstdint>

// What the install's steps ask of the page they run on, beyond its progress: the header of the
// stage now under way, and the user's answer to a message box. The copy-and-install page
// implements it; the steps never reach for a window themselves.
class IInstallPage : public IInstallProgress
{
public:
    // A new stage begins: the page's title and subtitle (English; the page translates them).
    // refuseSecondButton: from now on the page offers neither Back nor Cancel.
    virtual void ShowStage(const char16_t* title, const char16_t* subtitle, bool refuseSecondButton) = 0;
    // A message box over the wizard (texts already translated, MB_* style); the button pressed.
    virtual int32_t Ask(const HVString& text, const HVString& title, uint32_t style) = 0;

protected:
    ~IInstallPage() = default;
};

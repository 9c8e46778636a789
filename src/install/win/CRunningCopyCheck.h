#pragma once

#include "foundation/HVString.h"

#include <windows.h>

#include <functional>

// Makes sure the installed product isn't running before its files are replaced: asks whether
// it may close it (a silent install takes Yes), closes it, and when it won't stop asks the
// user to close it by hand before giving up. The product is reached through three
// operations of its identity, so the check runs the same against a real copy or a test's.
class CRunningCopyCheck
{
public:
    struct Product
    {
        HVString displayName;
        std::function<bool()> isRunning;
        std::function<HWND()> mainWindow;
        std::function<void()> closeRunningCopy;
    };
    // Shows a message box (text, title, MB_ flags) and returns the button pressed.
    using ShowBox = std::function<int(const HVString& text, const HVString& title, UINT type)>;

    static constexpr int kPollMilliseconds = 5000;

    CRunningCopyCheck(Product product, bool silent, ShowBox showBox = {});

    // True when no copy runs any more; false when start-up must end. `declined` tells the
    // two false cases apart: the user said No, or the copy would not stop.
    bool Run();
    bool Declined() const { return declined_; }

private:
    HVString Text(const char16_t* english) const;

    Product product_;
    bool silent_;
    ShowBox showBox_;
    bool declined_ = false;
};

#pragma once

#include "foundation/HVString.h"

#include <windows.h>

// Root of the toolkit's window classes: owns one window and destroys it with the object.
// Windows belong to the thread that made them; so do these objects.
class HVWnd
{
public:
    HVWnd() = default;
    virtual ~HVWnd();
    HVWnd(const HVWnd&) = delete;
    HVWnd& operator=(const HVWnd&) = delete;

    HWND Hwnd() const { return hwnd_; }
    bool IsCreated() const { return hwnd_ != nullptr; }

    void SetText(const HVString& text);
    HVString GetText() const;
    void Enable(bool enable);
    bool IsEnabled() const;
    void Show(bool show);
    bool IsVisible() const;
    void Focus();
    void Destroy();

protected:
    // Called when the system has destroyed the window on its own (its parent went first).
    void Forget() { hwnd_ = nullptr; }

    HWND hwnd_ = nullptr;
};

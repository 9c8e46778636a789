#pragma once

#include "toolkit/win/HVLayoutWnd.h"

struct HVIconTraits
{
    using Type = HICON;
    static Type Invalid() { return nullptr; }
    static void Close(Type h) { ::DestroyIcon(h); }
};
using HVIcon = HVUniqueResource<HVIconTraits>;

// A top-level window run modally: its owner is disabled while it runs, the dialog manager
// gives it Tab order, Alt accelerators, Enter for the default button and Esc for Cancel, and
// it follows the DPI of the monitor it is on.
class HVPopupWnd : public HVLayoutWnd
{
public:
    // The title-bar icon of every pop-up: an .ico file, or a picture such as a PNG (a skin's
    // "Titlebar Icon"); when none is
    // set or it can't be read, the program's own icon (resource 1, "Application.ico").
    static void SetTitlebarIconFile(const HVString& path);
    static HVString GetTitlebarIconFile();

    // The title bar's text; kept until the window exists.
    void SetTitle(const HVString& title);
    const HVString& Title() const { return title_; }

    // Runs until EndModal; returns its result (0 when the window could not be made).
    int DoModal(HWND owner);
    // False: DoModal runs the window without ever showing it, for runs that nobody watches.
    void SetShown(bool shown) { shown_ = shown; }
    void EndModal(int result);
    bool IsRunning() const { return running_; }
    // The title-bar icon at 48 pixels scaled for the DPI, for a header or a banner.
    HICON LargeIcon() const { return largeIcon_.Get(); }

protected:
    // Makes the window (hidden) with a client size in pixels at the DPI of the monitor that
    // the owner (or the primary monitor) is on, centred there.
    bool CreatePopup(HWND owner, const HVString& title, DWORD style);
    // Called once the window exists, before it is shown: make controls here.
    virtual bool OnCreatePopup() = 0;
    // The client size wanted at the current DPI.
    virtual SIZE WantedClientSize() const = 0;
    virtual SIZE MinimumClientSize() const { return {0, 0}; }
    // The id Enter presses (the default button).
    virtual int DefaultButtonId() const { return IDOK; }
    // Esc, the Cancel button or the close box.
    virtual void OnCancel() { EndModal(IDCANCEL); }

    void ResizeToWanted(bool center);
    void ApplyDpi(UINT dpi) override;
    LRESULT OnMessage(UINT message, WPARAM wParam, LPARAM lParam) override;

private:
    void LoadIcons();
    // The modal loop's own keys (arrows in a radio group, Enter, Tab): true when handled.
    bool HandleDialogKeys(const MSG& msg);
    bool IsEnterInReadOnlyText(const MSG& msg) const;
    bool MoveInRadioGroup(const MSG& msg) const;

    HWND owner_ = nullptr;
    HVString title_;
    HWND lastFocus_ = nullptr;
    bool running_ = false;
    bool shown_ = true;
    int result_ = 0;
    HVIcon bigIcon_;
    HVIcon smallIcon_;
    HVIcon largeIcon_;
};

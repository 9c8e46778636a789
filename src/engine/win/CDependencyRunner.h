#pragma once

#include "engine/win/CInstallContext.h"

#include <atomic>

// The dependency step: the DirectX helpers (when wanted), the WebView2 runtime and the bundled
// media, each made for the run and deleted after it. A download the user cancels sets the
// cancelled flag, which stops the whole install.
class CDependencyRunner
{
public:
    enum class Outcome
    {
        Continue,   // go on with the copy step (failures that allow it included)
        Cancelled,  // the user cancelled a download
        Failed,     // a dependency failed that the product can't do without
    };

    explicit CDependencyRunner(const CInstallContext& context) : context_(context) {}

    Outcome Run(bool directXWanted);

    const CInstallContext& Context() const { return context_; }
    bool IsCancelled() const { return cancelled_; }
    void Cancel() { cancelled_ = true; }

    // The user's Cancel reaches a download through these: the page asks while a download
    // runs, and the download stops at its next look.
    bool IsDownloading() const { return downloading_; }
    void SetDownloading(bool downloading) { downloading_ = downloading; }
    void RequestCancel() { cancelRequested_ = true; }
    bool CancelRequested() const { return cancelRequested_; }

private:
    const CInstallContext& context_;
    bool cancelled_ = false;
    bool downloading_ = false;
    std::atomic<bool> cancelRequested_{false};
};

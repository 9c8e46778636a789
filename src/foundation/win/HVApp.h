#pragma once

#include <windows.h>

#include <functional>

class IHVLogger;

// The application object: one per process, alive from the entry point to its end. It owns
// the process's logger and keeps the window message being dispatched, so that a crash report
// can say what the program was doing when it died.
class HVApp
{
public:
    HVApp();
    virtual ~HVApp();
    HVApp(const HVApp&) = delete;
    HVApp& operator=(const HVApp&) = delete;

    // The one application object, or null before it exists and after it is gone.
    static HVApp* Get();

    // The logger the application supplies (also made the process-wide one); null: no logging.
    IHVLogger* GetLogger() const { return logger_; }
    void SetLogger(IHVLogger* logger);

    // The message being dispatched on the main thread (0 between messages).
    UINT GetCurrentMessage() const { return currentMessage_; }
    WPARAM GetCurrentWParam() const { return currentWParam_; }
    LPARAM GetCurrentLParam() const { return currentLParam_; }
    // The same as one record, and its setter for loops the program doesn't run itself
    // (HVTrackedModalLoop).
    MSG GetCurrent() const;
    void SetCurrent(const MSG& msg);

    // A message loop's own handling of a message (a dialog's keyboard navigation), tried
    // before the plain dispatch; true: handled.
    using OwnHandling = std::function<bool(const MSG&)>;

    // Translates and dispatches one message, keeping it as the current message meanwhile.
    void DispatchTracked(const MSG& msg, const OwnHandling& ownHandling = nullptr);
    // The dispatch of every message loop in the program, the toolkit's modal loops included:
    // tracked through the application object when there is one, so that a crash report names
    // the message; plain before the object exists and after it is gone.
    static void Dispatch(const MSG& msg, const OwnHandling& ownHandling = nullptr);
    // Dispatches every waiting message of the calling thread; false when WM_QUIT was among
    // them (it is posted again, so an outer loop still sees it).
    static bool PumpWaitingMessages();

private:
    IHVLogger* logger_ = nullptr;
    volatile UINT currentMessage_ = 0;
    volatile WPARAM currentWParam_ = 0;
    volatile LPARAM currentLParam_ = 0;
};

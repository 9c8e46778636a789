#pragma once

#include <windows.h>

#include <functional>
#include <string>
#include <vector>

namespace e2e
{
// The install wizard as a user sees it: its frame (class "HVPopupWnd"), the page shown now
// (the visible child of class "HVWizardPageWnd"), the header's title and subtitle and the
// buttons Back, Next and Cancel (ids 0x3023, 0x3024, IDCANCEL).
struct WizardView
{
    static constexpr int kBackId = 0x3023;
    static constexpr int kNextId = 0x3024;
    static constexpr int kTitleId = 0x3030;
    static constexpr int kSubtitleId = 0x3031;

    HWND wizard = nullptr;
    HWND page = nullptr;
    std::wstring windowTitle;
    std::wstring title;
    std::wstring subtitle;
    // False while the wizard waits for a message box of its own.
    bool enabled = false;

    // A control of the current page by its caption ("&" ignored), or of a class ("Edit").
    HWND Control(const std::wstring& caption) const;
    HWND ControlOfClass(const std::wstring& className) const;
    HWND Button(int id) const { return ::GetDlgItem(wizard, id); }
    // The page's texts in order (labels, choices), for failure messages and text checks.
    std::vector<std::wstring> Texts() const;
};

// The wizard of a process, when it is up.
bool FindWizard(DWORD processId, WizardView& view);

std::wstring ControlText(HWND control);
bool IsChecked(HWND control);
// Clicks a button, radio button or check box the way the mouse would (queued, so that a
// message box the click opens doesn't hold up the test).
void Click(HWND control);
// Replaces an edit's text as typing would: select all, delete, then one character after the
// other, queued behind whatever was clicked before.
void TypeText(HWND edit, const std::wstring& text);

void ClickNext(const WizardView& view);
void ClickBack(const WizardView& view);
void ClickCancel(const WizardView& view);
// Clicks the page's radio button or check box with this caption; false when there is none.
bool Choose(const WizardView& view, const std::wstring& caption);

// One action of a scripted user. It runs when the wizard shows the page titled `title`, is
// enabled (no message box open), and shows a page other than the one the previous step acted
// on (the wizard moved), or with `samePage` that same page (the previous step's click asked a
// question, answered by the driver's dialog rules). Clicks and keys are queued, so an action
// that arrives while the question is still open takes effect after its answer, as the
// wizard runs a Next pressed during a question once the question is answered.
struct WizardStep
{
    std::wstring title;
    std::function<void(const WizardView&)> act;
    bool samePage = false;
    // When given, the step also waits until this holds (the countdown shows in the title).
    std::function<bool(const WizardView&)> when{};
};

// The usual steps: Next (or Back, or Cancel) on the page; choose `choice` on it, then Next.
WizardStep NextOn(const std::wstring& page, bool samePage = false);
WizardStep BackOn(const std::wstring& page);
WizardStep CancelOn(const std::wstring& page);
WizardStep ChooseOn(const std::wstring& page, const std::wstring& choice);
// A custom install: Welcome, Custom, Next on the custom setup type, the `destination` steps,
// then Next on every page to the end.
std::vector<WizardStep> CustomInstall(const std::vector<WizardStep>& destination);
// On the file-association page: "Unselect All", then these keys in its list, whose first row
// (.mp3) has the focus (VK_SPACE ticks a row, VK_DOWN moves on), then Next.
WizardStep FileTypesOn(const std::vector<WPARAM>& keys);

// Plays the steps as the ProgramDriver polls (RunOptions::onPoll = user.Poller()), and keeps
// what it saw: the pages in the order they appeared and every window title of the frame.
class WizardUser
{
public:
    explicit WizardUser(std::vector<WizardStep> steps);

    std::function<bool(DWORD processId)> Poller();
    bool Finished() const { return next_ == steps_.size(); }
    size_t StepsDone() const { return next_; }
    const std::vector<std::wstring>& PagesSeen() const { return pages_; }
    // The pages seen before the install began: the copy page's header follows its steps, so
    // any of them, and the pages after the copy, end the list.
    std::vector<std::wstring> PagesBeforeInstall() const;
    const std::vector<std::wstring>& WindowTitles() const { return windowTitles_; }
    // The last view seen, for looking at a page after the steps.
    const WizardView& LastView() const { return last_; }
    // Pages seen and window titles, for failure messages (UTF-8).
    std::string Describe() const;

private:
    void Poll(DWORD processId);

    std::vector<WizardStep> steps_;
    size_t next_ = 0;
    HWND actedOn_ = nullptr;
    HWND lastPage_ = nullptr;
    WizardView last_;
    std::vector<std::wstring> pages_;
    std::vector<std::wstring> windowTitles_;
};
}

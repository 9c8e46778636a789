#pragma once

#include "WindowInspector.h"
#include "foundation/win/HVUniqueResource.h"

#include <windows.h>

#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace e2e
{
enum class TextMatch
{
    Exact,       // the whole text, character for character ("\r\n" included)
    StartsWith,
    Contains,
    Any,
};

// How to answer one kind of dialog. A dialog matches when its title equals `title` (any title
// when empty) and its text matches `text` by `match`. The first matching rule, in list order,
// answers: by button id (`button`, e.g. IDNO) or, when that is 0, by caption ("No"; "&" and case
// are ignored).
struct DialogRule
{
    std::wstring title{};
    std::wstring text{};
    TextMatch match = TextMatch::Exact;
    int button = 0;
    std::wstring buttonCaption{};
    // How many dialogs this rule may answer (0: any number). A dialog seen after that is
    // unexpected, so a test can insist that a question is asked only once.
    int times = 0;
    // The dialog stays open this long before it is answered, for tests that let time pass
    // while a question waits.
    DWORD answerAfterMs = 0;
    // When given, the dialog's buttons (captions without "&", in order) must be just these for
    // the rule to answer it.
    std::vector<std::wstring> buttons{};
};

// Members start empty, so that a designated initializer may name only what a run needs.
struct RunOptions
{
    // The program to start. Empty: InstallWizard.exe in `setupFolder`, or in the sample setup
    // folder when that is empty too.
    std::wstring program{};
    std::wstring setupFolder{};
    // Arguments only; the program's quoted path is put in front.
    std::wstring commandLine{};
    // Empty: the program's own folder.
    std::wstring workingFolder{};
    std::vector<DialogRule> rules{};
    // After this the program is ended and the run counts as timed out.
    DWORD timeoutMs = 60000;
    // Called on every round of the watch loop (every `roundMs`) while the program runs, for
    // tests that drive windows other than dialogs. Return false to end the program and fail.
    std::function<bool(DWORD processId)> onPoll{};
    // Asked after onPoll: true ends the program at once, as a crash or a power cut would, and
    // the run's outcome is EndedByTest.
    std::function<bool(DWORD processId)> endWhen{};
    DWORD roundMs = 50;
    // Off for measurements: looking at the program's windows sends them messages, which would
    // be counted as the program's own time. A dialog then waits until the time limit.
    bool watchDialogs = true;
    // A console program's output goes nowhere instead of into the test's own.
    bool discardOutput = false;
};

enum class RunOutcome
{
    NotStarted,        // CreateProcessW failed (see `failure`)
    Exited,            // the program ended by itself; `exitCode` holds its exit code
    UnexpectedDialog,  // no rule answered a dialog (it is the last record); the program was ended
    NoSuchButton,      // a rule named a button the dialog doesn't have; the program was ended
    PollFailed,        // onPoll returned false; the program was ended
    TimedOut,          // the time limit passed; the program was ended
    EndedByTest,       // endWhen asked for it; the program was ended
};

struct DialogRecord
{
    std::wstring title;
    std::wstring text;
    std::vector<std::wstring> buttons;  // captions without "&"
    int rule = -1;                      // index of the rule that answered; -1 when none did
    std::wstring pressed;               // caption of the button pressed; empty when none was
};

struct RunResult
{
    RunOutcome outcome = RunOutcome::NotStarted;
    DWORD processId = 0;
    DWORD exitCode = STILL_ACTIVE;  // meaningful when outcome is Exited
    std::vector<DialogRecord> dialogs;
    // Windows of the program open when it was ended (unexpected dialog, time-out, poll failure).
    std::vector<std::wstring> openWindows;
    std::wstring failure;
    // From just before the start to the end (or to being ended).
    double seconds = 0;
    // The largest working set the program had, as seen once a round and at its end.
    uint64_t peakWorkingSetBytes = 0;

    bool Exited() const { return outcome == RunOutcome::Exited; }
    bool ExitedWith(DWORD code) const { return Exited() && exitCode == code; }
    // Outcome, exit code, every dialog seen and the open windows, for failure messages (UTF-8).
    std::string Describe() const;
};

const char* ToString(RunOutcome outcome);
bool TextMatches(const std::wstring& actual, const std::wstring& expected, TextMatch match);

// Runs one program to its end under watch. One object, one run.
class ProgramDriver
{
public:
    explicit ProgramDriver(RunOptions options);
    ProgramDriver(const ProgramDriver&) = delete;
    ProgramDriver& operator=(const ProgramDriver&) = delete;

    // Starts the program and watches it until it ends, fails or times out.
    RunResult Run();

private:
    bool Start(RunResult& result);
    // Answers the dialogs that appeared since the last round; false ends the run.
    bool AnswerDialogs(RunResult& result);
    bool DueForAnswer(HWND dialog, const DialogRule& rule);
    void EndProgram(RunResult& result, RunOutcome outcome, const std::wstring& why);
    void Measure(RunResult& result) const;

    RunOptions options_;
    HVHandle process_;
    std::vector<HWND> answered_;
    std::vector<int> ruleUses_;
    std::vector<std::pair<HWND, ULONGLONG>> firstSeen_;
    LARGE_INTEGER started_{};
};
}

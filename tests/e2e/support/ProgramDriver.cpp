#include "ProgramDriver.h"

#include "TestPaths.h"

#include <psapi.h>

#include <algorithm>

namespace e2e
{
namespace
{
bool SameNoCase(const std::wstring& a, const std::wstring& b)
{
    return CompareStringOrdinal(a.c_str(), static_cast<int>(a.size()), b.c_str(), static_cast<int>(b.size()),
                                TRUE) == CSTR_EQUAL;
}

const ButtonInfo* FindButton(const WindowInfo& dialog, const DialogRule& rule)
{
    for (const ButtonInfo& b : dialog.buttons)
    {
        if (rule.button != 0 ? b.id == rule.button : SameNoCase(b.caption, StripAccelerator(rule.buttonCaption)))
            return &b;
    }
    return nullptr;
}
}

const char* ToString(RunOutcome outcome)
{
    switch (outcome)
    {
    case RunOutcome::NotStarted: return "not started";
    case RunOutcome::Exited: return "exited";
    case RunOutcome::UnexpectedDialog: return "unexpected dialog";
    case RunOutcome::NoSuchButton: return "no such button";
    case RunOutcome::PollFailed: return "poll failed";
    case RunOutcome::TimedOut: return "timed out";
    case RunOutcome::EndedByTest: return "ended by the test";
    }
    return "?";
}

bool TextMatches(const std::wstring& actual, const std::wstring& expected, TextMatch match)
{
    switch (match)
    {
    case TextMatch::Exact: return actual == expected;
    case TextMatch::StartsWith: return actual.compare(0, expected.size(), expected) == 0;
    case TextMatch::Contains: return actual.find(expected) != std::wstring::npos;
    case TextMatch::Any: return true;
    }
    return false;
}

std::string RunResult::Describe() const
{
    std::string out = std::string("run ") + ToString(outcome);
    if (outcome == RunOutcome::Exited)
        out += " with exit code " + std::to_string(exitCode);
    if (!failure.empty())
        out += ": " + Utf8(failure);
    out += "\n" + std::to_string(dialogs.size()) + " dialog(s) seen:";
    for (const DialogRecord& d : dialogs)
    {
        out += "\n  \"" + Utf8(d.title) + "\" / \"" + Utf8(d.text) + "\" buttons:";
        for (const std::wstring& b : d.buttons)
            out += " [" + Utf8(b) + "]";
        if (d.rule >= 0)
            out += " -> rule " + std::to_string(d.rule) + " pressed [" + Utf8(d.pressed) + "]";
        else
            out += " -> no rule";
    }
    if (!openWindows.empty())
    {
        out += "\nwindows open at the end:";
        for (const std::wstring& w : openWindows)
            out += "\n  " + Utf8(w);
    }
    return out;
}

ProgramDriver::ProgramDriver(RunOptions options) : options_(std::move(options))
{
    if (options_.program.empty())
    {
        std::wstring folder = options_.setupFolder.empty() ? MediaFolder() : options_.setupFolder;
        if (!folder.empty() && folder.back() != L'\\')
            folder += L'\\';
        options_.program = folder + L"InstallWizard.exe";
    }
    if (options_.workingFolder.empty())
        options_.workingFolder = options_.program.substr(0, options_.program.find_last_of(L'\\') + 1);
    ruleUses_.assign(options_.rules.size(), 0);
}

bool ProgramDriver::Start(RunResult& result)
{
    std::wstring commandLine = L"\"" + options_.program + L"\"";
    if (!options_.commandLine.empty())
        commandLine += L" " + options_.commandLine;
    QueryPerformanceCounter(&started_);
    STARTUPINFOW startup = {};
    startup.cb = sizeof(startup);
    HVFileHandle nul;
    if (options_.discardOutput)
    {
        SECURITY_ATTRIBUTES inherit = {sizeof(inherit), nullptr, TRUE};
        nul.Reset(CreateFileW(L"NUL", GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE, &inherit,
                              OPEN_EXISTING, 0, nullptr));
        startup.dwFlags = STARTF_USESTDHANDLES;
        startup.hStdInput = startup.hStdOutput = startup.hStdError = nul.Get();
    }
    PROCESS_INFORMATION info = {};
    if (!CreateProcessW(options_.program.c_str(), commandLine.data(), nullptr, nullptr, options_.discardOutput, 0,
                        nullptr, options_.workingFolder.c_str(), &startup, &info))
    {
        result.failure = L"cannot start " + commandLine + L" (error " + std::to_wstring(GetLastError()) + L")";
        return false;
    }
    process_.Reset(info.hProcess);
    HVHandle thread(info.hThread);
    result.processId = info.dwProcessId;
    return true;
}

void ProgramDriver::Measure(RunResult& result) const
{
    LARGE_INTEGER now;
    LARGE_INTEGER frequency;
    QueryPerformanceCounter(&now);
    QueryPerformanceFrequency(&frequency);
    result.seconds = static_cast<double>(now.QuadPart - started_.QuadPart) / static_cast<double>(frequency.QuadPart);
    // Wine can only read a process's counters while it runs, hence once a round as well.
    PROCESS_MEMORY_COUNTERS counters = {};
    counters.cb = sizeof(counters);
    if (GetProcessMemoryInfo(process_.Get(), &counters, sizeof(counters)))
        result.peakWorkingSetBytes = std::max<uint64_t>(result.peakWorkingSetBytes, counters.PeakWorkingSetSize);
}

void ProgramDriver::EndProgram(RunResult& result, RunOutcome outcome, const std::wstring& why)
{
    result.outcome = outcome;
    result.failure = why;
    // A deliberate end must come at once, where the test chose it.
    if (outcome != RunOutcome::EndedByTest)
        for (const WindowInfo& w : ListTopLevelWindows(result.processId, true))
            result.openWindows.push_back(w.Describe());
    TerminateProcess(process_.Get(), 0xDEAD);
    WaitForSingleObject(process_.Get(), 10000);
    Measure(result);
}

bool ProgramDriver::DueForAnswer(HWND dialog, const DialogRule& rule)
{
    if (rule.answerAfterMs == 0)
        return true;
    const ULONGLONG now = GetTickCount64();
    auto seen = std::find_if(firstSeen_.begin(), firstSeen_.end(), [dialog](const auto& s) { return s.first == dialog; });
    if (seen == firstSeen_.end())
        seen = firstSeen_.insert(firstSeen_.end(), {dialog, now});
    return now - seen->second >= rule.answerAfterMs;
}

bool ProgramDriver::AnswerDialogs(RunResult& result)
{
    for (const WindowInfo& window : ListTopLevelWindows(result.processId, true))
    {
        if (!window.IsDialog())
            continue;
        if (std::find(answered_.begin(), answered_.end(), window.hwnd) != answered_.end())
            continue;
        // A dialog that shows no text and no button yet is still being built: next round.
        if (window.buttons.empty() && window.statics.empty())
            continue;
        DialogRecord record;
        record.title = window.title;
        record.text = window.text;
        for (const ButtonInfo& b : window.buttons)
            record.buttons.push_back(b.caption);

        for (size_t i = 0; i < options_.rules.size(); ++i)
        {
            const DialogRule& rule = options_.rules[i];
            if (rule.times > 0 && ruleUses_[i] >= rule.times)
                continue;
            if (!rule.title.empty() && rule.title != window.title)
                continue;
            if (!TextMatches(window.text, rule.text, rule.match))
                continue;
            if (!rule.buttons.empty() && rule.buttons != record.buttons)
                continue;
            record.rule = static_cast<int>(i);
            break;
        }
        if (record.rule >= 0 && !DueForAnswer(window.hwnd, options_.rules[record.rule]))
            continue;
        answered_.push_back(window.hwnd);
        if (record.rule < 0)
        {
            result.dialogs.push_back(record);
            EndProgram(result, RunOutcome::UnexpectedDialog, L"no rule answers the dialog \"" + window.title + L"\"");
            return false;
        }
        const DialogRule& rule = options_.rules[record.rule];
        const ButtonInfo* button = FindButton(window, rule);
        if (!button)
        {
            result.dialogs.push_back(record);
            const std::wstring wanted = rule.button ? L"id " + std::to_wstring(rule.button) : rule.buttonCaption;
            EndProgram(result, RunOutcome::NoSuchButton,
                       L"the dialog \"" + window.title + L"\" has no button " + wanted);
            return false;
        }
        ++ruleUses_[record.rule];
        record.pressed = button->caption;
        result.dialogs.push_back(record);
        PressButton(window.hwnd, *button);
    }
    return true;
}

RunResult ProgramDriver::Run()
{
    RunResult result;
    if (!Start(result))
        return result;

    const ULONGLONG started = GetTickCount64();
    for (;;)
    {
        if (WaitForSingleObject(process_.Get(), options_.roundMs) == WAIT_OBJECT_0)
        {
            // A dialog answered in the last round may still be recorded; the program is done.
            Measure(result);
            GetExitCodeProcess(process_.Get(), &result.exitCode);
            result.outcome = RunOutcome::Exited;
            return result;
        }
        Measure(result);
        if (options_.watchDialogs && !AnswerDialogs(result))
            return result;
        if (options_.onPoll && !options_.onPoll(result.processId))
        {
            EndProgram(result, RunOutcome::PollFailed, L"the test's poll check failed");
            return result;
        }
        if (options_.endWhen && options_.endWhen(result.processId))
        {
            EndProgram(result, RunOutcome::EndedByTest, L"");
            return result;
        }
        if (GetTickCount64() - started > options_.timeoutMs)
        {
            EndProgram(result, RunOutcome::TimedOut,
                       L"still running after " + std::to_wstring(options_.timeoutMs) + L" ms");
            return result;
        }
    }
}
}

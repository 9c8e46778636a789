#pragma once

#include "ProgramDriver.h"

#include <windows.h>

#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace e2e
{
// A UTF-8 text file (the installer's log, an agreement) as UTF-16; empty when unreadable.
std::wstring ReadText(const std::wstring& path);
bool FolderExists(const std::wstring& folder);
// Environment references ("%SystemRoot%\\") filled in.
std::wstring Expand(const std::wstring& text);
// Where the sample product goes when nothing else decides: "<Program Files>\Halvard\Sonora\".
std::wstring DefaultDestination();
// How often `what` occurs in `text`.
int CountOf(const std::string& text, const std::string& what);

// A setup folder of the test's own, "..\scratch\<name>\": the setup program, the product's two
// source folders (empty, so an install runs through without files to copy), the description
// (none when `installXml` is empty) and, when asked, the sample agreement.
std::wstring MakeSetupFolder(const std::wstring& name, const std::optional<std::string>& installXml,
                             bool withAgreement = false);
// An Install.xml for such a folder: the product's launcher and these element texts, each named
// by its section ("Installer/OfferAutoInstall" -> "1"; the text is written as given).
std::string DescriptionXml(const std::vector<std::pair<std::string, std::string>>& elements);

// One run of the setup program that writes its log to SetupLogPath(), and the log read back.
struct SetupRun
{
    RunResult result;
    std::wstring log;

    bool Logged(const std::wstring& line) const { return log.find(line) != std::wstring::npos; }
    // The run, `more` (the wizard user's record, say) and the log, for failure messages.
    std::string Describe(const std::string& more = {}) const;
};
std::wstring SetupLogPath();
// `options.commandLine` gets "/Log=<SetupLogPath()>" in front; the old log is removed first.
SetupRun RunSetup(RunOptions options);
// The usual run: a setup folder (empty: the sample's), arguments, rules, and what to do on
// each round (a WizardUser's Poller(), say).
SetupRun RunSetup(const std::wstring& setupFolder, const std::wstring& commandLine, std::vector<DialogRule> rules = {},
                  std::function<bool(DWORD)> onPoll = {});

// A run ended once its log has `line` (its outcome then PollFailed), for tests of what comes
// before the wizard.
SetupRun RunUntilLogged(const std::wstring& setupFolder, const std::wstring& commandLine, std::vector<DialogRule> rules,
                        const std::wstring& line);

// A silent install watched only through the files (no dialog is looked at) in fine rounds, so
// that `endWhen` ends it close to the moment it waits for, as a crash or a power cut would.
RunResult RunSilentUntil(const std::wstring& setupFolder, std::function<bool(DWORD)> endWhen = {});

// A run as a deployment tool starts it where nobody is logged on: "/Silent /SuppressMessages",
// ended at the first window of the program that becomes visible (the driver lists it then).
SetupRun RunUnseen(const std::wstring& setupFolder = {});

// A running copy of the product (the sample launcher), optionally refusing to close; ended
// when the object goes.
class RunningProduct
{
public:
    // recordFile: where the product writes the commands its command target receives.
    explicit RunningProduct(bool ignoreClose, const std::wstring& recordFile = {});
    ~RunningProduct();
    RunningProduct(const RunningProduct&) = delete;
    RunningProduct& operator=(const RunningProduct&) = delete;

    bool Started() const;
    DWORD ProcessId() const { return process_.dwProcessId; }
    bool Running() const;
    // A copy whose window was closed still takes a moment to end its process.
    bool EndsSoon() const;

private:
    PROCESS_INFORMATION process_ = {};
};
}

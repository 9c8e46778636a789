#pragma once

#include "ProgramDriver.h"
#include "WizardDriver.h"

#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace e2e
{
// One whole run of the setup program written as data: the setup folder's edits, the machine
// before, the command line and the person's answers, and what the machine must hold after.
// RunScenario() starts from a fresh machine, arranges, runs, and checks every expectation.
//
// Paths may use {dest} (the default destination), {setup} (the row's setup folder), {windows}
// (the Windows folder), {startmenu} (the product's Start Menu folder), {desktop} (the desktop). Registry keys begin with HKCU\, HKLM\ (64-bit view), HKLM32\ or HKCR\;
// a last key name ending in "*" stands for the first subkey whose name starts with the rest.
//
// File contents, arranged or expected:
//   "-"                  absent (arranging: deleted, a folder with everything in it)
//   "*"                  present (expected only)
//   "empty"              a folder without files, or none at all (expected only)
//   "setup:<rel>"        the bytes of that file of the sample setup folder
//   "setup:<rel>@<n>"    the same with the major number of its version resource set to n
//   "text:<bytes>"       these bytes
//   "utf16:<text>"       the text as UTF-16 with its byte-order mark
//   "restart"            replaced at the next restart (expected only)
// Registry data: "-" absent, "*" present, "=" as it was before the run (expected only),
// "dword:<n>", anything else a string.
struct ScenarioFile
{
    std::wstring path;
    std::wstring content;
};

struct ScenarioValue
{
    std::wstring key;
    std::wstring name;
    std::wstring data;
};

struct Scenario
{
    const char* name;
    // The setup folder: Install.xml replaced whole, then element texts ("Product/InstallToPath")
    // or attributes ("Settings@AllowDowngrade") set. Any edit, or a {setup} file below, gives
    // the row a copy of its own; otherwise it runs from the sample setup folder.
    std::optional<std::string> installXml{};
    std::vector<std::pair<std::string, std::string>> description{};
    // The sample setup folder made read-only on a drive of its own (the test's wrapper sets
    // IW_READ_ONLY_SETUP to it; without it the row is skipped with a note).
    bool readOnlySetup = false;
    // The machine before: an install run first with these arguments (none when empty), then
    // files and values, then the files held open by another process during the run.
    std::wstring installedBefore{};
    std::vector<ScenarioFile> filesBefore{};
    std::vector<ScenarioValue> valuesBefore{};
    std::vector<std::wstring> held{};
    // "NAME=value" for the run only.
    std::vector<std::wstring> environment{};
    std::wstring commandLine{};
    std::vector<WizardStep> person{};
    // The boxes expected, in this order, each answering as many as its `times` says (0: any).
    std::vector<DialogRule> answers{};
    // No window of the program may become visible (the run is ended at the first).
    bool unseen = false;
    // After the run.
    DWORD exitCode = 0;
    std::vector<ScenarioFile> files{};
    std::vector<ScenarioValue> values{};
    std::vector<std::wstring> logged{};
    std::vector<std::wstring> notLogged{};
    // Nothing the installer could write differs from the machine before the run.
    bool untouched = false;
};

// Next on the page after typing `text` into its edit field.
WizardStep TypeOn(const std::wstring& page, const std::wstring& text);

// Runs the row on a fresh machine and leaves what it wrote there (the next row, or the table's
// end, resets); failures are reported as test failures naming the row.
void RunScenario(const Scenario& scenario);
}

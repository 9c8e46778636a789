#include "Scenario.h"

#include "FolderTree.h"
#include "FreshMachine.h"
#include "HeldFileLock.h"
#include "PendingRenames.h"
#include "SetupFolder.h"
#include "SetupRun.h"
#include "Shortcut.h"
#include "TestPaths.h"
#include "TestRegistry.h"
#include "WindowInspector.h"

#include <gtest/gtest.h>

#include <cstring>
#include <iostream>
#include <memory>

namespace e2e
{
namespace
{
struct Place
{
    std::wstring setup;
};

std::wstring Replace(std::wstring text, const std::wstring& token, const std::wstring& with)
{
    for (size_t at = text.find(token); at != std::wstring::npos; at = text.find(token, at + with.size()))
        text.replace(at, token.size(), with);
    return text;
}

std::wstring Resolve(const std::wstring& text, const Place& place)
{
    std::wstring out = Replace(text, L"{dest}", DefaultDestination());
    out = Replace(out, L"{setup}", place.setup);
    out = Replace(out, L"{startmenu}", StartMenuFolder());
    out = Replace(out, L"{desktop}", DesktopLink().substr(0, DesktopLink().rfind(L'\\') + 1));
    return Replace(out, L"{windows}", Expand(L"%SystemRoot%\\"));
}

bool StartsWith(const std::wstring& text, const std::wstring& prefix) { return text.rfind(prefix, 0) == 0; }

// The version resource's fixed part patched to another major version: a copy of a program that
// looks newer (or older) to the installer.
std::string WithMajorVersion(std::string bytes, uint16_t major)
{
    const char signature[] = {'\xBD', '\x04', '\xEF', '\xFE'};
    const size_t at = bytes.find(std::string(signature, 4));
    if (at != std::string::npos)
        std::memcpy(&bytes[at + 10], &major, sizeof major);  // high word of the file version
    return bytes;
}

// The bytes a content notation stands for; nullopt for the notations that aren't bytes.
std::optional<std::string> Bytes(const std::wstring& content, const Place& place)
{
    if (StartsWith(content, L"text:"))
        return Utf8(Resolve(content.substr(5), place));
    if (StartsWith(content, L"utf16:")) {
        const std::wstring text = L"\xFEFF" + Resolve(content.substr(6), place);
        return std::string(reinterpret_cast<const char*>(text.data()), text.size() * sizeof(wchar_t));
    }
    if (StartsWith(content, L"setup:")) {
        const std::wstring rest = content.substr(6);
        const size_t at = rest.find(L'@');
        const std::string bytes = ReadFileText(MediaFolder() + rest.substr(0, at));
        return at == std::wstring::npos ? bytes : WithMajorVersion(bytes, static_cast<uint16_t>(std::stoi(rest.substr(at + 1))));
    }
    return std::nullopt;
}

struct RegPlace
{
    HKEY root = nullptr;
    std::wstring path;
    HVRegView view = HVRegView::Native;
};

RegPlace ParseKey(const std::wstring& key, const Place& place)
{
    static const struct
    {
        const wchar_t* prefix;
        HKEY root;
        HVRegView view;
    } roots[] = {{L"HKCU\\", HKEY_CURRENT_USER, HVRegView::Native},
                 {L"HKLM\\", HKEY_LOCAL_MACHINE, HVRegView::Key64},
                 {L"HKLM32\\", HKEY_LOCAL_MACHINE, HVRegView::Key32},
                 {L"HKCR\\", HKEY_CLASSES_ROOT, HVRegView::Native}};
    RegPlace result;
    for (const auto& r : roots)
        if (StartsWith(key, r.prefix))
            result = {r.root, Resolve(key.substr(wcslen(r.prefix)), place), r.view};
    // A subkey named by its beginning: the first that has it.
    if (!result.path.empty() && result.path.back() == L'*') {
        const size_t slash = result.path.rfind(L'\\');
        const std::wstring parent = result.path.substr(0, slash);
        const std::wstring prefix = result.path.substr(slash + 1, result.path.size() - slash - 2);
        for (const std::wstring& sub : RegSubKeys(result.root, parent, result.view))
            if (StartsWith(sub, prefix)) {
                result.path = parent + L"\\" + sub;
                break;
            }
    }
    EXPECT_NE(result.root, nullptr) << Utf8(key);
    return result;
}

// A value as one comparable text: "dword:<n>" for numbers, the string itself, or "-".
std::wstring ReadValue(const ScenarioValue& value, const Place& place)
{
    const RegPlace key = ParseKey(value.key, place);
    if (const auto text = RegString(key.root, key.path, value.name, key.view))
        return *text;
    if (const auto number = RegDword(key.root, key.path, value.name, key.view))
        return L"dword:" + std::to_wstring(*number);
    return RegValueExists(key.root, key.path, value.name, key.view) ? L"*" : L"-";
}

void Arrange(const ScenarioValue& value, const Place& place)
{
    const RegPlace key = ParseKey(value.key, place);
    const std::wstring data = Resolve(value.data, place);
    bool done = false;
    if (data == L"-")
        done = RegDeleteValueIfPresent(key.root, key.path, value.name, key.view);
    else if (StartsWith(data, L"dword:"))
        done = RegSetDword(key.root, key.path, value.name, static_cast<DWORD>(std::stoul(data.substr(6))), key.view);
    else
        done = RegSetString(key.root, key.path, value.name, data, key.view);
    ASSERT_TRUE(done) << Utf8(value.key + L" " + value.name);
}

void Arrange(const ScenarioFile& file, const Place& place)
{
    const std::wstring path = Resolve(file.path, place);
    if (file.content == L"-") {
        if (path.back() == L'\\') {
            ASSERT_TRUE(DeleteTree(path)) << Utf8(path);
        } else {
            ::SetFileAttributesW(path.c_str(), FILE_ATTRIBUTE_NORMAL);
            ::DeleteFileW(path.c_str());
        }
        return;
    }
    const auto bytes = Bytes(file.content, place);
    ASSERT_TRUE(bytes && WriteFileBytes(path, *bytes)) << Utf8(path);
}

bool SetAttribute(const std::wstring& setup, const std::string& element, const std::string& attribute,
                  const std::string& value)
{
    std::string xml;
    if (!ReadFileBytes(setup + L"Install.xml", xml))
        return false;
    const size_t tag = xml.find("<" + element);
    const size_t at = tag == std::string::npos ? tag : xml.find(attribute + "=\"", tag);
    if (at == std::string::npos)
        return false;
    const size_t begin = at + attribute.size() + 2;
    xml.replace(begin, xml.find('"', begin) - begin, value);
    return WriteFileBytes(setup + L"Install.xml", xml);
}

std::wstring SetupFolderFor(const Scenario& s)
{
    if (s.readOnlySetup) {
        wchar_t drive[MAX_PATH] = {};
        ::GetEnvironmentVariableW(L"IW_READ_ONLY_SETUP", drive, MAX_PATH);
        return drive;
    }
    bool own = s.installXml || !s.description.empty();
    for (const ScenarioFile& file : s.filesBefore)
        own = own || StartsWith(file.path, L"{setup}");
    if (!own)
        return MediaFolder();
    const std::wstring setup = CopySampleSetup(L"Scenario");
    EXPECT_FALSE(setup.empty());
    if (s.installXml) {
        EXPECT_TRUE(WriteFileBytes(setup + L"Install.xml", *s.installXml));
    }
    for (const auto& [key, value] : s.description) {
        const size_t at = key.find('@');
        EXPECT_TRUE(at == std::string::npos ? SetDescriptionText(setup, key, value)
                                            : SetAttribute(setup, key.substr(0, at), key.substr(at + 1), value))
            << key;
    }
    return setup;
}

void CheckFile(const ScenarioFile& file, const Place& place)
{
    const std::wstring path = Resolve(file.path, place);
    SCOPED_TRACE(Utf8(path + L" " + file.content.substr(0, 40)));
    if (file.content == L"-")
        EXPECT_FALSE(PathExists(path));
    else if (file.content == L"*")
        EXPECT_TRUE(PathExists(path));
    else if (file.content == L"empty")
        EXPECT_TRUE(ListTree(path).empty());
    else if (file.content == L"restart")
        EXPECT_TRUE(PendingRenames::Names(HVString(path.c_str())));
    else {
        const auto expected = Bytes(file.content, place);
        ASSERT_TRUE(expected.has_value()) << "unknown notation";
        std::string actual;
        EXPECT_TRUE(ReadFileBytes(path, actual));
        EXPECT_TRUE(actual == *expected) << "the file's bytes differ (" << actual.size() << " bytes, expected "
                                         << expected->size() << ")";
    }
}

// The traces, less the desktop: Wine maps every prefix's desktop to the Linux home folder, so
// another prefix on the same machine (a second build tree) can put a link there at any time.
std::vector<std::wstring> OwnTraces()
{
    std::vector<std::wstring> traces = ReadTraces();
    const std::wstring desktop = DesktopLink().substr(0, DesktopLink().rfind(L'\\') + 1);
    std::erase_if(traces, [&](const std::wstring& line) { return StartsWith(line, desktop); });
    return traces;
}

void ResetMachine()
{
    std::vector<std::wstring> problems;
    EXPECT_TRUE(ResetToFreshMachine(&problems)) << Utf8(problems.empty() ? L"" : problems.front());
    ::DeleteFileW((MediaFolder() + L"Finish.txt").c_str());
}

void Run(const Scenario& s, const Place& place)
{
    if (!s.installedBefore.empty()) {
        RunOptions earlier;
        earlier.commandLine = s.installedBefore;
        const SetupRun before = RunSetup(earlier);
        ASSERT_TRUE(before.result.ExitedWith(0)) << before.Describe();
    }
    for (const ScenarioFile& file : s.filesBefore)
        Arrange(file, place);
    for (const ScenarioValue& value : s.valuesBefore)
        Arrange(value, place);
    std::vector<std::wstring> unchanged;
    for (const ScenarioValue& value : s.values)
        unchanged.push_back(value.data == L"=" ? ReadValue(value, place) : L"");
    const std::vector<std::wstring> tracesBefore = s.untouched ? OwnTraces() : std::vector<std::wstring>{};
    const PendingRenames renames;
    std::vector<std::unique_ptr<HeldFileLock>> locks;
    for (const std::wstring& path : s.held) {
        locks.push_back(std::make_unique<HeldFileLock>(Resolve(path, place)));
        ASSERT_TRUE(locks.back()->IsHeld()) << Utf8(locks.back()->Error());
    }
    for (const std::wstring& variable : s.environment) {
        const size_t equals = variable.find(L'=');
        ::SetEnvironmentVariableW(variable.substr(0, equals).c_str(), variable.substr(equals + 1).c_str());
    }
    WizardUser user(s.person);
    RunOptions options;
    options.setupFolder = place.setup;
    options.commandLine = Resolve(s.commandLine, place);
    options.rules = s.answers;
    for (DialogRule& rule : options.rules)
        rule.text = Resolve(rule.text, place);
    options.timeoutMs = 90000;
    if (!s.person.empty())
        options.onPoll = user.Poller();
    if (s.unseen)
        options.onPoll = [](DWORD processId) { return ListTopLevelWindows(processId, true).empty(); };
    const SetupRun run = RunSetup(options);
    for (const std::wstring& variable : s.environment)
        ::SetEnvironmentVariableW(variable.substr(0, variable.find(L'=')).c_str(), nullptr);
    locks.clear();

    EXPECT_TRUE(run.result.ExitedWith(s.exitCode)) << run.Describe(user.Describe());
    EXPECT_TRUE(user.Finished()) << user.Describe();
    // The boxes came in the order of their answers, each as often as it says.
    std::vector<int> uses(s.answers.size());
    for (size_t i = 0; i < run.result.dialogs.size(); ++i) {
        const int rule = run.result.dialogs[i].rule;
        EXPECT_TRUE(rule >= 0 && (i == 0 || rule >= run.result.dialogs[i - 1].rule)) << run.Describe();
        if (rule >= 0)
            ++uses[static_cast<size_t>(rule)];
    }
    for (size_t i = 0; i < s.answers.size(); ++i)
        EXPECT_TRUE(s.answers[i].times == 0 || uses[i] == s.answers[i].times) << "answer " << i << "\n" << run.Describe();
    for (const ScenarioFile& file : s.files)
        CheckFile(file, place);
    for (size_t i = 0; i < s.values.size(); ++i) {
        const ScenarioValue& value = s.values[i];
        const std::wstring actual = ReadValue(value, place);
        const std::wstring expected = value.data == L"=" ? unchanged[i] : Resolve(value.data, place);
        if (expected == L"*")
            EXPECT_NE(actual, L"-") << Utf8(value.key + L" " + value.name);
        else
            EXPECT_EQ(actual, expected) << Utf8(value.key + L" " + value.name);
    }
    for (const std::wstring& line : s.logged)
        EXPECT_TRUE(run.Logged(Resolve(line, place))) << Utf8(line) << "\n" << run.Describe();
    for (const std::wstring& line : s.notLogged)
        EXPECT_FALSE(run.Logged(Resolve(line, place))) << Utf8(line) << "\n" << run.Describe();
    if (s.untouched) {
        EXPECT_EQ(OwnTraces(), tracesBefore);
    }
}
}

WizardStep TypeOn(const std::wstring& page, const std::wstring& text)
{
    return {page, [text](const WizardView& view) {
                TypeText(view.ControlOfClass(L"Edit"), text);
                ClickNext(view);
            }};
}

void RunScenario(const Scenario& scenario)
{
    SCOPED_TRACE(scenario.name);
    const Place place{SetupFolderFor(scenario)};
    if (place.setup.empty()) {
        std::cout << "[ SKIPPED  ] " << scenario.name << ": no read-only setup folder (IW_READ_ONLY_SETUP)\n";
        return;
    }
    const ULONGLONG start = ::GetTickCount64();
    ResetMachine();
    Run(scenario, place);
    std::cout << "[ row      ] " << scenario.name << " (" << (::GetTickCount64() - start) / 100 / 10.0 << " s)\n";
}
}

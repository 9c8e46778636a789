#include "SetupRun.h"

#include <algorithm>

#include "FolderTree.h"
#include "TestPaths.h"
#include "TestRegistry.h"

namespace e2e
{
std::wstring ReadText(const std::wstring& path)
{
    std::string bytes;
    ReadFileBytes(path, bytes);
    const int size = static_cast<int>(bytes.size());
    const int length = ::MultiByteToWideChar(CP_UTF8, 0, bytes.data(), size, nullptr, 0);
    std::wstring text(length, L'\0');
    ::MultiByteToWideChar(CP_UTF8, 0, bytes.data(), size, text.data(), length);
    return text;
}

bool FolderExists(const std::wstring& folder)
{
    const DWORD attributes = ::GetFileAttributesW(folder.c_str());
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY);
}

std::wstring Expand(const std::wstring& text)
{
    wchar_t buffer[MAX_PATH] = {};
    ::ExpandEnvironmentStringsW(text.c_str(), buffer, MAX_PATH);
    return buffer;
}

std::wstring DefaultDestination() { return Expand(L"%ProgramFiles%\\Halvard\\Sonora\\"); }

int CountOf(const std::string& text, const std::string& what)
{
    int count = 0;
    for (size_t at = text.find(what); at != std::string::npos; at = text.find(what, at + 1))
        ++count;
    return count;
}

std::wstring MakeSetupFolder(const std::wstring& name, const std::optional<std::string>& installXml, bool withAgreement)
{
    const std::wstring folder = ScratchFolder(name);
    if (folder.empty() || !::CopyFileW(InstallWizardPath().c_str(), (folder + L"InstallWizard.exe").c_str(), FALSE) ||
        !MakeFolder(folder + L"Listenwell\\") || !MakeFolder(folder + L"System\\"))
        return {};
    // The product's file types and its two launcher programs: without them an install can't go on.
    for (const wchar_t* file : {L"FileAssociations.xml", L"Sonora.exe", L"Sonora 32.exe"})
        if (!::CopyFileW((MediaFolder() + L"Listenwell\\" + file).c_str(), (folder + L"Listenwell\\" + file).c_str(), FALSE))
            return {};
    if (installXml && !WriteFileBytes(folder + L"Install.xml", *installXml))
        return {};
    if (withAgreement &&
        !::CopyFileW((MediaFolder() + L"license.txt").c_str(), (folder + L"license.txt").c_str(), FALSE))
        return {};
    return folder;
}

std::string DescriptionXml(const std::vector<std::pair<std::string, std::string>>& elements)
{
    std::vector<std::pair<std::string, std::string>> sections = {{"Product", "<LauncherName>Sonora.exe</LauncherName>"}};
    for (const auto& [path, text] : elements) {
        const std::string section = path.substr(0, path.find('/')), element = path.substr(path.find('/') + 1);
        auto at = std::find_if(sections.begin(), sections.end(), [&](const auto& s) { return s.first == section; });
        if (at == sections.end())
            at = sections.insert(sections.end(), {section, ""});
        at->second += "<" + element + ">" + text + "</" + element + ">";
    }
    std::string xml = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<HVIC version=\"1.0\">\n";
    for (const auto& [section, inner] : sections)
        xml += "  <" + section + ">" + inner + "</" + section + ">\n";
    return xml + "</HVIC>\n";
}

std::string SetupRun::Describe(const std::string& more) const
{
    return result.Describe() + "\n" + more + "\nLog:\n" + Utf8(log);
}

std::wstring SetupLogPath()
{
    static const std::wstring path = ScratchFolder(L"SetupLog") + L"setup.log";
    return path;
}

SetupRun RunSetup(RunOptions options)
{
    ::DeleteFileW(SetupLogPath().c_str());
    options.commandLine = L"/Log=\"" + SetupLogPath() + L"\" " + options.commandLine;
    SetupRun run;
    run.result = ProgramDriver(std::move(options)).Run();
    run.log = ReadText(SetupLogPath());
    return run;
}

SetupRun RunSetup(const std::wstring& setupFolder, const std::wstring& commandLine, std::vector<DialogRule> rules,
                  std::function<bool(DWORD)> onPoll)
{
    RunOptions options;
    options.setupFolder = setupFolder;
    options.commandLine = commandLine;
    options.rules = std::move(rules);
    options.onPoll = std::move(onPoll);
    return RunSetup(std::move(options));
}

SetupRun RunUntilLogged(const std::wstring& setupFolder, const std::wstring& commandLine, std::vector<DialogRule> rules,
                        const std::wstring& line)
{
    return RunSetup({.setupFolder = setupFolder, .commandLine = commandLine, .rules = std::move(rules), .timeoutMs = 30000,
                     .onPoll = [line](DWORD) { return ReadText(SetupLogPath()).find(line) == std::wstring::npos; }});
}

RunResult RunSilentUntil(const std::wstring& setupFolder, std::function<bool(DWORD)> endWhen)
{
    return ProgramDriver({.setupFolder = setupFolder, .commandLine = L"/Silent", .endWhen = std::move(endWhen), .roundMs = 5,
                          .watchDialogs = false})
        .Run();
}

SetupRun RunUnseen(const std::wstring& setupFolder)
{
    return RunSetup({.setupFolder = setupFolder, .commandLine = L"/Silent /SuppressMessages", .timeoutMs = 30000,
                     .onPoll = [](DWORD id) { return ListTopLevelWindows(id, true).empty(); }, .roundMs = 20});
}

RunningProduct::RunningProduct(bool ignoreClose, const std::wstring& recordFile)
{
    std::wstring commandLine = L"\"" + MediaFolder() + L"Listenwell\\Sonora.exe\"";
    if (ignoreClose)
        commandLine += L" /IgnoreClose";
    if (!recordFile.empty())
        commandLine += L" \"/Record=" + recordFile + L"\"";
    STARTUPINFOW startup = {};
    startup.cb = sizeof(startup);
    if (!::CreateProcessW(nullptr, commandLine.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup,
                          &process_))
        return;
    for (int i = 0; i < 500 && !::FindWindowW(L"LWFrame", nullptr); ++i)
        ::Sleep(10);
}

RunningProduct::~RunningProduct()
{
    if (!process_.hProcess)
        return;
    ::TerminateProcess(process_.hProcess, 1);
    ::WaitForSingleObject(process_.hProcess, 5000);
    ::CloseHandle(process_.hProcess);
    ::CloseHandle(process_.hThread);
}

bool RunningProduct::Started() const
{
    return process_.hProcess && ::FindWindowW(L"LWFrame", nullptr);
}

bool RunningProduct::Running() const
{
    return process_.hProcess && ::WaitForSingleObject(process_.hProcess, 0) == WAIT_TIMEOUT;
}

bool RunningProduct::EndsSoon() const
{
    return process_.hProcess && ::WaitForSingleObject(process_.hProcess, 10000) == WAIT_OBJECT_0;
}
}

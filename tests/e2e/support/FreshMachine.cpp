#include "FreshMachine.h"

#include "FolderTree.h"
#include "Shortcut.h"
#include "TestRegistry.h"
#include "WindowInspector.h"

#include <windows.h>

#include <algorithm>
#include <cstdint>

namespace e2e
{
namespace
{
using Kind = MachineTrace::Kind;

std::wstring Expand(const std::wstring& path)
{
    wchar_t buffer[MAX_PATH * 4];
    const DWORD length = ExpandEnvironmentStringsW(path.c_str(), buffer, static_cast<DWORD>(std::size(buffer)));
    if (length == 0 || length > std::size(buffer))
        return path;
    return std::wstring(buffer, length - 1);
}

bool StartsWithNoCase(const std::wstring& text, const std::wstring& prefix)
{
    return text.size() >= prefix.size() &&
           CompareStringOrdinal(text.c_str(), static_cast<int>(prefix.size()), prefix.c_str(),
                                static_cast<int>(prefix.size()), TRUE) == CSTR_EQUAL;
}

const wchar_t* RootName(HKEY root)
{
    if (root == HKEY_LOCAL_MACHINE)
        return L"HKLM";
    if (root == HKEY_CURRENT_USER)
        return L"HKCU";
    if (root == HKEY_CLASSES_ROOT)
        return L"HKCR";
    return L"HK?";
}

bool RemoveInView(const MachineTrace& t, HVRegView view)
{
    switch (t.kind)
    {
    case Kind::RegistryKey:
        return RegDeleteKeyTree(t.root, t.path, view);
    case Kind::RegistryValue:
        return RegDeleteValueIfPresent(t.root, t.path, t.name, view);
    case Kind::RegistryKeyPrefix:
    {
        bool ok = true;
        for (const std::wstring& sub : RegSubKeys(t.root, t.path, view))
        {
            if (StartsWithNoCase(sub, t.name))
                ok = RegDeleteKeyTree(t.root, t.path + L"\\" + sub, view) && ok;
        }
        return ok;
    }
    default:
        return true;
    }
}

bool Remove(const MachineTrace& t)
{
    switch (t.kind)
    {
    case Kind::Folder:
        return DeleteTree(Expand(t.path));
    case Kind::File:
    {
        const std::wstring path = Expand(t.path);
        SetFileAttributesW(path.c_str(), FILE_ATTRIBUTE_NORMAL);
        DeleteFileW(path.c_str());
        return GetFileAttributesW(path.c_str()) == INVALID_FILE_ATTRIBUTES;
    }
    case Kind::Process:
        EndProcessesByImage({t.name});
        return true;
    default:
        if (!t.bothViews)
            return RemoveInView(t, HVRegView::Native);
        {
            const bool ok64 = RemoveInView(t, HVRegView::Key64);
            const bool ok32 = RemoveInView(t, HVRegView::Key32);
            return ok64 && ok32;
        }
    }
}

std::wstring Describe(const MachineTrace& t)
{
    switch (t.kind)
    {
    case Kind::Folder: return L"folder " + t.path;
    case Kind::File: return L"file " + t.path;
    case Kind::Process: return L"process " + t.name;
    case Kind::RegistryValue: return std::wstring(RootName(t.root)) + L"\\" + t.path + L" value " + t.name;
    case Kind::RegistryKeyPrefix: return std::wstring(RootName(t.root)) + L"\\" + t.path + L"\\" + t.name + L"*";
    case Kind::RegistryKey: return std::wstring(RootName(t.root)) + L"\\" + t.path;
    }
    return t.path;
}

std::wstring Hex(const uint8_t* data, size_t size)
{
    static const wchar_t kDigits[] = L"0123456789abcdef";
    std::wstring text;
    for (size_t i = 0; i < size; ++i)
        text += std::wstring{kDigits[data[i] >> 4], kDigits[data[i] & 15]};
    return text;
}

void ReadKey(HKEY root, const std::wstring& path, HVRegView view, const std::vector<std::wstring>& mask,
             std::vector<std::wstring>& lines)
{
    HVRegKey key;
    if (!key.Open(root, HVString(path.c_str()), KEY_READ, view))
        return;
    const std::wstring prefix = std::wstring(RootName(root)) + L"\\" + path + (view == HVRegView::Key32 ? L" [32] " : L" [64] ");
    for (const HVString& name : key.EnumValueNames())
    {
        DWORD type = 0;
        std::vector<uint8_t> data;
        key.QueryValue(name, type, data);
        const std::wstring wname(name.w());
        const bool masked = std::find(mask.begin(), mask.end(), wname) != mask.end();
        lines.push_back(prefix + wname + L" = " + std::to_wstring(type) + L":" + (masked ? L"*" : Hex(data.data(), data.size())));
    }
    lines.push_back(prefix + L"(key)");
    for (const HVString& sub : key.EnumSubKeys())
        ReadKey(root, path + L"\\" + sub.w(), view, mask, lines);
}

std::wstring FileLine(const std::wstring& path)
{
    // A shell link carries its target's file times, new with every install: what it starts
    // is what matters.
    if (path.size() > 4 && _wcsicmp(path.c_str() + path.size() - 4, L".lnk") == 0) {
        const auto link = ReadShortcut(path);
        return path + L" -> " + (link ? link->path + L" " + link->arguments + L" (" + link->icon + L")" : L"(no link)");
    }
    std::string bytes;
    if (!ReadFileBytes(path, bytes))
        return path + L" (unreadable)";
    uint64_t hash = 14695981039346656037ull;
    for (const char c : bytes)
        hash = (hash ^ static_cast<uint8_t>(c)) * 1099511628211ull;
    return path + L" (" + std::to_wstring(bytes.size()) + L" bytes, " + std::to_wstring(hash) + L")";
}
}

std::vector<std::wstring> ReadTraces(const std::vector<std::wstring>& mask)
{
    std::vector<std::wstring> lines;
    for (const MachineTrace& t : InstallerTraces())
    {
        const std::vector<HVRegView> views = t.bothViews ? std::vector<HVRegView>{HVRegView::Key64, HVRegView::Key32}
                                                         : std::vector<HVRegView>{HVRegView::Native};
        switch (t.kind)
        {
        case Kind::Process: break;
        case Kind::File:
            if (GetFileAttributesW(Expand(t.path).c_str()) != INVALID_FILE_ATTRIBUTES)
                lines.push_back(FileLine(Expand(t.path)));
            break;
        case Kind::Folder:
            for (const std::wstring& file : ListTree(Expand(t.path)))
                lines.push_back(FileLine(Expand(t.path) + L"\\" + file));
            break;
        case Kind::RegistryKey:
            for (HVRegView view : views)
                ReadKey(t.root, t.path, view, mask, lines);
            break;
        case Kind::RegistryKeyPrefix:
            for (HVRegView view : views)
                for (const std::wstring& sub : RegSubKeys(t.root, t.path, view))
                    if (StartsWithNoCase(sub, t.name))
                        ReadKey(t.root, t.path + L"\\" + sub, view, mask, lines);
            break;
        case Kind::RegistryValue:
            for (HVRegView view : views)
                if (const std::optional<std::wstring> value = RegString(t.root, t.path, t.name, view))
                    lines.push_back(Describe(t) + (view == HVRegView::Key32 ? L" [32] = " : L" [64] = ") + *value);
            break;
        }
    }
    std::sort(lines.begin(), lines.end());
    return lines;
}

const std::vector<MachineTrace>& InstallerTraces()
{
    static const std::vector<MachineTrace> traces = [] {
        std::vector<MachineTrace> list = {
            // Programs first: a running copy would hold its files and write its keys back.
            {Kind::Process, nullptr, L"", L"InstallWizard.exe"},
            {Kind::Process, nullptr, L"", L"Sonora.exe"},
            {Kind::Process, nullptr, L"", L"Sonora 32.exe"},
            {Kind::Process, nullptr, L"", L"PackageInstaller.exe"},
            {Kind::Process, nullptr, L"", L"HVService.exe"},
            {Kind::Process, nullptr, L"", L"HVMediaUninstall.exe"},

            // The product's own keys: settings, installation records, journal, plug-ins.
            {Kind::RegistryKey, HKEY_CURRENT_USER, L"Software\\Halvard"},
            {Kind::RegistryKey, HKEY_LOCAL_MACHINE, L"Software\\Halvard"},
            {Kind::RegistryKey, HKEY_CURRENT_USER, L"Software\\Classes\\VirtualStore\\Machine\\Software\\Halvard", L"", false},
            {Kind::RegistryKey, HKEY_CURRENT_USER,
             L"Software\\Classes\\VirtualStore\\Machine\\Software\\Wow6432Node\\Halvard", L"", false},
            // Uninstall entry.
            {Kind::RegistryKeyPrefix, HKEY_LOCAL_MACHINE, L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Uninstall",
             L"Sonora"},
            {Kind::RegistryKeyPrefix, HKEY_CURRENT_USER, L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Uninstall",
             L"Sonora"},
            // Started with Windows: this version's entry and the one it replaced.
            {Kind::RegistryValue, HKEY_CURRENT_USER, L"Software\\Microsoft\\Windows\\CurrentVersion\\Run", L"Sonora 32"},
            {Kind::RegistryValue, HKEY_CURRENT_USER, L"Software\\Microsoft\\Windows\\CurrentVersion\\Run", L"Sonora 31"},
            // Deferred operations completed at the next logon or restart.
            {Kind::RegistryValue, HKEY_LOCAL_MACHINE, L"Software\\Microsoft\\Windows\\CurrentVersion\\RunOnce",
             L"Install Wizard Completion"},
            {Kind::RegistryValue, HKEY_CURRENT_USER, L"Software\\Microsoft\\Windows\\CurrentVersion\\RunOnce",
             L"Install Wizard Completion"},
            {Kind::RegistryValue, HKEY_LOCAL_MACHINE, L"System\\CurrentControlSet\\Control\\Session Manager",
             L"PendingFileRenameOperations", false},
            // The font table entry (the system files' use counts are added below).
            {Kind::RegistryValue, HKEY_LOCAL_MACHINE, L"Software\\Microsoft\\Windows NT\\CurrentVersion\\Fonts",
             L"DejaVuSans (TrueType)"},
            // Shell integration: ProgIDs and Default Programs.
            {Kind::RegistryKeyPrefix, HKEY_LOCAL_MACHINE, L"Software\\Classes", L"Sonora"},
            {Kind::RegistryKeyPrefix, HKEY_CURRENT_USER, L"Software\\Classes", L"Sonora"},
            {Kind::RegistryKeyPrefix, HKEY_LOCAL_MACHINE, L"Software\\Clients\\Media", L"Sonora"},
            {Kind::RegistryKey, HKEY_LOCAL_MACHINE, L"Software\\Classes\\*\\shellex\\ContextMenuHandlers\\Sonora32 Shell Extension"},
            {Kind::RegistryKey, HKEY_LOCAL_MACHINE, L"Software\\Classes\\Applications\\Sonora.exe"},
            {Kind::RegistryValue, HKEY_LOCAL_MACHINE, L"Software\\RegisteredApplications", L"Sonora"},
            {Kind::RegistryKey, HKEY_CURRENT_USER, L"SOFTWARE\\Microsoft\\Keyboard\\Native Media Players\\Sonora"},
            {Kind::RegistryKey, HKEY_CURRENT_USER, L"Software\\Netscape"},
            // File types, protocols and MIME types of the sample (none of them Wine's own) and AutoPlay.
            {Kind::RegistryKeyPrefix, HKEY_LOCAL_MACHINE, L"Software\\Classes\\MIME\\Database\\Content Type", L"application/x-listenwell"},
            {Kind::RegistryKeyPrefix, HKEY_LOCAL_MACHINE, L"Software\\Classes\\MIME\\Database\\Content Type", L"audio/"},
            {Kind::RegistryKey, HKEY_LOCAL_MACHINE, L"Software\\Classes\\MIME\\Database\\Content Type\\application/podcast+xml"},
            {Kind::RegistryKey, HKEY_LOCAL_MACHINE, L"Software\\Classes\\MIME\\Database\\Content Type\\application/rss+xml"},
            {Kind::RegistryKey, HKEY_LOCAL_MACHINE, L"Software\\Classes\\MIME\\Database\\Content Type\\video/mp4"},
            // A fresh Wine has the AutoPlay key, empty.
            {Kind::RegistryKeyPrefix, HKEY_LOCAL_MACHINE, L"Software\\Microsoft\\Windows\\CurrentVersion\\Explorer\\AutoplayHandlers", L""},
            {Kind::RegistryKey, HKEY_CURRENT_USER, L"Software\\Microsoft\\Windows\\CurrentVersion\\Explorer\\FileExts"},

            {Kind::RegistryKey, HKEY_LOCAL_MACHINE, L"Software\\Classes\\.mp3"},
            {Kind::RegistryKey, HKEY_LOCAL_MACHINE, L"Software\\Classes\\.flac"},
            {Kind::RegistryKey, HKEY_LOCAL_MACHINE, L"Software\\Classes\\.ogg"},
            {Kind::RegistryKey, HKEY_LOCAL_MACHINE, L"Software\\Classes\\.wav"},
            {Kind::RegistryKey, HKEY_LOCAL_MACHINE, L"Software\\Classes\\.m4a"},
            {Kind::RegistryKey, HKEY_LOCAL_MACHINE, L"Software\\Classes\\.wma"},
            {Kind::RegistryKey, HKEY_LOCAL_MACHINE, L"Software\\Classes\\.mpl"},
            {Kind::RegistryKey, HKEY_LOCAL_MACHINE, L"Software\\Classes\\.m3u"},
            {Kind::RegistryKey, HKEY_LOCAL_MACHINE, L"Software\\Classes\\.cue"},
            {Kind::RegistryKey, HKEY_LOCAL_MACHINE, L"Software\\Classes\\.lwp"},
            {Kind::RegistryKey, HKEY_LOCAL_MACHINE, L"Software\\Classes\\.lws"},
            {Kind::RegistryKey, HKEY_LOCAL_MACHINE, L"Software\\Classes\\.lwa"},
            {Kind::RegistryKey, HKEY_LOCAL_MACHINE, L"Software\\Classes\\.DAT"},
            {Kind::RegistryKey, HKEY_LOCAL_MACHINE, L"Software\\Classes\\.mp4"},
            {Kind::RegistryKey, HKEY_LOCAL_MACHINE, L"Software\\Classes\\itpc"},
            {Kind::RegistryKey, HKEY_LOCAL_MACHINE, L"Software\\Classes\\pcast"},

            // Files: the program folder, the per-user data folder, and what goes into the system.
            {Kind::Folder, nullptr, L"%ProgramFiles%\\Halvard"},
            {Kind::Folder, nullptr, L"%ProgramFiles(x86)%\\Halvard"},
            {Kind::Folder, nullptr, L"%APPDATA%\\Halvard"},
            {Kind::Folder, nullptr, L"%SystemDrive%\\Portable Sonora"},
            {Kind::File, nullptr, L"%SystemRoot%\\System32\\Sonora.exe"},
            {Kind::File, nullptr, L"%SystemRoot%\\SysWOW64\\Sonora.exe"},
            {Kind::File, nullptr, L"%SystemRoot%\\System32\\HVCodecSupport.dll"},
            {Kind::File, nullptr, L"%SystemRoot%\\SysWOW64\\HVCodecSupport.dll"},
            {Kind::File, nullptr, L"%SystemRoot%\\System32\\HVDiscSupport.dll"},
            {Kind::File, nullptr, L"%SystemRoot%\\SysWOW64\\HVDiscSupport.dll"},
            {Kind::File, nullptr, L"%SystemRoot%\\System32\\HVSystemNotes.txt"},
            {Kind::File, nullptr, L"%SystemRoot%\\SysWOW64\\HVSystemNotes.txt"},
            {Kind::File, nullptr, L"%SystemRoot%\\Fonts\\DejaVuSans.ttf"},
            {Kind::Folder, nullptr, L"%SystemDrive%\\Sonora Elsewhere"},
            {Kind::Folder, nullptr, L"%APPDATA%\\Microsoft\\Windows\\Start Menu\\Programs\\Sonora"},
            {Kind::File, nullptr, L"%USERPROFILE%\\Desktop\\Sonora.lnk"},
            {Kind::File, nullptr, L"%APPDATA%\\Microsoft\\Internet Explorer\\Quick Launch\\Sonora.lnk"},
        };
        // Use counts of the files the install puts into the system folders.
        for (const wchar_t* folder : {L"system32", L"syswow64"})
            for (const wchar_t* file : {L"HVCodecSupport.dll", L"HVDiscSupport.dll", L"HVSystemNotes.txt", L"Sonora.exe"})
                list.push_back({Kind::RegistryValue, HKEY_LOCAL_MACHINE, L"Software\\Microsoft\\Windows\\CurrentVersion\\SharedDLLs",
                                std::wstring(L"C:\\windows\\") + folder + L"\\" + file});
        return list;
    }();
    return traces;
}

bool ResetToFreshMachine(std::vector<std::wstring>* problems)
{
    bool ok = true;
    for (const MachineTrace& trace : InstallerTraces())
    {
        if (Remove(trace))
            continue;
        ok = false;
        if (problems)
            problems->push_back(L"cannot remove " + Describe(trace));
    }
    // Like nearly every Windows 10 and 11 machine, the test machine has a current WebView2
    // runtime, so an install downloads nothing unless a test takes the runtime away.
    if (!RegSetString(HKEY_LOCAL_MACHINE, kWebView2ClientKey, L"pv", kWebView2CurrentVersion, HVRegView::Key32)) {
        ok = false;
        if (problems)
            problems->push_back(L"cannot record the WebView2 runtime");
    }
    return ok;
}
}

#include "WindowInspector.h"

#include "foundation/win/HVUniqueResource.h"

#include <tlhelp32.h>

#include <algorithm>
#include <cwctype>

namespace e2e
{
namespace
{
// WM_GETTEXT reaches controls of other processes (the system copies the text across); a hung
// target must not hang the test, hence the time limit.
std::wstring ReadText(HWND hwnd)
{
    DWORD_PTR length = 0;
    if (!SendMessageTimeoutW(hwnd, WM_GETTEXTLENGTH, 0, 0, SMTO_ABORTIFHUNG, 2000, &length))
        length = 0;
    std::wstring text(length + 1, L'\0');
    DWORD_PTR copied = 0;
    if (!SendMessageTimeoutW(hwnd, WM_GETTEXT, text.size(), reinterpret_cast<LPARAM>(text.data()),
                             SMTO_ABORTIFHUNG, 2000, &copied))
    {
        const int got = GetWindowTextW(hwnd, text.data(), static_cast<int>(text.size()));
        copied = got > 0 ? static_cast<DWORD_PTR>(got) : 0;
    }
    text.resize(std::min<size_t>(copied, length));
    return text;
}

std::wstring ClassOf(HWND hwnd)
{
    wchar_t name[256] = {};
    const int length = GetClassNameW(hwnd, name, static_cast<int>(std::size(name)));
    return std::wstring(name, length > 0 ? length : 0);
}

bool SameNoCase(const std::wstring& a, const std::wstring& b)
{
    return CompareStringOrdinal(a.c_str(), static_cast<int>(a.size()), b.c_str(), static_cast<int>(b.size()),
                                TRUE) == CSTR_EQUAL;
}

struct ChildScan
{
    WindowInfo* info;
    bool hasMessageText = false;
};

BOOL CALLBACK CollectChild(HWND child, LPARAM param)
{
    auto* scan = reinterpret_cast<ChildScan*>(param);
    // Only the dialog's own controls: a control's children (an edit inside a combo box) would
    // repeat texts.
    if (GetAncestor(child, GA_PARENT) != scan->info->hwnd)
        return TRUE;
    const std::wstring cls = ClassOf(child);
    const int id = GetDlgCtrlID(child);
    if (SameNoCase(cls, L"Button"))
    {
        const LONG style = GetWindowLongW(child, GWL_STYLE);
        const LONG kind = style & BS_TYPEMASK;
        if (kind == BS_GROUPBOX)
            return TRUE;
        scan->info->buttons.push_back({child, id, StripAccelerator(ReadText(child))});
    }
    else if (SameNoCase(cls, L"Static"))
    {
        const std::wstring text = ReadText(child);
        if (id == 0xFFFF)
        {
            scan->info->text = text;
            scan->hasMessageText = true;
        }
        if (!text.empty())
            scan->info->statics.push_back(text);
    }
    return TRUE;
}

struct TopScan
{
    DWORD processId;
    bool visibleOnly;
    std::vector<HWND> found;
};

BOOL CALLBACK CollectTop(HWND hwnd, LPARAM param)
{
    auto* scan = reinterpret_cast<TopScan*>(param);
    DWORD pid = 0;
    GetWindowThreadProcessId(hwnd, &pid);
    if (scan->processId != 0 && pid != scan->processId)
        return TRUE;
    if (scan->visibleOnly && !IsWindowVisible(hwnd))
        return TRUE;
    scan->found.push_back(hwnd);
    return TRUE;
}
}

std::wstring StripAccelerator(const std::wstring& caption)
{
    std::wstring out;
    for (size_t i = 0; i < caption.size(); ++i)
    {
        if (caption[i] == L'&')
        {
            // "&&" is a literal ampersand; a single one only marks the access key.
            if (i + 1 < caption.size() && caption[i + 1] == L'&')
            {
                out += L'&';
                ++i;
            }
            continue;
        }
        out += caption[i];
    }
    return out;
}

std::wstring ProcessImageName(DWORD processId)
{
    HVHandle process(OpenProcess(PROCESS_QUERY_LIMITED_INFORMATION, FALSE, processId));
    if (!process)
        return {};
    wchar_t path[MAX_PATH * 4];
    DWORD length = static_cast<DWORD>(std::size(path));
    if (!QueryFullProcessImageNameW(process.Get(), 0, path, &length))
        return {};
    std::wstring full(path, length);
    return full.substr(full.find_last_of(L"\\/") + 1);
}

WindowInfo InspectWindow(HWND hwnd)
{
    WindowInfo info;
    info.hwnd = hwnd;
    GetWindowThreadProcessId(hwnd, &info.processId);
    info.imageName = ProcessImageName(info.processId);
    info.className = ClassOf(hwnd);
    info.title = ReadText(hwnd);
    info.visible = IsWindowVisible(hwnd) != FALSE;
    if (info.IsDialog())
    {
        ChildScan scan{&info};
        EnumChildWindows(hwnd, CollectChild, reinterpret_cast<LPARAM>(&scan));
        if (!scan.hasMessageText)
        {
            for (const std::wstring& s : info.statics)
                info.text += (info.text.empty() ? L"" : L"\n") + s;
        }
    }
    return info;
}

std::vector<WindowInfo> ListTopLevelWindows(DWORD processId, bool visibleOnly)
{
    TopScan scan{processId, visibleOnly, {}};
    EnumWindows(CollectTop, reinterpret_cast<LPARAM>(&scan));
    std::vector<WindowInfo> windows;
    windows.reserve(scan.found.size());
    for (HWND hwnd : scan.found)
        windows.push_back(InspectWindow(hwnd));
    return windows;
}

std::wstring WindowInfo::Describe() const
{
    wchar_t head[128];
    swprintf(head, std::size(head), L"[%p] pid %lu ", static_cast<void*>(hwnd), processId);
    std::wstring out = head;
    out += (imageName.empty() ? L"?" : imageName) + L" class \"" + className + L"\" title \"" + title + L"\"";
    if (!visible)
        out += L" (hidden)";
    if (IsDialog())
    {
        out += L"\n    text: \"" + text + L"\"";
        out += L"\n    buttons:";
        for (const ButtonInfo& b : buttons)
            out += L" [" + b.caption + L"]";
    }
    return out;
}

bool PressButton(HWND dialog, const ButtonInfo& button)
{
    // WM_COMMAND is what a click makes the button send; posting it needs no focus, no
    // activation and no display, so it works headless and on inactive windows.
    return PostMessageW(dialog, WM_COMMAND, MAKEWPARAM(button.id, BN_CLICKED),
                        reinterpret_cast<LPARAM>(button.hwnd)) != FALSE;
}

bool PressButton(HWND dialog, int id)
{
    for (const ButtonInfo& button : InspectWindow(dialog).buttons)
        if (button.id == id)
            return PressButton(dialog, button);
    return false;
}

HWND WaitForDialog(DWORD processId, const std::wstring& text, DWORD timeoutMs)
{
    for (const ULONGLONG end = GetTickCount64() + timeoutMs; GetTickCount64() < end; Sleep(20))
        for (const WindowInfo& window : ListTopLevelWindows(processId, true))
            if (window.IsDialog() && window.text == text)
                return window.hwnd;
    return nullptr;
}

int EndProcessesByImage(const std::vector<std::wstring>& imageNames)
{
    HVFileHandle snapshot(CreateToolhelp32Snapshot(TH32CS_SNAPPROCESS, 0));
    if (!snapshot)
        return 0;
    int ended = 0;
    PROCESSENTRY32W entry = {};
    entry.dwSize = sizeof(entry);
    for (BOOL more = Process32FirstW(snapshot.Get(), &entry); more; more = Process32NextW(snapshot.Get(), &entry))
    {
        if (entry.th32ProcessID == GetCurrentProcessId())
            continue;
        const std::wstring image = entry.szExeFile;
        const bool wanted = std::any_of(imageNames.begin(), imageNames.end(),
                                        [&](const std::wstring& name) { return SameNoCase(name, image); });
        if (!wanted)
            continue;
        HVHandle process(OpenProcess(PROCESS_TERMINATE | SYNCHRONIZE, FALSE, entry.th32ProcessID));
        if (process && TerminateProcess(process.Get(), 1))
        {
            WaitForSingleObject(process.Get(), 5000);
            ++ended;
        }
    }
    return ended;
}
}

// WaitForWindow.exe <title> [<text>] [/Timeout <ms>]
//
// Waits until a visible top-level window of the Wine prefix (or Windows session) has a title
// containing <title> and, when <text> is given, a visible control inside it whose text contains
// <text> (a wizard's page header, a box's message). Exit code 0 when it came, 1 when the time-out
// (default 60 s) ran out first; then the visible windows are listed. The pictures script takes
// each picture only once the window it is named after is there.
#include "TestPaths.h"
#include "WindowInspector.h"

#include <windows.h>

#include <cstdio>
#include <cwchar>
#include <string>

namespace
{
struct Search
{
    const std::wstring* text;
    bool found = false;
};

BOOL CALLBACK LookAtChild(HWND child, LPARAM param)
{
    Search& search = *reinterpret_cast<Search*>(param);
    if (!::IsWindowVisible(child))
        return TRUE;
    wchar_t text[1024] = {};
    ::GetWindowTextW(child, text, static_cast<int>(std::size(text)));
    search.found = std::wstring(text).find(*search.text) != std::wstring::npos;
    return search.found ? FALSE : TRUE;
}

bool Shows(const e2e::WindowInfo& window, const std::wstring& title, const std::wstring& text)
{
    if (!window.visible || window.title.find(title) == std::wstring::npos)
        return false;
    if (text.empty())
        return true;
    Search search{&text};
    ::EnumChildWindows(window.hwnd, LookAtChild, reinterpret_cast<LPARAM>(&search));
    return search.found;
}
}   // namespace

int wmain(int argc, wchar_t** argv)
{
    std::wstring title, text;
    long timeoutMs = 60000;
    int plain = 0;
    for (int i = 1; i < argc; ++i) {
        if (_wcsicmp(argv[i], L"/Timeout") == 0 && i + 1 < argc)
            timeoutMs = std::wcstol(argv[++i], nullptr, 10);
        else if (plain++ == 0)
            title = argv[i];
        else
            text = argv[i];
    }
    if (title.empty()) {
        std::fprintf(stderr, "usage: WaitForWindow.exe <title> [<text>] [/Timeout <ms>]\n");
        return 2;
    }
    const ULONGLONG start = ::GetTickCount64();
    do {
        for (const e2e::WindowInfo& window : e2e::ListTopLevelWindows(0, true))
            if (Shows(window, title, text))
                return 0;
        ::Sleep(100);
    } while (::GetTickCount64() - start < static_cast<ULONGLONG>(timeoutMs));
    std::printf("no window \"%s\" showing \"%s\"; visible windows:\n", e2e::Utf8(title).c_str(), e2e::Utf8(text).c_str());
    for (const e2e::WindowInfo& window : e2e::ListTopLevelWindows(0, true))
        std::printf("%s\n", e2e::Utf8(window.Describe()).c_str());
    std::fflush(stdout);
    return 1;
}

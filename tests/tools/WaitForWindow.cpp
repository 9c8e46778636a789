// WaitForWindow.exe <title> [<text>] [/Desktop <name>] [/Timeout <ms>]
//
// Waits until a visible top-level window has a title containing <title> and, when <text> is
// given, a visible control inside it whose text contains <text> (a wizard's page header, a
// box's message). /Desktop looks on that desktop (the one "explorer /desktop=<name>" made for
// the program) instead of this program's own. Exit code 0 when it came, 1 when the time-out
// (default 60 s) ran out first; then the visible windows are listed. The pictures script takes
// each picture only once the window it is named after is there.
#include "TestPaths.h"

#include <windows.h>

#include <cstdio>
#include <cwchar>
#include <memory>
#include <string>
#include <type_traits>
#include <vector>

namespace
{
std::wstring TextOf(HWND window)
{
    wchar_t text[1024] = {};
    ::GetWindowTextW(window, text, static_cast<int>(std::size(text)));
    return text;
}

BOOL CALLBACK Collect(HWND window, LPARAM param)
{
    if (::IsWindowVisible(window))
        reinterpret_cast<std::vector<HWND>*>(param)->push_back(window);
    return TRUE;
}

std::vector<HWND> VisibleTopLevel()
{
    std::vector<HWND> windows;
    ::EnumWindows(Collect, reinterpret_cast<LPARAM>(&windows));
    return windows;
}

bool Shows(HWND window, const std::wstring& title, const std::wstring& text)
{
    if (TextOf(window).find(title) == std::wstring::npos)
        return false;
    if (text.empty())
        return true;
    std::vector<HWND> children;
    ::EnumChildWindows(window, Collect, reinterpret_cast<LPARAM>(&children));
    for (HWND child : children)
        if (TextOf(child).find(text) != std::wstring::npos)
            return true;
    return false;
}
}   // namespace

int wmain(int argc, wchar_t** argv)
{
    std::wstring title, text, desktopName;
    long timeoutMs = 60000;
    int plain = 0;
    for (int i = 1; i < argc; ++i) {
        if (_wcsicmp(argv[i], L"/Timeout") == 0 && i + 1 < argc)
            timeoutMs = std::wcstol(argv[++i], nullptr, 10);
        else if (_wcsicmp(argv[i], L"/Desktop") == 0 && i + 1 < argc)
            desktopName = argv[++i];
        else if (plain++ == 0)
            title = argv[i];
        else
            text = argv[i];
    }
    if (title.empty()) {
        std::fprintf(stderr, "usage: WaitForWindow.exe <title> [<text>] [/Desktop <name>] [/Timeout <ms>]\n");
        return 2;
    }
    std::unique_ptr<std::remove_pointer_t<HDESK>, decltype(&::CloseDesktop)> desktop(nullptr, &::CloseDesktop);
    const ULONGLONG start = ::GetTickCount64();
    do {
        // The desktop may not be made yet when the wait begins. Joined, not only opened: Wine
        // lists a desktop's windows to its own threads.
        if (!desktop && !desktopName.empty()) {
            desktop.reset(::OpenDesktopW(desktopName.c_str(), 0, FALSE, GENERIC_ALL));
            if (desktop && !::SetThreadDesktop(desktop.get()))
                desktop.reset();
        }
        if (desktop || desktopName.empty())
            for (HWND window : VisibleTopLevel())
                if (Shows(window, title, text))
                    return 0;
        ::Sleep(100);
    } while (::GetTickCount64() - start < static_cast<ULONGLONG>(timeoutMs));
    if (!desktopName.empty() && !desktop)
        std::printf("the desktop \"%s\" can't be opened (error %lu)\n", e2e::Utf8(desktopName).c_str(), ::GetLastError());
    std::printf("no window \"%s\" showing \"%s\"; visible windows:\n", e2e::Utf8(title).c_str(), e2e::Utf8(text).c_str());
    for (HWND window : VisibleTopLevel())
        std::printf("  \"%s\"\n", e2e::Utf8(TextOf(window)).c_str());
    std::fflush(stdout);
    return 1;
}

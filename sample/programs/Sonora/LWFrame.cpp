// Sonora's launcher ("Sonora.exe") and main program ("Sonora 32.exe") as far as the setup
// program can see them: a top-level window of class "LWFrame" titled "Sonora" that ends the
// program when it is closed. The installer finds a running copy by that window and asks it to
// close with WM_CLOSE.
//
// "/IgnoreClose" makes the window refuse WM_CLOSE, like a copy that is busy and won't stop;
// it can still be ended from outside (TerminateProcess).
//
// Like the product, it has a command target (the library's HVCommandTarget) through which the
// installer tells it about new plug-ins and media. "/Record=<file>" appends each command it
// receives to that file as a UTF-8 line "<type>|<text>", so tests can see what arrived.
#include "foundation/win/HVCommandTarget.h"

#include <windows.h>
#include <shellapi.h>

#include <string>

namespace
{
bool g_ignoreClose = false;

LRESULT CALLBACK FrameProc(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam)
{
    switch (message)
    {
    case WM_CLOSE:
        if (g_ignoreClose)
            return 0;
        DestroyWindow(hwnd);
        return 0;
    case WM_DESTROY:
        PostQuitMessage(0);
        return 0;
    case WM_PAINT:
    {
        PAINTSTRUCT ps;
        HDC dc = BeginPaint(hwnd, &ps);
        RECT rc;
        GetClientRect(hwnd, &rc);
        HBRUSH back = CreateSolidBrush(RGB(28, 62, 122));
        FillRect(dc, &rc, back);
        DeleteObject(back);
        SetBkMode(dc, TRANSPARENT);
        SetTextColor(dc, RGB(240, 138, 36));
        DrawTextW(dc, L"Sonora", -1, &rc, DT_CENTER | DT_VCENTER | DT_SINGLELINE);
        EndPaint(hwnd, &ps);
        return 0;
    }
    default:
        return DefWindowProcW(hwnd, message, wParam, lParam);
    }
}

// The value of "/Name=value", or empty.
std::wstring SwitchValue(const wchar_t* prefix)
{
    int count = 0;
    LPWSTR* args = CommandLineToArgvW(GetCommandLineW(), &count);
    std::wstring value;
    const size_t length = lstrlenW(prefix);
    for (int i = 1; args && i < count; ++i) {
        if (CompareStringOrdinal(args[i], static_cast<int>(length), prefix, static_cast<int>(length), TRUE) == CSTR_EQUAL)
            value = args[i] + length;
    }
    LocalFree(args);
    return value;
}

void Record(const std::wstring& file, const HVCommandTarget::Command& command)
{
    const std::string line = std::to_string(command.type) + "|" + command.text.ToUtf8() + "\n";
    HANDLE out = CreateFileW(file.c_str(), FILE_APPEND_DATA, FILE_SHARE_READ, nullptr, OPEN_ALWAYS, 0, nullptr);
    if (out == INVALID_HANDLE_VALUE)
        return;
    DWORD written = 0;
    WriteFile(out, line.data(), static_cast<DWORD>(line.size()), &written, nullptr);
    CloseHandle(out);
}

bool HasSwitch(const wchar_t* name)
{
    int count = 0;
    LPWSTR* args = CommandLineToArgvW(GetCommandLineW(), &count);
    bool found = false;
    for (int i = 1; args && i < count; ++i)
        found = found || lstrcmpiW(args[i], name) == 0;
    LocalFree(args);
    return found;
}
}

int WINAPI wWinMain(HINSTANCE instance, HINSTANCE, PWSTR, int show)
{
    g_ignoreClose = HasSwitch(L"/IgnoreClose");

    WNDCLASSEXW wc = {};
    wc.cbSize = sizeof(wc);
    wc.lpfnWndProc = FrameProc;
    wc.hInstance = instance;
    wc.hIcon = LoadIconW(instance, MAKEINTRESOURCEW(1));
    wc.hCursor = LoadCursorW(nullptr, IDC_ARROW);
    wc.lpszClassName = L"LWFrame";
    if (!RegisterClassExW(&wc))
        return 1;
    // The command target comes first: whoever sees the frame can talk to it.
    const std::wstring record = SwitchValue(L"/Record=");
    HVCommandTarget commands;
    commands.Create(u"Sonora", [&record](const HVCommandTarget::Command& command) {
        if (!record.empty())
            Record(record, command);
    });
    HWND frame = CreateWindowExW(0, L"LWFrame", L"Sonora", WS_OVERLAPPEDWINDOW, CW_USEDEFAULT, CW_USEDEFAULT, 480,
                                 320, nullptr, nullptr, instance, nullptr);
    if (!frame)
        return 1;
    ShowWindow(frame, show);

    MSG msg;
    while (GetMessageW(&msg, nullptr, 0, 0) > 0)
    {
        TranslateMessage(&msg);
        DispatchMessageW(&msg);
    }
    return 0;
}

// Sonora's launcher ("Sonora.exe") and main program ("Sonora 32.exe") as far as the setup
// program can see them: a top-level window of class "LWFrame" titled "Sonora" that ends the
// program when it is closed. The installer finds a running copy by that window and asks it to
// close with WM_CLOSE.
//
// "/IgnoreClose" makes the window refuse WM_CLOSE, like a copy that is busy and won't stop;
// it can still be ended from outside (TerminateProcess).
#include <windows.h>
#include <shellapi.h>

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

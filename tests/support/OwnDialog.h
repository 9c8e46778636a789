#pragma once

// The test program's own dialog boxes, met as a user meets them: from a second thread while
// the first one runs the box. Header-only; for the Windows test programs.
//
//   std::thread user([] { PressButton(WaitForOwnDialog(), IDNO); });
//   const int result = HVMessageBox::Show(nullptr, u"Text", u"Title", MB_YESNO);
//   user.join();

#include <windows.h>

#include <string>

inline std::wstring WindowText(HWND hwnd)
{
    wchar_t text[1024] = {};
    ::GetWindowTextW(hwnd, text, 1024);
    return text;
}

// The first visible dialog of this process; waits up to ten seconds for it, null if none came.
inline HWND WaitForOwnDialog()
{
    const auto find = [](HWND hwnd, LPARAM param) -> BOOL {
        DWORD pid = 0;
        ::GetWindowThreadProcessId(hwnd, &pid);
        wchar_t cls[64] = {};
        ::GetClassNameW(hwnd, cls, 64);
        if (pid != ::GetCurrentProcessId() || std::wstring(cls) != L"#32770" || !::IsWindowVisible(hwnd))
            return TRUE;
        *reinterpret_cast<HWND*>(param) = hwnd;
        return FALSE;
    };
    for (int i = 0; i < 500; ++i) {
        HWND dialog = nullptr;
        ::EnumWindows(find, reinterpret_cast<LPARAM>(&dialog));
        if (dialog)
            return dialog;
        ::Sleep(20);
    }
    return nullptr;
}

// As a click on the button would: the command the button sends to its dialog.
inline void PressButton(HWND dialog, int id)
{
    ::PostMessageW(dialog, WM_COMMAND, MAKEWPARAM(id, BN_CLICKED), reinterpret_cast<LPARAM>(::GetDlgItem(dialog, id)));
}

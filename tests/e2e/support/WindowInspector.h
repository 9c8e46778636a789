#pragma once

#include <windows.h>

#include <string>
#include <vector>

namespace e2e
{
struct ButtonInfo
{
    HWND hwnd = nullptr;
    int id = 0;
    std::wstring caption;
};

// What a user sees of one top-level window. Texts of other processes' controls are read with
// WM_GETTEXT, which the system carries across processes.
struct WindowInfo
{
    HWND hwnd = nullptr;
    DWORD processId = 0;
    std::wstring imageName;  // "InstallWizard.exe"
    std::wstring className;  // "#32770" for dialogs and message boxes
    std::wstring title;
    bool visible = false;
    // Dialogs only: the static texts in child order (empty ones left out), the buttons, and the
    // message: a message box's text control (id 0xFFFF) when there is one, otherwise all static
    // texts joined by "\n" (task dialogs and other dialogs keep their text in several controls).
    std::vector<std::wstring> statics;
    std::vector<ButtonInfo> buttons;
    std::wstring text;

    bool IsDialog() const { return className == L"#32770"; }
    // Readable lines: class, title, process, and for dialogs the text and the buttons.
    std::wstring Describe() const;
};

// Every top-level window, or only those of one process (processId != 0).
std::vector<WindowInfo> ListTopLevelWindows(DWORD processId = 0, bool visibleOnly = false);
WindowInfo InspectWindow(HWND hwnd);
// The image file name of a process ("Sonora.exe"), empty when it has ended.
std::wstring ProcessImageName(DWORD processId);
// "&No" -> "No": button captions as the user reads them.
std::wstring StripAccelerator(const std::wstring& caption);
// Presses a button of a dialog as a click would: the dialog gets WM_COMMAND/BN_CLICKED. By
// id: false when the dialog has no such button.
bool PressButton(HWND dialog, const ButtonInfo& button);
bool PressButton(HWND dialog, int id);
// The visible dialog of a process whose text is `text`, once it is up; null after `timeoutMs`.
HWND WaitForDialog(DWORD processId, const std::wstring& text, DWORD timeoutMs = 20000);
// Ends every process whose image name is one of these (compared without regard to case),
// except the calling process. Returns how many were ended.
int EndProcessesByImage(const std::vector<std::wstring>& imageNames);
}

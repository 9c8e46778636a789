// ShowBox.exe [/Count <n>] [/Window] [/Task [/Instruction <text>]] <title> <text> [MB_... flags ...]
//
// Shows a message box as a program under test would, so that the end-to-end driver can be
// tested against a box whose title, text and buttons are known. The two-character sequences
// \r, \n and \t in the title and text become CR, LF and TAB, so a test can ask for the
// multi-line texts the installer shows. Exit code: the id of the button pressed (IDOK = 1,
// IDCANCEL = 2, IDYES = 6, IDNO = 7, ...) of the last box; 255 for bad use.
//
// /Count <n> shows the box n times in a row (each answer is needed before the next box).
// /Window opens a plain top-level window with the title instead of a box and waits until it
// is closed: a program that waits for the user outside any dialog.
// /Task shows a task dialog instead of a message box (the text as its content, the buttons
// from the MB_ button set); /Instruction adds a main instruction above the content.
#include "foundation/win/HVUniqueResource.h"

#include <windows.h>
#include <commctrl.h>

#include <cstdio>
#include <cwchar>
#include <string>

namespace
{
constexpr int kBadUse = 255;

struct FlagName
{
    const wchar_t* name;
    UINT value;
};

constexpr FlagName kFlags[] = {
    {L"MB_OK", MB_OK},
    {L"MB_OKCANCEL", MB_OKCANCEL},
    {L"MB_ABORTRETRYIGNORE", MB_ABORTRETRYIGNORE},
    {L"MB_YESNOCANCEL", MB_YESNOCANCEL},
    {L"MB_YESNO", MB_YESNO},
    {L"MB_RETRYCANCEL", MB_RETRYCANCEL},
    {L"MB_CANCELTRYCONTINUE", MB_CANCELTRYCONTINUE},
    {L"MB_ICONERROR", MB_ICONERROR},
    {L"MB_ICONSTOP", MB_ICONSTOP},
    {L"MB_ICONQUESTION", MB_ICONQUESTION},
    {L"MB_ICONWARNING", MB_ICONWARNING},
    {L"MB_ICONEXCLAMATION", MB_ICONEXCLAMATION},
    {L"MB_ICONINFORMATION", MB_ICONINFORMATION},
    {L"MB_DEFBUTTON2", MB_DEFBUTTON2},
    {L"MB_DEFBUTTON3", MB_DEFBUTTON3},
    {L"MB_TOPMOST", MB_TOPMOST},
    {L"MB_SETFOREGROUND", MB_SETFOREGROUND},
    {L"MB_APPLMODAL", MB_APPLMODAL},
    {L"MB_TASKMODAL", MB_TASKMODAL},
    {L"MB_SYSTEMMODAL", MB_SYSTEMMODAL},
};

std::wstring Unescape(const wchar_t* text)
{
    std::wstring out;
    for (const wchar_t* p = text; *p; ++p)
    {
        if (p[0] == L'\\' && (p[1] == L'r' || p[1] == L'n' || p[1] == L't'))
        {
            out += p[1] == L'r' ? L'\r' : p[1] == L'n' ? L'\n' : L'\t';
            ++p;
        }
        else
        {
            out += *p;
        }
    }
    return out;
}

bool ParseFlag(const wchar_t* text, UINT& flags)
{
    for (const FlagName& f : kFlags)
    {
        if (_wcsicmp(text, f.name) == 0)
        {
            flags |= f.value;
            return true;
        }
    }
    wchar_t* end = nullptr;
    const unsigned long value = std::wcstoul(text, &end, 0);
    if (end == text || *end)
        return false;
    flags |= static_cast<UINT>(value);
    return true;
}

LRESULT CALLBACK PlainWindowProc(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam)
{
    if (message == WM_DESTROY)
    {
        PostQuitMessage(0);
        return 0;
    }
    return DefWindowProcW(hwnd, message, wParam, lParam);
}

int RunPlainWindow(const std::wstring& title)
{
    WNDCLASSW wc = {};
    wc.lpfnWndProc = PlainWindowProc;
    wc.hInstance = GetModuleHandleW(nullptr);
    wc.lpszClassName = L"ShowBoxWindow";
    wc.hCursor = LoadCursorW(nullptr, IDC_ARROW);
    if (!RegisterClassW(&wc))
        return kBadUse;
    // Destroyed by its own WM_CLOSE handling (DefWindowProc), which ends the loop below.
    HWND window = CreateWindowExW(0, wc.lpszClassName, title.c_str(), WS_OVERLAPPEDWINDOW | WS_VISIBLE,
                                  CW_USEDEFAULT, CW_USEDEFAULT, 320, 200, nullptr, nullptr, wc.hInstance, nullptr);
    if (!window)
        return kBadUse;
    MSG msg;
    while (GetMessageW(&msg, nullptr, 0, 0) > 0)
    {
        TranslateMessage(&msg);
        DispatchMessageW(&msg);
    }
    return 0;
}

// Looked up at run time: comctl32's import library differs between toolchains, and the
// function is only there in comctl32 version 6.
int RunTaskDialog(const std::wstring& title, const std::wstring& instruction, const std::wstring& text, UINT flags)
{
    using TaskDialogFunction = HRESULT(WINAPI*)(const TASKDIALOGCONFIG*, int*, int*, BOOL*);
    HVModule comctl(LoadLibraryW(L"comctl32.dll"));
    auto taskDialog = comctl ? reinterpret_cast<TaskDialogFunction>(
                                   reinterpret_cast<void*>(GetProcAddress(comctl.Get(), "TaskDialogIndirect")))
                             : nullptr;
    if (!taskDialog)
        return kBadUse;
    TASKDIALOGCONFIG config = {};
    config.cbSize = sizeof(config);
    config.pszWindowTitle = title.c_str();
    config.pszMainInstruction = instruction.empty() ? nullptr : instruction.c_str();
    config.pszContent = text.c_str();
    switch (flags & MB_TYPEMASK)
    {
    case MB_OKCANCEL: config.dwCommonButtons = TDCBF_OK_BUTTON | TDCBF_CANCEL_BUTTON; break;
    case MB_YESNO: config.dwCommonButtons = TDCBF_YES_BUTTON | TDCBF_NO_BUTTON; break;
    case MB_YESNOCANCEL: config.dwCommonButtons = TDCBF_YES_BUTTON | TDCBF_NO_BUTTON | TDCBF_CANCEL_BUTTON; break;
    case MB_RETRYCANCEL: config.dwCommonButtons = TDCBF_RETRY_BUTTON | TDCBF_CANCEL_BUTTON; break;
    default: config.dwCommonButtons = TDCBF_OK_BUTTON; break;
    }
    int button = 0;
    const HRESULT hr = taskDialog(&config, &button, nullptr, nullptr);
    return SUCCEEDED(hr) ? button : kBadUse;
}

int Usage()
{
    std::fwprintf(stderr, L"usage: ShowBox.exe [/Count <n>] [/Window] [/Task [/Instruction <text>]] <title> <text> "
                          L"[MB_... flags]\n");
    return kBadUse;
}
}

int wmain(int argc, wchar_t** argv)
{
    int count = 1;
    bool plainWindow = false;
    bool task = false;
    std::wstring instruction;
    int i = 1;
    for (; i < argc && argv[i][0] == L'/'; ++i)
    {
        if (_wcsicmp(argv[i], L"/Count") == 0 && i + 1 < argc)
        {
            count = _wtoi(argv[++i]);
            if (count < 1)
                return Usage();
        }
        else if (_wcsicmp(argv[i], L"/Window") == 0)
        {
            plainWindow = true;
        }
        else if (_wcsicmp(argv[i], L"/Task") == 0)
        {
            task = true;
        }
        else if (_wcsicmp(argv[i], L"/Instruction") == 0 && i + 1 < argc)
        {
            instruction = Unescape(argv[++i]);
        }
        else
        {
            return Usage();
        }
    }
    if (plainWindow)
        return i < argc ? RunPlainWindow(Unescape(argv[i])) : Usage();
    if (argc - i < 2)
        return Usage();

    const std::wstring title = Unescape(argv[i]);
    const std::wstring text = Unescape(argv[i + 1]);
    UINT flags = 0;
    for (int f = i + 2; f < argc; ++f)
    {
        if (!ParseFlag(argv[f], flags))
            return Usage();
    }
    int answer = 0;
    for (int n = 0; n < count; ++n)
    {
        answer = task ? RunTaskDialog(title, instruction, text, flags)
                      : MessageBoxW(nullptr, text.c_str(), title.c_str(), flags);
        if (answer == 0 || answer == kBadUse)
            return kBadUse;
    }
    return answer;
}

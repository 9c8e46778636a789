#include "install/win/CLanguageSelectionDlg.h"

#include "foundation/HVLog.h"
#include "foundation/win/HVFileSystem.h"
#include "foundation/win/HVTrackedModalLoop.h"
#include "toolkit/win/HVMessageBox.h"

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace
{
// A dialog template in memory: DLGTEMPLATE, then per control a DWORD-aligned DLGITEMTEMPLATE
// followed by class, text and creation data as WORD sequences.
class DialogTemplate
{
public:
    DialogTemplate(const wchar_t* title, DWORD style, short cx, short cy)
    {
        DLGTEMPLATE header{};
        header.style = style | DS_SETFONT;
        header.dwExtendedStyle = 0;
        header.cx = cx;
        header.cy = cy;
        AppendRaw(&header, sizeof(header));
        countOffset_ = offsetof(DLGTEMPLATE, cdit);
        Append(0);   // no menu
        Append(0);   // the standard dialog class
        AppendText(title);
        Append(8);   // point size
        AppendText(L"MS Shell Dlg");
    }

    // cls: a system class atom (0x0080 button, 0x0081 edit, 0x0082 static, 0x0083 list box).
    void AddItem(WORD cls, int id, const wchar_t* text, DWORD style, short x, short y, short cx, short cy)
    {
        while (words_.size() % 2 != 0)
            Append(0);
        DLGITEMTEMPLATE item{};
        item.style = style | WS_CHILD | WS_VISIBLE;
        item.x = x;
        item.y = y;
        item.cx = cx;
        item.cy = cy;
        item.id = static_cast<WORD>(id);
        AppendRaw(&item, sizeof(item));
        Append(0xFFFF);
        Append(cls);
        AppendText(text);
        Append(0);   // no creation data
        ++words_[countOffset_ / sizeof(WORD)];
    }

    const DLGTEMPLATE* Get() const { return reinterpret_cast<const DLGTEMPLATE*>(words_.data()); }

private:
    void Append(WORD w) { words_.push_back(w); }
    void AppendRaw(const void* data, size_t size)
    {
        const WORD* p = static_cast<const WORD*>(data);
        words_.insert(words_.end(), p, p + size / sizeof(WORD));
    }
    void AppendText(const wchar_t* text)
    {
        for (; *text; ++text)
            Append(static_cast<WORD>(*text));
        Append(0);
    }

    // WORDs keep the DWORD alignment the system needs, as long as the buffer itself is
    // DWORD-aligned (vector storage is).
    std::vector<WORD> words_;
    size_t countOffset_ = 0;
};

constexpr WORD kButton = 0x0080;
constexpr WORD kStatic = 0x0082;
constexpr WORD kListBox = 0x0083;

struct DialogState
{
    const std::vector<CLanguageInfo>* languages = nullptr;
    size_t preselect = 0;
    int chosen = 0;
};

INT_PTR CALLBACK DialogProc(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam)
{
    switch (message) {
    case WM_INITDIALOG: {
        auto* state = reinterpret_cast<DialogState*>(lParam);
        ::SetWindowLongPtrW(dialog, DWLP_USER, lParam);
        HWND list = ::GetDlgItem(dialog, CLanguageSelectionDlg::kLanguageListId);
        for (const CLanguageInfo& language : *state->languages)
            ::SendMessageW(list, LB_ADDSTRING, 0, reinterpret_cast<LPARAM>(language.name.w()));
        ::SendMessageW(list, LB_SETCURSEL, state->preselect, 0);
        // Without an owner the dialog is the program's only window: bring it to the front.
        ::SetForegroundWindow(dialog);
        ::SetFocus(list);
        return FALSE;   // focus set here
    }
    case WM_COMMAND: {
        auto* state = reinterpret_cast<DialogState*>(::GetWindowLongPtrW(dialog, DWLP_USER));
        const int id = LOWORD(wParam);
        const bool doubleClick = id == CLanguageSelectionDlg::kLanguageListId && HIWORD(wParam) == LBN_DBLCLK;
        if (id == IDOK || doubleClick) {
            const LRESULT selected =
                ::SendDlgItemMessageW(dialog, CLanguageSelectionDlg::kLanguageListId, LB_GETCURSEL, 0, 0);
            state->chosen = selected == LB_ERR ? 0 : static_cast<int>(selected);
            ::EndDialog(dialog, IDOK);
            return TRUE;
        }
        if (id == IDCANCEL) {
            state->chosen = 0;
            ::EndDialog(dialog, IDCANCEL);
            return TRUE;
        }
        break;
    }
    default:
        break;
    }
    return FALSE;
}
}

size_t CLanguageSelectionDlg::IndexForLocale(const std::vector<CLanguageInfo>& languages, const HVString& locale)
{
    if (locale.IsEmpty())
        return 0;
    for (size_t i = 0; i < languages.size(); ++i) {
        const HVString& code = languages[i].code;
        if (code.IsEmpty())
            continue;
        // "de" stands for every "de-XX"; a file for a region matches only that region.
        if (locale.EqualsNoCase(code) ||
            (locale.StartsWithNoCase(code) && locale.GetLength() > code.GetLength() && locale[code.GetLength()] == u'-'))
            return i;
    }
    return 0;
}

HVString CLanguageSelectionDlg::UserLanguage()
{
    wchar_t name[LOCALE_NAME_MAX_LENGTH] = {};
    const LCID lcid = MAKELCID(::GetUserDefaultUILanguage(), SORT_DEFAULT);
    if (::LCIDToLocaleName(lcid, name, LOCALE_NAME_MAX_LENGTH, 0) <= 0)
        return HVString();
    return HVString(name);
}

CTranslationService::FileLister CLanguageSelectionDlg::FolderLister()
{
    return [](const HVString& folder, std::vector<HVString>& names) {
        std::vector<HVFileSystem::Entry> entries;
        if (!HVFileSystem::EnumerateFolder(folder, entries, u"*.xml"))
            return false;
        for (const HVFileSystem::Entry& entry : entries)
            if (!entry.isFolder)
                names.push_back(entry.name);
        return true;
    };
}

std::vector<CLanguageInfo> CLanguageSelectionDlg::ListLanguages(const HVString& languagesFolder)
{
    return CTranslationService::ListLanguages(languagesFolder, FolderLister());
}

int CLanguageSelectionDlg::Show(HWND owner, const std::vector<CLanguageInfo>& languages, const HVString& preselectCode)
{
    if (languages.empty())
        return 0;
    const size_t preselected = IndexForLocale(languages, preselectCode);
    if (HVMessageBox::SkipUnattended(u"Install Wizard", u"Please select a language:", u"OK (" + languages[preselected].name + u")"))
        return static_cast<int>(preselected);

    DialogTemplate tpl(L"Install Wizard", DS_MODALFRAME | DS_CENTER | WS_POPUP | WS_CAPTION | WS_SYSMENU, 186, 124);
    tpl.AddItem(kStatic, kPromptId, L"Please select a language:", SS_LEFT, 7, 7, 172, 10);
    tpl.AddItem(kListBox, kLanguageListId, L"",
                LBS_NOTIFY | LBS_NOINTEGRALHEIGHT | WS_VSCROLL | WS_BORDER | WS_TABSTOP, 7, 20, 172, 76);
    tpl.AddItem(kButton, IDOK, L"OK", BS_DEFPUSHBUTTON | WS_TABSTOP, 75, 103, 50, 14);
    tpl.AddItem(kButton, IDCANCEL, L"Cancel", BS_PUSHBUTTON | WS_TABSTOP, 129, 103, 50, 14);

    DialogState state;
    state.languages = &languages;
    state.preselect = preselected;
    const HVTrackedModalLoop tracked;
    const INT_PTR result = ::DialogBoxIndirectParamW(::GetModuleHandleW(nullptr), tpl.Get(), owner, DialogProc,
                                                     reinterpret_cast<LPARAM>(&state));
    if (result == -1 || result == 0) {
        HVLog::Write(HVLog::kWarning, "CLanguageSelectionDlg::Show", u"The dialog could not be shown (error %d)",
                     ::GetLastError());
        return -1;
    }
    return state.chosen;
}

HVString CLanguageSelectionDlg::Run(HWND owner, const HVString& languagesFolder, const HVString& preselectCode)
{
    const std::vector<CLanguageInfo> languages = ListLanguages(languagesFolder);
    if (languages.size() < 2) {
        HVLog::Write(HVLog::kInfo, "CLanguageSelectionDlg::Run", u"No language files in %s: English", languagesFolder);
        return HVString();
    }
    const int chosen = Show(owner, languages, preselectCode.IsEmpty() ? UserLanguage() : preselectCode);
    if (chosen <= 0 || static_cast<size_t>(chosen) >= languages.size())
        return HVString();
    HVLog::Write(HVLog::kInfo, "CLanguageSelectionDlg::Run", u"Language chosen: %s", languages[chosen].name);
    return languages[static_cast<size_t>(chosen)].path;
}

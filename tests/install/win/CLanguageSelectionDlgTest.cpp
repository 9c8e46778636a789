#include "install/win/CLanguageSelectionDlg.h"

#include "toolkit/win/HVMessageBox.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <thread>

namespace
{
std::string U8(const HVString& s) { return s.ToUtf8(); }

BOOL CALLBACK FindOurDialog(HWND hwnd, LPARAM param)
{
    DWORD pid = 0;
    ::GetWindowThreadProcessId(hwnd, &pid);
    wchar_t cls[64] = {};
    ::GetClassNameW(hwnd, cls, 64);
    if (pid == ::GetCurrentProcessId() && std::wstring(cls) == L"#32770" && ::IsWindowVisible(hwnd)) {
        *reinterpret_cast<HWND*>(param) = hwnd;
        return FALSE;
    }
    return TRUE;
}

std::wstring TextOf(HWND hwnd)
{
    wchar_t text[256] = {};
    ::GetWindowTextW(hwnd, text, 256);
    return text;
}

// What the answering thread saw of the dialog, as a user would read it.
struct Seen
{
    bool found = false;
    std::wstring title;
    std::wstring prompt;
    std::vector<std::wstring> lines;
    int selected = -1;
    bool okIsButton = false;
    bool cancelIsButton = false;
};

// Waits for the dialog on another thread, records it, then acts on it like a user.
std::thread Answer(Seen& seen, std::function<void(HWND dialog, HWND list)> act)
{
    return std::thread([&seen, act] {
        for (int i = 0; i < 500; ++i) {
            HWND dialog = nullptr;
            ::EnumWindows(FindOurDialog, reinterpret_cast<LPARAM>(&dialog));
            HWND list = dialog ? ::GetDlgItem(dialog, CLanguageSelectionDlg::kLanguageListId) : nullptr;
            if (list) {
                seen.found = true;
                seen.title = TextOf(dialog);
                seen.prompt = TextOf(::GetDlgItem(dialog, CLanguageSelectionDlg::kPromptId));
                const int count = static_cast<int>(::SendMessageW(list, LB_GETCOUNT, 0, 0));
                for (int line = 0; line < count; ++line) {
                    wchar_t text[128] = {};
                    ::SendMessageW(list, LB_GETTEXT, line, reinterpret_cast<LPARAM>(text));
                    seen.lines.push_back(text);
                }
                seen.selected = static_cast<int>(::SendMessageW(list, LB_GETCURSEL, 0, 0));
                seen.okIsButton = TextOf(::GetDlgItem(dialog, IDOK)) == L"OK";
                seen.cancelIsButton = TextOf(::GetDlgItem(dialog, IDCANCEL)) == L"Cancel";
                act(dialog, list);
                return;
            }
            ::Sleep(20);
        }
    });
}

void Press(HWND dialog, int id)
{
    ::PostMessageW(dialog, WM_COMMAND, MAKEWPARAM(id, BN_CLICKED), reinterpret_cast<LPARAM>(::GetDlgItem(dialog, id)));
}

std::vector<CLanguageInfo> ThreeLanguages()
{
    return {{u"English", u"en", u""},
            {u"Deutsch", u"de", u"Z:\\x\\Deutsch.xml"},
            {HVString::FromUtf8("Français"), u"fr", u"Z:\\x\\Francais.xml"}};
}

TEST(CLanguageSelectionDlg, ShowsTheLanguagesAndReturnsTheChosenLine)
{
    Seen seen;
    std::thread answer = Answer(seen, [](HWND dialog, HWND list) {
        ::SendMessageW(list, LB_SETCURSEL, 2, 0);
        Press(dialog, IDOK);
    });
    const int chosen = CLanguageSelectionDlg::Show(nullptr, ThreeLanguages(), u"de-DE");
    answer.join();
    ASSERT_TRUE(seen.found);
    EXPECT_EQ(chosen, 2);
    EXPECT_EQ(seen.title, L"Install Wizard");
    EXPECT_EQ(seen.prompt, L"Please select a language:");
    EXPECT_EQ(seen.lines, (std::vector<std::wstring>{L"English", L"Deutsch", L"Fran\u00e7ais"}));
    EXPECT_EQ(seen.selected, 1);   // the user's language is offered first
    EXPECT_TRUE(seen.okIsButton);
    EXPECT_TRUE(seen.cancelIsButton);
}

TEST(CLanguageSelectionDlg, CancelCloseAndDoubleClick)
{
    const struct
    {
        const char* name;
        std::function<void(HWND, HWND)> act;
        int expected;
    } rows[] = {
        {"Cancel keeps English",
         [](HWND dialog, HWND list) {
             ::SendMessageW(list, LB_SETCURSEL, 1, 0);
             Press(dialog, IDCANCEL);
         },
         0},
        {"closing the window keeps English",
         [](HWND dialog, HWND list) {
             ::SendMessageW(list, LB_SETCURSEL, 2, 0);
             ::PostMessageW(dialog, WM_CLOSE, 0, 0);
         },
         0},
        {"a double-click chooses",
         [](HWND dialog, HWND list) {
             ::SendMessageW(list, LB_SETCURSEL, 1, 0);
             ::PostMessageW(dialog, WM_COMMAND, MAKEWPARAM(CLanguageSelectionDlg::kLanguageListId, LBN_DBLCLK),
                            reinterpret_cast<LPARAM>(list));
         },
         1},
        {"OK on the preselected English", [](HWND dialog, HWND) { Press(dialog, IDOK); }, 0},
    };
    for (const auto& row : rows) {
        Seen seen;
        std::thread answer = Answer(seen, row.act);
        const int chosen = CLanguageSelectionDlg::Show(nullptr, ThreeLanguages(), u"xx-YY");
        answer.join();
        ASSERT_TRUE(seen.found) << row.name;
        EXPECT_EQ(seen.selected, 0) << row.name;
        EXPECT_EQ(chosen, row.expected) << row.name;
    }
}

TEST(CLanguageSelectionDlg, PreselectsByLanguageCode)
{
    std::vector<CLanguageInfo> languages = ThreeLanguages();
    languages.push_back({u"Deutsch (Schweiz)", u"de-CH", u"Z:\\x\\ch.xml"});
    languages.push_back({u"Nameless", u"", u"Z:\\x\\n.xml"});
    const struct
    {
        const char16_t* locale;
        size_t index;
    } rows[] = {
        {u"de-DE", 1}, {u"de", 1}, {u"DE-at", 1}, {u"fr-CA", 2}, {u"en-US", 0}, {u"deu", 0}, {u"", 0}, {u"it-IT", 0},
    };
    for (const auto& row : rows)
        EXPECT_EQ(CLanguageSelectionDlg::IndexForLocale(languages, row.locale), row.index) << U8(row.locale);
    // A region's own file is found when no file covers the whole language.
    languages.erase(languages.begin() + 1);
    EXPECT_EQ(CLanguageSelectionDlg::IndexForLocale(languages, u"de-CH"), 2u);
    EXPECT_EQ(CLanguageSelectionDlg::IndexForLocale(languages, u"de-DE"), 0u);
}

TEST(CLanguageSelectionDlg, RunOverTheSampleFolderGivesTheGermanFile)
{
    const HVString folder = HVString::FromUtf8(IW_SOURCE_DIR) + u"\\sample\\Languages\\";
    const std::vector<CLanguageInfo> languages = CLanguageSelectionDlg::ListLanguages(folder);
    ASSERT_GE(languages.size(), 2u);
    EXPECT_EQ(U8(languages[0].name), "English");
    size_t german = 0;
    for (size_t i = 0; i < languages.size(); ++i)
        if (languages[i].name == u"Deutsch")
            german = i;
    ASSERT_NE(german, 0u);

    Seen seen;
    std::thread answer = Answer(seen, [german](HWND dialog, HWND list) {
        ::SendMessageW(list, LB_SETCURSEL, german, 0);
        Press(dialog, IDOK);
    });
    const HVString file = CLanguageSelectionDlg::Run(nullptr, folder);
    answer.join();
    ASSERT_TRUE(seen.found);
    EXPECT_EQ(U8(file), U8(folder + u"Deutsch.xml"));

    CTranslationService service;
    ASSERT_TRUE(service.Load(file));
    EXPECT_EQ(U8(service.Translate(u"Next >")), "Weiter >");
}

TEST(CLanguageSelectionDlg, AnUnattendedRunTakesThePreselectedLanguageUnasked)
{
    // Nothing answers a dialog here: one that came up would hang the test.
    HVMessageBox::SetSuppressed(true);
    const int chosen = CLanguageSelectionDlg::Show(nullptr, ThreeLanguages(), u"de-DE");
    HVMessageBox::SetSuppressed(false);
    EXPECT_EQ(chosen, 1);
}

TEST(CLanguageSelectionDlg, AFolderWithoutLanguagesAsksNothing)
{
    // No dialog comes up (nothing would answer it), and English is the answer.
    EXPECT_TRUE(CLanguageSelectionDlg::Run(nullptr, u"Z:\\no\\such\\folder\\").IsEmpty());
    EXPECT_EQ(CLanguageSelectionDlg::ListLanguages(u"Z:\\no\\such\\folder\\").size(), 1u);
}
}

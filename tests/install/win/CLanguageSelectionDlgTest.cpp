#include "install/win/CLanguageSelectionDlg.h"

#include "toolkit/win/HVMessageBox.h"

#include "LanguageDialogUser.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

namespace
{
std::string U8(const HVString& s) { return s.ToUtf8(); }

using Act = LanguageDialogUser::Act;
constexpr auto Pick = LanguageDialogUser::Pick;
constexpr int kCloseWindow = LanguageDialogUser::kCloseWindow, kDoubleClick = LanguageDialogUser::kDoubleClick;

std::vector<CLanguageInfo> ThreeLanguages()
{
    return {{u"English", u"en", u""},
            {u"Deutsch", u"de", u"Z:\\x\\Deutsch.xml"},
            {HVString::FromUtf8("Français"), u"fr", u"Z:\\x\\Francais.xml"}};
}

// The user's language is offered first; the dialog answers with the line chosen.
TEST(CLanguageSelectionDlg, ShowsTheLanguagesAndReturnsTheChosenLine)
{
    const struct { const char* name; const char16_t* locale; int preselected; Act act; int expected; } rows[] = {
        {"OK on another line", u"de-DE", 1, Pick(2, IDOK), 2},
        {"Cancel keeps English", u"xx-YY", 0, Pick(1, IDCANCEL), 0},
        {"closing the window keeps English", u"xx-YY", 0, Pick(2, kCloseWindow), 0},
        {"a double-click chooses", u"xx-YY", 0, Pick(1, kDoubleClick), 1},
        {"OK on the preselected English", u"xx-YY", 0, Pick(0, IDOK), 0},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        LanguageDialogUser seen(row.act);
        const int chosen = CLanguageSelectionDlg::Show(nullptr, ThreeLanguages(), row.locale);
        seen.Join();
        ASSERT_TRUE(seen.found);
        EXPECT_EQ(chosen, row.expected);
        EXPECT_EQ(seen.selected, row.preselected);
        EXPECT_EQ(seen.title, L"Install Wizard");
        EXPECT_EQ(seen.prompt, L"Please select a language:");
        EXPECT_EQ(seen.lines, (std::vector<std::wstring>{L"English", L"Deutsch", L"Fran\u00e7ais"}));
        EXPECT_EQ(seen.buttons, L"OK|Cancel");
    }
}

TEST(CLanguageSelectionDlg, PreselectsByLanguageCode)
{
    std::vector<CLanguageInfo> languages = ThreeLanguages();
    languages.push_back({u"Deutsch (Schweiz)", u"de-CH", u"Z:\\x\\ch.xml"});
    languages.push_back({u"Nameless", u"", u"Z:\\x\\n.xml"});
    const struct { const char16_t* locale; size_t index; } rows[] = {
        {u"de-DE", 1}, {u"de", 1}, {u"DE-at", 1}, {u"fr-CA", 2}, {u"en-US", 0}, {u"deu", 0}, {u"", 0}, {u"it-IT", 0},
    };
    for (const auto& row : rows)
        EXPECT_EQ(CLanguageSelectionDlg::IndexForLocale(languages, row.locale), row.index) << U8(row.locale);
    // A region's own file is found when no file covers the whole language.
    languages.erase(languages.begin() + 1);
    EXPECT_EQ(CLanguageSelectionDlg::IndexForLocale(languages, u"de-CH"), 2u);
    EXPECT_EQ(CLanguageSelectionDlg::IndexForLocale(languages, u"de-DE"), 0u);
}

TEST(CLanguageSelectionDlg, RunOverTheSampleFolderGivesTheGermanFileAndOverNoneEnglish)
{
    const HVString folder = HVString::FromUtf8(IW_SOURCE_DIR) + u"\\sample\\Languages\\";
    const std::vector<CLanguageInfo> languages = CLanguageSelectionDlg::ListLanguages(folder);
    ASSERT_GE(languages.size(), 2u);
    EXPECT_EQ(U8(languages[0].name), "English");
    const auto german = std::ranges::find(languages, HVString(u"Deutsch"), &CLanguageInfo::name) - languages.begin();
    ASSERT_LT(german, std::ssize(languages));

    LanguageDialogUser seen(Pick(static_cast<int>(german), IDOK));
    const HVString file = CLanguageSelectionDlg::Run(nullptr, folder);
    seen.Join();
    ASSERT_TRUE(seen.found);
    EXPECT_EQ(U8(file), U8(folder + u"Deutsch.xml"));

    // A folder without languages asks nothing (nothing would answer), and English is the answer.
    EXPECT_TRUE(CLanguageSelectionDlg::Run(nullptr, u"Z:\\no\\such\\folder\\").IsEmpty());
    EXPECT_EQ(CLanguageSelectionDlg::ListLanguages(u"Z:\\no\\such\\folder\\").size(), 1u);
}

TEST(CLanguageSelectionDlg, AnUnattendedRunTakesThePreselectedLanguageUnasked)
{
    // Nothing answers a dialog here: one that came up would hang the test.
    HVMessageBox::SetSuppressed(true);
    const int chosen = CLanguageSelectionDlg::Show(nullptr, ThreeLanguages(), u"de-DE");
    HVMessageBox::SetSuppressed(false);
    EXPECT_EQ(chosen, 1);
}
}

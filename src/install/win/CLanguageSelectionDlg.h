#pragma once

#include "foundation/HVString.h"
#include "install/CTranslationService.h"

#include <windows.h>

#include <vector>

// The language question at start-up: a small dialog titled "Install Wizard" with the prompt
// "Please select a language:", a list of the languages found in the setup folder's
// "Languages\" folder (English first, always there), and OK and Cancel. Cancel, Esc and
// closing the window keep English; a double-click on a language is OK.
//
//   HVString file = CLanguageSelectionDlg::Run(nullptr, setupFolder + u"Languages\\");
//   if (!file.IsEmpty())
//       translations.Load(file);
//
// It is a plain system dialog (class "#32770", built in memory, no skin: the skin and the
// wizard are not up yet) so that tests and people find it like any message box: buttons IDOK
// and IDCANCEL, the prompt static kPromptId, the list box kLanguageListId (one line per
// language, in the order of CTranslationService::ListLanguages). The dialog itself is in
// English, since no language has been chosen when it shows.
//
// When the folder offers no language but English there is nothing to ask: Run returns empty
// without showing anything.
class CLanguageSelectionDlg
{
public:
    static constexpr int kPromptId = 1000;
    static constexpr int kLanguageListId = 1001;

    // The chosen language file's path, or empty for English. `preselectCode` as in Show;
    // empty: the user's interface language.
    static HVString Run(HWND owner, const HVString& languagesFolder, const HVString& preselectCode = HVString());

    // The dialog over a given list (languages[0] is English). `preselectCode` picks the
    // line that is selected at first (a language code such as "de", or its region form
    // "de-AT"); English when none matches. Returns the index of the chosen line (0 for
    // English, also on Cancel), or -1 when the dialog could not be shown.
    static int Show(HWND owner, const std::vector<CLanguageInfo>& languages, const HVString& preselectCode);

    // The languages of a folder, listed through HVFileSystem.
    static std::vector<CLanguageInfo> ListLanguages(const HVString& languagesFolder);
    static CTranslationService::FileLister FolderLister();

    // The user's interface language as a locale name ("de-DE"); empty when unknown.
    static HVString UserLanguage();
    // The index of the language whose code matches `locale` ("de" matches "de-DE"); 0 when none.
    static size_t IndexForLocale(const std::vector<CLanguageInfo>& languages, const HVString& locale);
};

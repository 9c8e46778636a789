#pragma once

#include "foundation/HVString.h"
#include "foundation/IHVTranslator.h"

#include <functional>
#include <unordered_map>
#include <vector>

class HVXMLDocument;

// One language shipped in the setup folder's "Languages\" folder. English is built in and
// has no file (empty path).
struct CLanguageInfo
{
    HVString name;   // as the language calls itself, shown in the selection dialog ("Deutsch")
    HVString code;   // "de"; "en" for the built-in English
    HVString path;   // the language file; empty for English
};

// The installer's translation service: the English texts of the program mapped to one
// language's texts, read from a language file. Installed process-wide with
// HVTranslator::Set(&service) once loaded; it must then outlive every Translate call and is
// not loaded again (lookups read it from any thread without a lock).
//
//   CTranslationService translations;   // lives as long as the application object
//   HVString file = CLanguageSelectionDlg::Run(nullptr, setupFolder + u"Languages\\");
//   if (!file.IsEmpty())
//       translations.Load(file);        // a broken file leaves English, with a log line
//   HVTranslator::Set(&translations);
//
// Language file (UTF-8, or UTF-16 with its byte-order mark), e.g. "Languages\Deutsch.xml":
//
//   <?xml version="1.0" encoding="UTF-8"?>
//   <HVLanguage name="Deutsch" code="de">
//     <Text>
//       <English>%s can not be installed to an empty folder.\r\n\r\n</English>
//       <Translation>%s kann nicht in einen leeren Ordner installiert werden.\r\n\r\n</Translation>
//     </Text>
//     <Text><English>&lt; Back</English><Translation>&lt; Zurück</Translation></Text>
//   </HVLanguage>
//
// - Texts are compared exactly, case and blanks included ("Please Close " keeps its space).
// - Line breaks are written as the program writes them: "\r" and "\n" (also "\t", and "\\"
//   for a backslash that is followed by r, n, t or another backslash). Any other backslash is
//   an ordinary character, so paths read as they stand. A real line break in the file, with
//   the blanks around it, counts as one space, so long texts may be wrapped freely.
// - "<", ">" and "&" are written "&lt;", "&gt;" and "&amp;" (or the text goes in CDATA).
// - A translation must keep the English text's "%" markers ("%s", "%d", ...) in the same
//   order; an entry that doesn't is left out with a log line, so a slip in a language file
//   can never make a message show the wrong value.
// - Messages are translated part by part: the program looks up each part of a message (the
//   "what happened\r\n\r\n" part, the "what to do" part) before joining them. When a whole
//   multi-part text is asked for and the file has no entry for it, its parts (each ending at
//   a run of line breaks) are looked up one by one, so a file may hold either.
// - A file that is not well-formed, whose root is not "HVLanguage", or that can't be read is
//   not used at all: the program stays English and says why in the log.
class CTranslationService : public IHVTranslator
{
public:
    CTranslationService();

    // Reads a language file and makes it the current language. On any failure the service is
    // English (no translations), a warning is logged, and false comes back.
    bool Load(const HVString& path);
    // The same from a document's text; `source` names it in log lines.
    bool LoadText(const HVString& xml, const HVString& source);
    // Back to English.
    void Reset();

    // The current language's text for an English text; the English text itself when the
    // language has none (and always for English).
    HVString Translate(const HVString& english) const override;
    HVString DisplayLanguage() const override { return name_; }

    // "English"/"en" until a language file has been loaded.
    const HVString& LanguageName() const { return name_; }
    const HVString& LanguageCode() const { return code_; }
    bool IsEnglish() const { return entries_.empty(); }
    size_t GetCount() const { return entries_.size(); }

    // Lists the names of the files in a folder (names only, no folder). False when the folder
    // can't be read. On Windows: CLanguageSelectionDlg::FolderLister().
    using FileLister = std::function<bool(const HVString& folder, std::vector<HVString>& names)>;
    // Reads a whole text file; false (and a log line) when it can't.
    using FileReader = std::function<bool(const HVString& path, HVString& text)>;
    // HVTextFileReader.
    static FileReader TextFileReader();

    // The languages offered in `folder`: English first, always; then every "*.xml" file
    // there that is a language file, sorted by name (without regard to case). Files that
    // aren't language files, and a second file for a name already listed, are left out with a
    // log line; a missing folder lists English alone.
    static std::vector<CLanguageInfo> ListLanguages(const HVString& folder, const FileLister& lister,
                                                    const FileReader& reader = TextFileReader());

    // A language document's name and code, without keeping its texts; `path` is what the
    // info will name. False (with a log line) when the text is no language file.
    static bool ReadLanguageInfo(const HVString& xml, const HVString& path, CLanguageInfo& info);

    static constexpr const char16_t* kEnglishName = u"English";
    static constexpr const char16_t* kEnglishCode = u"en";
    static constexpr const char16_t* kRootName = u"HVLanguage";

    // The text of an <English> or <Translation> element as the program means it: escapes
    // turned into characters, raw line breaks (with the blanks around them) into one space.
    static HVString Unescape(std::u16string_view text);
    // The "%" conversions of a format in order ("%s", "%d", "%I64d", ...); "%%" is no marker.
    static std::vector<HVString> FormatMarkers(std::u16string_view text);

private:
    bool ReadFailed(const HVString& path);
    bool LoadDocument(HVXMLDocument& doc, const HVString& source);
    HVString Lookup(const HVString& english) const;

    HVString name_;
    HVString code_;
    std::unordered_map<HVString, HVString> entries_;
};

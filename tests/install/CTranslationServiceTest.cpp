#include "install/CTranslationService.h"

#include "foundation/HVLog.h"
#include "foundation/HVTranslator.h"

#include "LanguageFileText.h"
#include "RecordingLogger.h"
#include "ScratchDir.h"
#include "SourceFile.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

namespace
{
std::string U8(const HVString& s) { return s.ToUtf8(); }
HVString H(const char* utf8) { return HVString::FromUtf8(utf8); }

// A German language file with these entries.
HVString Doc(const char* entries) { return H(LanguageFileText("Deutsch", "de", entries).c_str()); }

// A text as written, and what should come out of it.
struct TextRow { const char* english; const char* expected; };

TEST(CTranslationService, StartsEnglishAndGivesTextsBack)
{
    CTranslationService service;
    EXPECT_TRUE(service.IsEnglish());
    EXPECT_EQ(U8(service.LanguageName()), "English");
    EXPECT_EQ(U8(service.LanguageCode()), "en");
    EXPECT_EQ(U8(service.Translate(u"Next >")), "Next >");
    EXPECT_EQ(U8(service.Translate(u"")), "");
    // Once installed, the service translates for every HVTranslator caller.
    ASSERT_TRUE(service.LoadText(Doc("<Text><English>Cancel</English><Translation>Abbrechen</Translation></Text>"), u"t"));
    HVTranslator::Set(&service);
    EXPECT_EQ(U8(HVTranslator::Translate(u"Cancel")), "Abbrechen");
    EXPECT_EQ(U8(HVTranslator::Translate(u"Finish")), "Finish");
    HVTranslator::Set(nullptr);
    EXPECT_EQ(U8(HVTranslator::Translate(u"Cancel")), "Cancel");
}

// Entries that would break a message (markers that differ, no translation) are left out with a
// warning; of two for one text the first counts.
TEST(CTranslationService, TranslatesByExactTextAndJoinedMessagesPartByPart)
{
    RecordingLogger log;
    CTranslationService service;
    ASSERT_TRUE(service.LoadText(Doc(R"(
      <Text><English>&lt; Back</English><Translation>&lt; Zurück</Translation></Text>
      <Text><English>Please Close </English><Translation>Bitte beenden: </Translation></Text>
      <Text>
        <English>%s can not be installed to an empty folder.\r\n\r\n</English>
        <Translation>%s kann nicht in einen leeren Ordner.\r\n\r\n</Translation>
      </Text>
      <Text><English><![CDATA[a <b> & c]]></English><Translation>x &amp; y</Translation></Text>
      <Text><English>First part.\r\n\r\n</English><Translation>Erster Teil.\r\n\r\n</Translation></Text>
      <Text><English>Second line.\r\n</English><Translation>Zweite Zeile.\r\n</Translation></Text>
      <Text><English>Last part.</English><Translation>Letzter Teil.</Translation></Text>
      <Text><English>Bare</English><Translation>Nackt</Translation></Text>
      <Text><English>Whole.\r\n\r\nText.</English><Translation>Ganz.\r\n\r\nText!</Translation></Text>
      <Text><English>%s needs %d MB</English><Translation>%d MB braucht %s</Translation></Text>
      <Text><English>Install %s</English><Translation>Installieren</Translation></Text>
      <Text><English>Empty</English><Translation></Translation></Text>
      <Text><English>Only English</English></Text>
      <Text><English>Twice</English><Translation>Erstes</Translation></Text>
      <Text><English>Twice</English><Translation>Zweites</Translation></Text>
      <Other><English>Other</English><Translation>Anders</Translation></Other>
      <Text><English>Good %s</English><Translation>Gut %s</Translation></Text>)"),
                                     u"test"));
    EXPECT_EQ(U8(service.LanguageName()), "Deutsch");
    EXPECT_EQ(U8(service.LanguageCode()), "de");
    EXPECT_EQ(service.GetCount(), 11u);
    EXPECT_TRUE(log.Has(HVLog::kWarning, "%s needs %d MB"));
    EXPECT_TRUE(log.Has(HVLog::kWarning, "Install %s"));

    const TextRow rows[] = {
        {"< Back", "< Zurück"},
        {"Please Close ", "Bitte beenden: "},
        {"Please Close", "Please Close"},    // blanks count
        {"< back", "< back"},                // so does case
        {"%s can not be installed to an empty folder.\r\n\r\n", "%s kann nicht in einen leeren Ordner.\r\n\r\n"},
        {"a <b> & c", "x & y"},
        {"Unknown", "Unknown"},
        // Joined messages are translated part by part.
        {"First part.\r\n\r\nSecond line.\r\nLast part.", "Erster Teil.\r\n\r\nZweite Zeile.\r\nLetzter Teil."},
        {"First part.\r\n\r\nUntranslated.", "Erster Teil.\r\n\r\nUntranslated."},
        {"Bare\r\n\r\nLast part.", "Nackt\r\n\r\nLetzter Teil."},   // a part found without its breaks
        {"Whole.\r\n\r\nText.", "Ganz.\r\n\r\nText!"},              // a whole entry wins
        {"None.\r\nOf these.", "None.\r\nOf these."},
        {"\r\n\r\n", "\r\n\r\n"},
        {"%s needs %d MB", "%s needs %d MB"}, {"Install %s", "Install %s"}, {"Empty", "Empty"}, {"Twice", "Erstes"},
        {"Other", "Other"}, {"Good %s", "Gut %s"},
    };
    for (const auto& row : rows)
        EXPECT_EQ(U8(service.Translate(H(row.english))), row.expected) << row.english;
}

TEST(CTranslationService, UnescapesBreaksAndFoldsWrappedLines)
{
    const TextRow rows[] = {
        {"a\\r\\nb", "a\r\nb"}, {"tab\\there", "tab\there"}, {"back\\\\n", "back\\n"},
        {"C:\\Program Files\\Halvard", "C:\\Program Files\\Halvard"}, {"end\\", "end\\"},
        {"wrapped\n   line", "wrapped line"}, {"wrapped   \r\n\t  line", "wrapped line"},
        {"\n   leading and trailing\n  ", "leading and trailing"}, {"two  spaces stay", "two  spaces stay"},
        {"trailing space ", "trailing space "}, {"", ""},
    };
    for (const auto& row : rows)
        EXPECT_EQ(U8(CTranslationService::Unescape(H(row.english).view())), row.expected) << row.english;
}

TEST(CTranslationService, FormatMarkersAreReadInOrder)
{
    const struct { const char* text; std::vector<std::string> markers; } rows[] = {
        {"%s and %d", {"%s", "%d"}}, {"100%% sure %s", {"%s"}},
        {"%I64d bytes, %-5.2f, %ls", {"%I64d", "%-5.2f", "%ls"}}, {"no markers", {}}, {"ends in %", {"%"}},
    };
    for (const auto& row : rows) {
        std::vector<std::string> got;
        for (const HVString& m : CTranslationService::FormatMarkers(H(row.text).view()))
            got.push_back(U8(m));
        EXPECT_EQ(got, row.markers) << row.text;
    }
}

TEST(CTranslationService, BrokenFilesLeaveEnglishWithAWarning)
{
    const struct { const char* name; HVString text; } rows[] = {
        {"not XML", H("this is not xml at all <<<")},
        {"unclosed", H("<HVLanguage name=\"X\"><Text><English>a</English><Translation>b</Translation></Text>")},
        {"mismatched", H("<HVLanguage name=\"X\"><Text><English>a</Translation></Text></HVLanguage>")},
        {"other root", H("<HVIC version=\"1.0\"><Text><English>a</English><Translation>b</Translation></Text></HVIC>")},
        {"empty", HVString()},
    };
    for (const auto& row : rows) {
        RecordingLogger log;
        CTranslationService service;
        ASSERT_TRUE(service.LoadText(Doc("<Text><English>a</English><Translation>b</Translation></Text>"), u"good"));
        EXPECT_FALSE(service.LoadText(row.text, u"bad.xml")) << row.name;
        EXPECT_TRUE(service.IsEnglish()) << row.name;
        EXPECT_EQ(U8(service.LanguageName()), "English") << row.name;
        EXPECT_EQ(U8(service.Translate(u"a")), "a") << row.name;
        EXPECT_TRUE(log.Has(HVLog::kWarning, "bad.xml")) << row.name;
    }
}

TEST(LanguageFolder, ListsEnglishFirstThenTheLanguagesByName)
{
    RecordingLogger log;
    const ScratchDir dir;
    dir.Write("Deutsch.xml", LanguageFileText("Deutsch", "de"));
    dir.Write("francais.XML", LanguageFileText("Français", "fr"));
    dir.Write("aa.xml", LanguageFileText("Afrikaans", "af"));
    dir.Write("Broken.xml", "<HVLanguage name=\"Broken\"><Text>");
    dir.Write("Install.xml", "<HVIC version=\"1.0\"><Settings/></HVIC>");
    dir.Write("Nameless.xml", "<HVLanguage><Text><English>a</English><Translation>b</Translation></Text></HVLanguage>");
    dir.Write("Deutsch2.xml", LanguageFileText("deutsch", "de-AT"));
    dir.Write("English.xml", LanguageFileText("English", "en"));
    const std::u16string greek = u"\uFEFF<HVLanguage name=\"Ελληνικά\" code=\"el\"><Text><English>Cancel</English>"
                                 u"<Translation>Άκυρο</Translation></Text></HVLanguage>";
    dir.Write("Greek.xml", std::string(reinterpret_cast<const char*>(greek.data()), greek.size() * 2));
    dir.Write("notes.txt", LanguageFileText("Text", "tx"));
    std::filesystem::create_directories(dir.Dir() / "Folder.xml");

    const std::vector<CLanguageInfo> languages = CTranslationService::ListLanguages(dir.Folder(), ScratchDir::ListNames);
    std::vector<std::string> names;
    for (const CLanguageInfo& l : languages)
        names.push_back(U8(l.name) + "/" + U8(l.code));
    EXPECT_EQ(names, (std::vector<std::string>{"English/en", "Afrikaans/af", "Deutsch/de", "Français/fr", "Nameless/",
                                              "Ελληνικά/el"}));
    EXPECT_TRUE(languages[0].path.IsEmpty());
    EXPECT_EQ(U8(languages[2].path), U8(dir.Folder() + u"Deutsch.xml"));
    EXPECT_TRUE(log.Has(HVLog::kWarning, "Broken.xml"));
    EXPECT_TRUE(log.Has(HVLog::kWarning, "Install.xml"));

    // The listed path loads the language it named, a UTF-16 file by its byte order mark.
    CTranslationService service;
    ASSERT_TRUE(service.Load(languages[5].path));
    EXPECT_EQ(U8(service.LanguageName()), "Ελληνικά");
    EXPECT_EQ(U8(service.Translate(u"Cancel")), "Άκυρο");
}

TEST(LanguageFolder, MissingFolderOrFilesListEnglishAlone)
{
    const ScratchDir dir;
    ASSERT_EQ(CTranslationService::ListLanguages(u"nowhere", nullptr).size(), 1u);
    const auto ghosts = [](const HVString&, std::vector<HVString>& names) {
        names = {u"Gone.xml", u".xml", u"x"};
        return true;
    };
    const std::vector<CLanguageInfo> languages = CTranslationService::ListLanguages(dir.Folder(), ghosts);
    ASSERT_EQ(languages.size(), 1u);
    EXPECT_EQ(U8(languages[0].name), "English");

    RecordingLogger log;
    CTranslationService service;
    EXPECT_FALSE(service.Load(dir.Folder() + u"Gone.xml"));
    EXPECT_TRUE(service.IsEnglish());
    EXPECT_TRUE(log.Has(HVLog::kWarning, "Gone.xml"));
}

// The shipped German file: every entry usable, and the texts of the program found in it.
TEST(CTranslationService, SampleGermanFileTranslatesTheWizardsTexts)
{
    const HVString path = SourceFilePath("sample/Languages/Deutsch.xml");
    RecordingLogger log;
    CTranslationService service;
    ASSERT_TRUE(service.Load(path));
    EXPECT_EQ(U8(service.LanguageName()), "Deutsch");
    EXPECT_EQ(U8(service.LanguageCode()), "de");
    EXPECT_FALSE(log.Has(HVLog::kWarning, "")) << (log.Texts().empty() ? "" : log.Texts()[0]);

    // One of each kind: a button, a text with a trailing blank, one ending in breaks, two markers.
    const char* texts[] = {
        "< Back", "Please Close ", "%s installation requires at least 20 MB of free disk space.\r\n\r\n",
        "%s - Install Wizard (Auto Install in %d seconds)",
        // A whole format whose parts are in the file: its "%s" parts stay where they are.
        "The following module has failed to load:\r\n%s\r\n\r\nIt has reported the following error:\r\n\r\n%s"
        "\r\n\r\nPlease reinstall the latest version of the program.",
    };
    for (const char* text : texts) {
        const HVString english = H(text);
        const HVString german = service.Translate(english);
        EXPECT_NE(U8(german), text);
        EXPECT_EQ(CTranslationService::FormatMarkers(german.view()), CTranslationService::FormatMarkers(english.view()));
        // Breaks at the end of a part stay, so that joined parts keep their spacing.
        EXPECT_EQ(english.EndsWith(u"\r\n\r\n"), german.EndsWith(u"\r\n\r\n")) << text;
    }
}
}

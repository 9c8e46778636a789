#include "integration/FileTypeModel.h"

#include "foundation/HVXMLDocument.h"

#include "BracketTranslator.h"

#include <gtest/gtest.h>

namespace
{
FileTypeModel::LoadResult Load(FileTypeModel& model, const char16_t* xml, const FileTypeModel::Overrides& overrides = {},
                               const std::vector<FileTypeModel::InputPlugin>& plugins = {})
{
    HVXMLDocument document;
    document.SetDoc(xml);
    return model.Load(document, overrides, plugins);
}

TEST(FileTypeModelTest, RefusesWhatIsNotAFileTypeFile)
{
    using R = FileTypeModel::LoadResult;
    struct Case { const char16_t* xml; R result; };
    for (const Case& c : {Case{u"<LWFA version=\"1.0\"/>", R::Loaded}, Case{u"<LWFA version=\"2\"/>", R::Loaded},
                          Case{u"<LWFA version=\"0.9\"/>", R::OldVersion}, Case{u"<LWFA/>", R::OldVersion},
                          Case{u"<LWFA version=\"1.0x\"/>", R::OldVersion}, Case{u"<HVIC version=\"1.0\"/>", R::WrongRoot},
                          Case{u"<LWFA version=\"1.0\">", R::NotParsed}, Case{u"", R::NotParsed}}) {
        FileTypeModel model;
        EXPECT_EQ(Load(model, c.xml), c.result) << HVString(c.xml).ToUtf8();
    }
}

TEST(FileTypeModelTest, ListsMediaTypesOverridesPluginsAndMime)
{
    FileTypeModel model;
    ASSERT_EQ(Load(model,
                   u"<LWFA version=\"1.0\"><DescriptionTypes><Audio>.mp3; flac;;.MP3;a\\b</Audio><Video>.mp4;.flac</Video>"
                   u"</DescriptionTypes><DefaultFileTypes>.mp3</DefaultFileTypes><DefaultAssocFileTypes>.mp3</DefaultAssocFileTypes>"
                   u"<LWTypes>.mp3</LWTypes><Protocols>itpc</Protocols>"
                   u"<MimeAssociations><Mime Type=\"audio/mpeg\" Extension=\"mp3\"/></MimeAssociations></LWFA>",
                   {u"", u".flac;.xyz", {}}, {{u"Tracker", u".mod;.MP3"}}),
              FileTypeModel::LoadResult::Loaded);
    // Blanks trimmed, dots added, duplicates and impossible key names left out.
    EXPECT_EQ(FileTypeModel::JoinList(model.Get(FileTypeModel::Audio)), u".mp3;.flac");
    EXPECT_EQ(FileTypeModel::JoinList(model.Get(FileTypeModel::DefaultFileTypes)), u".mp3");
    EXPECT_EQ(FileTypeModel::JoinList(model.Get(FileTypeModel::DefaultAssocFileTypes)), u".flac;.xyz");
    EXPECT_EQ(FileTypeModel::JoinList(model.Get(FileTypeModel::LWTypes)), u".mp3;.mod");
    EXPECT_EQ(model.MediaType(u".FLAC"), u"Audio");
    EXPECT_EQ(model.MediaType(u".mod"), u"Unknown");
    EXPECT_EQ(model.Description(u".mp3"), u"MP3 Audio file (Tracker)");
    EXPECT_EQ(model.Description(u".mp4"), u"MP4 Video file");
    // The user reads it in the language chosen: the format and the media type are translated.
    {
        const BracketTranslator translator;
        EXPECT_EQ(model.Description(u".mp4"), u"[MP4 [Video] file]");
    }
    ASSERT_EQ(model.MimeAssociations().size(), 1u);
    EXPECT_EQ(model.MimeAssociations()[0].extension, u".mp3");
    EXPECT_EQ(FileTypeModel::JoinList(model.Protocols()), u"itpc");
    EXPECT_EQ(FileTypeModel::JoinList(model.KnownExtensions()), u".mp3;.flac;.mp4;.xyz;.mod");
    EXPECT_EQ(model.SelectedMediaTypes({u".mp4", u".mod", u".mp3"}), u"Audio;Video;Unknown");
    EXPECT_EQ(model.SelectedMediaTypes({}), u"NONE");
}

TEST(FileTypeModelTest, ProgIdsAndBackupNames)
{
    struct Case { const char16_t* extension; const char16_t* progId; };
    for (const Case& c : {Case{u".mpl", u"S32.Playlist"}, Case{u".WSZ", u"S32.Pack"}, Case{u".rss", u"S32.Subscribe"},
                          Case{u".xml", u"S32.Subscribe"}, Case{u".mid", u"S32.Mime"}, Case{u".mp3", u"S32.File"}})
        EXPECT_EQ(FileTypeModel::ProgIdFor(c.extension, u"S32", u".MID"), c.progId) << HVString(c.extension).ToUtf8();
    EXPECT_EQ(FileTypeModel::BackupValueName(u"S32", u"Content Type"), u"S32.ContentType.BAK");
    EXPECT_EQ(FileTypeModel::BackupValueName(u"S32", u""), u"S32.Default.BAK");
    EXPECT_TRUE(FileTypeModel::IsForeign(u"Other.File", u"S32"));
    EXPECT_TRUE(FileTypeModel::IsForeign(u"audio", u"S32"));
    EXPECT_FALSE(FileTypeModel::IsForeign(u"S32.Playlist", u"S32"));
}
}

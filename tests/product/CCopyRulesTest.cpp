#include "product/CCopyRules.h"

#include <gtest/gtest.h>

namespace
{
TEST(CCopyRulesTest, OnlyModulesAreVersionChecked)
{
    struct Case { const char16_t* path; bool checked; };
    for (const Case& c : {Case{u"C:\\Windows\\System32\\HVCodec.DLL", true}, Case{u"a\\b.exe", true},
                          Case{u"x.Ocx", true}, Case{u"filter.ax", true}, Case{u"notes.txt", false},
                          Case{u"archive.dll.bak", false}, Case{u"max", false}, Case{u"relax", false}})
        EXPECT_EQ(CCopyRules::IsVersionChecked(c.path), c.checked) << HVString(c.path).ToUtf8();
}

TEST(CCopyRulesTest, VersionCheckCopiesOnlyOverAnOlderModule)
{
    const CVersionInfo v15(1, 5, 0, 0), v2(2, 0, 0, 0), none;
    struct Case { int32_t mode; const char16_t* path; CVersionInfo source, destination; bool copy; };
    const Case cases[] = {
        {kCopyVersionCheck, u"HVCodecSupport.dll", v2, v15, true},    // newer replaces older
        {kCopyVersionCheck, u"HVCodecSupport.dll", v15, v2, false},   // never a downgrade
        {kCopyVersionCheck, u"HVCodecSupport.dll", v2, v2, false},    // equal stays
        {kCopyVersionCheck, u"HVCodecSupport.dll", v15, none, true},  // missing or unversioned is 0
        {kCopyVersionCheck, u"HVCodecSupport.dll", none, none, false},
        {kCopyVersionCheck, u"HVSystemNotes.txt", v15, v2, true},     // only modules are checked
        {kCopyAlwaysOverwrite, u"HVCodecSupport.dll", v15, v2, true},
        {kCopyFont, u"DejaVuSans.ttf", none, v2, true},
    };
    for (const Case& c : cases)
        EXPECT_EQ(CCopyRules::ShouldCopy(c.mode, c.path, c.source, c.destination), c.copy)
            << c.mode << " " << HVString(c.path).ToUtf8() << " " << c.source.GetText().ToUtf8() << " over "
            << c.destination.GetText().ToUtf8();
}

TEST(CCopyRulesTest, SpecialNames)
{
    using Test = bool (*)(const HVString&);
    struct Case { Test test; const char16_t* yes; const char16_t* no; };
    for (const Case& c : {Case{CCopyRules::IsInFontsFolder, u"C:\\WINDOWS\\fonts\\a.ttf", u"C:\\Sonora\\Fonts\\a.ttf"},
                          Case{CCopyRules::IsServerProgram, u"C:\\S\\dynamoserver.EXE", u"C:\\S\\DynamoServer.exe.cfg"},
                          Case{CCopyRules::IsShellExtension, u"C:\\S\\hvshellext.dll", u"C:\\S\\OldHVShellExt.dll"},
                          Case{CCopyRules::MayRegister, u"a.OCX", u"a.ax"},
                          Case{CCopyRules::IsInputPlugin, u"C:\\S\\IN_cdda.dll", u"C:\\in_x\\out_wave.dll"}}) {
        EXPECT_TRUE(c.test(c.yes)) << HVString(c.yes).ToUtf8();
        EXPECT_FALSE(c.test(c.no)) << HVString(c.no).ToUtf8();
    }
}

TEST(CCopyRulesTest, FontTableNames)
{
    EXPECT_EQ(CCopyRules::FontTableName(u"C:\\Windows\\Fonts\\DejaVuSans.TTF"), u"DejaVuSans (TrueType)");
    EXPECT_EQ(CCopyRules::FontTableName(u"C:\\Windows\\Fonts\\Cambria.ttc"), u"Cambria (TrueType)");
    EXPECT_EQ(CCopyRules::FontTableName(u"C:\\Windows\\Fonts\\Source.Sans.otf"), u"Source.Sans (OpenType)");
    EXPECT_EQ(CCopyRules::FontTableName(u"C:\\Windows\\Fonts\\serife.fon"), u"serife");
}
}

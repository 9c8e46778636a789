#include "integration/CPackageDescription.h"

#include <gtest/gtest.h>

TEST(CPackageDescriptionTest, BothLayoutsGiveTheSameKindOfDescription)
{
    const HVString current =
        u"<LWPF version=\"2\"><Actions><Action>unzipdir</Action><Action>InstallSkin</Action>"
        u"<Action>DONT_CLEANUP</Action><Action>nonsense</Action></Actions>"
        u"<FileEntry><File>in_a.dll</File><FileType>Plugin</FileType>"
        u"<Action Command=\"reg_wa_in\" Param=\"\"/><Action Command=\"COPY_PLUGINDIR\" Param=\"x\"/></FileEntry>"
        u"<FileEntry><FileType>no file</FileType></FileEntry>"
        u"<Package><Name>Skin Pack</Name></Package></LWPF>";
    const HVString flat =
        u"<lwpf><Package><Name>Old</Name><Version>2.1</Version><HasActions>1</HasActions>"
        u"<ActionOpt>NONE; save_dir_struct</ActionOpt><File1>a.exe</File1>"
        u"<File1Action1 Param=\"/S\">execute</File1Action1><File1Action2>DONTWAIT</File1Action2>"
        u"<File2>b.dll</File2><File3Action1>REGISTER</File3Action1><File4>unreached</File4></Package></lwpf>";
    CPackageDescription d;
    ASSERT_TRUE(d.Parse(current));
    EXPECT_EQ(d.actions, CPackageDescription::kUnzipDir | CPackageDescription::kInstallSkin | CPackageDescription::kDontCleanup);
    EXPECT_EQ(d.name, u"Skin Pack");
    ASSERT_EQ(d.files.size(), 1u);
    EXPECT_EQ(d.files[0].file, u"in_a.dll");
    ASSERT_EQ(d.files[0].commands.size(), 2u);
    EXPECT_EQ(d.files[0].commands[0].word, u"REG_WA_IN");
    EXPECT_TRUE(d.files[0].Has(u"COPY_PLUGINDIR"));
    EXPECT_TRUE(d.HasActions());

    ASSERT_TRUE(d.Parse(flat));
    EXPECT_EQ(d.actions, CPackageDescription::kNone | CPackageDescription::kSaveDirStruct);
    EXPECT_EQ(d.version, u"2.1");
    ASSERT_EQ(d.files.size(), 2u);  // File3 has no file, so the list ends at File2
    EXPECT_EQ(d.files[0].commands.size(), 2u);
    EXPECT_EQ(d.files[0].commands[0].word, u"EXECUTE");
    EXPECT_EQ(d.files[0].commands[0].param, u"/S");
    EXPECT_TRUE(d.files[1].commands.empty());
}

TEST(CPackageDescriptionTest, WhatIsNoDescriptionOrAsksNothing)
{
    const struct { const char16_t* text; bool parses; bool hasActions; } cases[] = {
        {u"<HVIC><Package><HasActions>1</HasActions></Package></HVIC>", false, false},
        {u"<LWPF><Package><HasActions>", false, false},
        {u"", false, false},
        {u"<LWPF><Package><Name>x</Name><HasActions>0</HasActions></Package></LWPF>", true, false},
        {u"<LWPF><Package><HasActions>1</HasActions></Package></LWPF>", true, true},
        {u"<LWPF><Actions>INSTALLMEDIA</Actions></LWPF>", true, true},
    };
    for (const auto& c : cases) {
        CPackageDescription d;
        EXPECT_EQ(d.Parse(c.text), c.parses) << HVString(c.text).ToUtf8();
        EXPECT_EQ(d.HasActions(), c.hasActions) << HVString(c.text).ToUtf8();
    }
}

TEST(CPackageDescriptionTest, MacrosExpandInAnyCase)
{
    EXPECT_EQ(CPackageDescription::ExpandMacros(u"[programpath]Skins|<PROGRAMPATH>x|[NAMEWITHVERSION]", u"Sonora 32",
                                                u"C:\\P\\"),
              u"C:\\P\\Skins|C:\\P\\x|Sonora 32");
    // A value holding a macro's text is not expanded again.
    EXPECT_EQ(CPackageDescription::ExpandMacros(u"[PROGRAMPATH]", u"n", u"[PROGRAMPATH]\\"), u"[PROGRAMPATH]\\");
}

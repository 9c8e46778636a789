#include "product/HVInstallDescription.h"

#include "ScratchDir.h"

#include <gtest/gtest.h>

#include <climits>
#include <string>

namespace
{
std::string U8(const HVString& s) { return s.ToUtf8(); }

const char16_t* const kDescription =
    u"<?xml version=\"1.0\" encoding=\"utf-8\"?>\r\n"
    u"<HVIC version=\"1.0\">\r\n"
    u"  <Product>\r\n"
    u"    <InstallToPath>C:\\Program Files\\Halvard\\Sonora\\</InstallToPath>\r\n"
    u"    <ObsoleteFiles></ObsoleteFiles>\r\n"
    u"    <DefaultFileTypes> mp3;wma </DefaultFileTypes>\r\n"
    u"  </Product>\r\n"
    u"  <MimeAssociations><Mime type=\"audio/mpeg\"/><Mime type=\"audio/x-ms-wma\"/></MimeAssociations>\r\n"
    u"  <DefaultSettings><Volume>80</Volume><Skin>Dark &amp; Light</Skin></DefaultSettings>\r\n"
    u"  <Installer>\r\n"
    u"    <ShowLanguageSelection>1</ShowLanguageSelection>\r\n"
    u"    <PromoCount>-3</PromoCount>\r\n"
    u"    <PromoMinimumMilliseconds> 250 </PromoMinimumMilliseconds>\r\n"
    u"    <OfferAutoInstall>yes</OfferAutoInstall>\r\n"
    u"  </Installer>\r\n"
    u"  <SpecialFeatures><MinIEVersion/></SpecialFeatures>\r\n"
    u"</HVIC>\r\n";

TEST(HVInstallDescriptionTest, TextKeysGiveTheirDefaultWhenMissingOrEmpty)
{
    HVInstallDescription d;
    ASSERT_TRUE(d.SetText(kDescription));
    // present: GetValue finds the element.
    const struct { const char16_t* path; const char16_t* fallback; const char16_t* text; bool present; } cases[] = {
        {u"/*/Product/InstallToPath", u"", u"C:\\Program Files\\Halvard\\Sonora\\", true},
        {u"/HVIC/Product/InstallToPath", u"", u"C:\\Program Files\\Halvard\\Sonora\\", true},
        {u"/*/Product/ObsoleteFiles", u"none", u"none", true},
        {u"/*/Product/DefaultFileTypes", u"", u" mp3;wma ", true},
        {u"/*/Product/DefaultAssocFileTypes", u"", u"", false}, {u"/*/DefaultSettings/", u"", u"80", true},
        {u"/*/DefaultSettings/Skin", u"", u"Dark & Light", true},
        {u"/*/Product", u"x", u"x", true},   // an element with children has no text
        {u"/Other/Product/InstallToPath", u"d", u"d", false},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(U8(d.GetText(c.path, c.fallback)), U8(c.text)) << U8(c.path);
        HVString value;
        EXPECT_EQ(d.GetValue(c.path, value), c.present) << U8(c.path);
    }
}

TEST(HVInstallDescriptionTest, IntegerKeysAreReadAsTheyStand)
{
    HVInstallDescription d;
    ASSERT_TRUE(d.SetText(kDescription));
    // The description applies no bounds: the floor of 1 image and 1000 ms belong to the reader.
    const struct { const char16_t* path; int32_t fallback, value; } cases[] = {
        {u"/*/Installer/ShowLanguageSelection", 0, 1},
        {u"/*/Installer/PromoCount", 0, -3},
        {u"/*/Installer/PromoMinimumMilliseconds", 0, 250},
        {u"/*/Installer/OfferAutoInstall", 7, 7},   // not a number
        {u"/*/Installer/Missing", 42, 42},
        {u"/*/SpecialFeatures/MinIEVersion", -1, -1},   // empty
    };
    for (const auto& c : cases)
        EXPECT_EQ(d.GetInteger(c.path, c.fallback), c.value) << U8(c.path);
}

TEST(HVInstallDescriptionTest, ParseIntegerAcceptsOnlyWholeDecimalNumbers)
{
    const std::pair<const char16_t*, int64_t> cases[] = {
        {u"0", 0},       {u"17", 17},          {u"-17", -17},   {u"+5", 5},
        {u" \t12\r\n", 12}, {u"2147483647", INT32_MAX}, {u"-2147483648", INT32_MIN},
        {u"2147483648", LLONG_MIN}, {u"", LLONG_MIN}, {u"-", LLONG_MIN}, {u"12abc", LLONG_MIN},
        {u"1 2", LLONG_MIN}, {u"0x10", LLONG_MIN}, {u"1.5", LLONG_MIN}, {u"99999999999999999999", LLONG_MIN},
    };
    for (const auto& [text, expected] : cases) {
        int32_t value = 0;
        const bool ok = HVInstallDescription::ParseInteger(text, value);
        EXPECT_EQ(ok, expected != LLONG_MIN) << U8(text);
        if (ok) {
            EXPECT_EQ(value, expected) << U8(text);
        }
    }
}

TEST(HVInstallDescriptionTest, ElementsAndAttributes)
{
    HVInstallDescription d;
    ASSERT_TRUE(d.SetText(kDescription));
    const HVInstallDescription::Elem mime = d.FindElement(u"/*/MimeAssociations");
    ASSERT_NE(mime, 0u);
    std::string types;
    const HVXMLDocument& doc = d.GetDocument();
    for (HVInstallDescription::Elem e = doc.GetFirstChild(mime); e != 0; e = doc.GetNextSibling(e))
        types += U8(d.GetAttribute(e, u"type")) + ";";
    EXPECT_EQ(types, "audio/mpeg;audio/x-ms-wma;");
    EXPECT_EQ(d.GetAttribute(d.FindElement(u"/*"), u"version"), u"1.0");
    EXPECT_TRUE(d.GetAttribute(d.FindElement(u"/*"), u"missing").IsEmpty());
    EXPECT_TRUE(d.GetAttribute(0, u"version").IsEmpty());
    EXPECT_EQ(d.FindElement(u"/*/Nothing"), 0u);
}

TEST(HVInstallDescriptionTest, AnyRootAndBrokenOrMissingFiles)
{
    HVInstallDescription d;
    ASSERT_TRUE(d.SetText(u"<Setup><Product><InstallToPath>D:\\x</InstallToPath></Product></Setup>"));
    EXPECT_EQ(d.GetText(u"/*/Product/InstallToPath"), u"D:\\x");
    EXPECT_TRUE(d.GetText(u"/HVIC/Product/InstallToPath").IsEmpty());
    // Not well formed: what could be read is still served.
    EXPECT_FALSE(d.SetText(u"<HVIC><Installer><PromoCount>4</PromoCount></Installer><Broken></HVIC>"));
    EXPECT_TRUE(d.IsLoaded());
    EXPECT_EQ(d.GetInteger(u"/*/Installer/PromoCount", 0), 4);

    const ScratchDir dir;
    EXPECT_FALSE(d.Load(dir.Path("missing.xml")));
    EXPECT_FALSE(d.IsLoaded());
    EXPECT_EQ(d.GetText(u"/*/Installer/PromoCount", u"dflt"), u"dflt");
    EXPECT_EQ(d.GetInteger(u"/*/Installer/PromoCount", 1), 1);

    const HVString path = dir.Write(
        "Install.xml", "\xEF\xBB\xBF<HVIC version='1.0'><Product><InstallToPath>C:\\\xC3\xA9</InstallToPath></Product></HVIC>");
    EXPECT_TRUE(d.Load(path));
    EXPECT_TRUE(d.IsLoaded());
    EXPECT_EQ(d.GetPath(), path);
    EXPECT_EQ(d.GetText(u"/*/Product/InstallToPath"), u"C:\\\u00e9");
}

TEST(HVInstallDescriptionTest, DownloadServerAndPinnedDigests)
{
    HVInstallDescription bare;
    ASSERT_TRUE(bare.SetText(u"<HVIC version=\"1.0\"><Installer/></HVIC>"));
    EXPECT_EQ(U8(bare.GetDownloadServer()), U8(HVInstallDescription::kDefaultDownloadServer));
    EXPECT_TRUE(HVString(HVInstallDescription::kDefaultDownloadServer).view().starts_with(u"https://"));
    EXPECT_EQ(U8(bare.GetDownloadSha256(u"d3dx943.exe")), "");

    HVInstallDescription pinned;
    ASSERT_TRUE(pinned.SetText(u"<HVIC version=\"1.0\"><Installer>"
                               u"<DownloadServer>http://127.0.0.1:8080/deps</DownloadServer>"
                               u"<Downloads><MicrosoftEdgeWebview2Setup.exe><SHA256> AB12 </SHA256>"
                               u"</MicrosoftEdgeWebview2Setup.exe></Downloads></Installer></HVIC>"));
    EXPECT_EQ(U8(pinned.GetDownloadServer()), "http://127.0.0.1:8080/deps");
    EXPECT_EQ(U8(pinned.GetDownloadSha256(u"MicrosoftEdgeWebview2Setup.exe")), "AB12");
    // Another file's pin, or a name that would walk elsewhere in the document, gives none.
    for (const char16_t* name : {u"d3dx943.exe", u"", u"MicrosoftEdgeWebview2Setup.exe/..", u"../Installer"})
        EXPECT_EQ(U8(pinned.GetDownloadSha256(name)), "") << U8(name);
}
}

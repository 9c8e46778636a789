#include "install/CInstallSettings.h"

#include "ScratchDir.h"

#include <gtest/gtest.h>

#include <set>
#include <string>

namespace
{
std::string U8(const HVString& s) { return s.ToUtf8(); }

const char16_t* const kXmlPath = u"C:\\Setup\\Disk1\\Install.xml";

TEST(CInstallSettingsTest, SettingsCountOnlyForHvicVersionOneOrLater)
{
    // The folders that "exist" on this fake machine.
    const std::set<std::string> existing = {"C:\\Setup\\Support Files\\", "C:\\Setup\\Disk1\\Media\\",
                                            "D:\\Shared\\Media\\"};
    const auto exists = [&](const HVString& folder) { return existing.count(U8(folder)) != 0; };
    // Support and media are "" when the default stays.
    struct SettingsCase { const char* name; const char16_t* xml; bool applies; const char* support; bool allowDowngrade;
                          const char* media; };
    const SettingsCase cases[] = {
        {"all three", u"<HVIC version='1.0'><Settings SupportFiles='..\\Support Files' AllowDowngrade='1' "
                      u"BundledMedia='Media'/></HVIC>",
         true, "C:\\Setup\\Support Files\\", true, "C:\\Setup\\Disk1\\Media\\"},
        {"later version, forward slashes", u"<HVIC version='2.5'><Settings SupportFiles='../Support Files/' "
                                           u"BundledMedia='./Media/.'/></HVIC>",
         true, "C:\\Setup\\Support Files\\", false, "C:\\Setup\\Disk1\\Media\\"},
        {"absolute media folder", u"<HVIC version='1'><Settings BundledMedia='D:\\Shared\\Music\\..\\Media'/></HVIC>",
         true, "", false, "D:\\Shared\\Media\\"},
        {"missing folders are not kept", u"<HVIC version='1.0'><Settings SupportFiles='Nowhere' "
                                         u"BundledMedia='..\\Media' AllowDowngrade='0'/></HVIC>",
         true, "", false, ""},
        {"allow downgrade any non-zero", u"<HVIC version='1.0'><Settings AllowDowngrade=' -2 '/></HVIC>", true, "",
         true, ""},
        {"allow downgrade not a number", u"<HVIC version='1.0'><Settings AllowDowngrade='yes'/></HVIC>", true, "",
         false, ""},
        {"empty values", u"<HVIC version='1.0'><Settings SupportFiles='' BundledMedia=''/></HVIC>", true, "", false,
         ""},
        {"no Settings element", u"<HVIC version='1.0'><Product/></HVIC>", true, "", false, ""},
        {"version below 1.0", u"<HVIC version='0.9'><Settings AllowDowngrade='1' BundledMedia='Media'/></HVIC>",
         false, "", false, ""},
        {"no version", u"<HVIC><Settings AllowDowngrade='1'/></HVIC>", false, "", false, ""},
        {"other root", u"<Setup version='1.0'><Settings AllowDowngrade='1'/></Setup>", false, "", false, ""},
        {"root name case", u"<hvic version='1.0'><Settings AllowDowngrade='1'/></hvic>", false, "", false, ""},
        {"empty document", u"", false, "", false, ""},
    };
    for (const SettingsCase& c : cases) {
        HVInstallDescription description;
        description.SetText(c.xml);
        const CInstallSettings s = CInstallSettings::Read(description, kXmlPath, exists);
        EXPECT_EQ(s.Applies(), c.applies) << c.name;
        EXPECT_EQ(U8(s.GetSupportFolder()), c.support) << c.name;
        EXPECT_EQ(s.GetAllowDowngrade(), c.allowDowngrade) << c.name;
        EXPECT_EQ(U8(s.GetBundledMediaFolder()), c.media) << c.name;
    }
}

TEST(CInstallSettingsTest, VersionReadsAsANumber)
{
    const std::pair<const char16_t*, bool> cases[] = {
        {u"1.0", true}, {u"1", true},   {u"01.00", true}, {u" 2.5 ", true}, {u"10", true},  {u"+1.0", true},
        {u"1.", true},  {u"0.99", false}, {u"0", false},  {u".5", false},   {u"", false},   {u"abc", false},
        {u"1.0a", false}, {u"-1.0", false}, {u"1.0.0", false}, {u"1,0", false},
    };
    for (const auto& [text, supported] : cases)
        EXPECT_EQ(CInstallSettings::IsSupportedVersion(text), supported) << U8(text);
}

TEST(CInstallSettingsTest, FoldersAreMadeAbsoluteAndNormalised)
{
    const std::pair<const char16_t*, const char*> normalised[] = {
        {u"C:\\a\\b", "C:\\a\\b\\"},
        {u"C:/a//b/", "C:\\a\\b\\"},
        {u"C:\\a\\.\\b\\..\\c", "C:\\a\\c\\"}, {u"C:\\..\\..\\a", "C:\\a\\"}, {u"C:\\", "C:\\"}, {u"c:", "c:\\"},
        {u"\\\\server\\share\\x\\..\\..\\y", "\\\\server\\share\\y\\"},
        {u"//server/share", "\\\\server\\share\\"},
        {u"\\\\?\\C:\\long\\..\\path", "\\\\?\\C:\\path\\"},
        {u"\\\\?\\UNC\\server\\share\\a\\..", "\\\\?\\UNC\\server\\share\\"}, {u"\\rooted\\..\\..\\x", "\\x\\"},
        {u"relative\\..\\..\\x", "..\\x\\"},
    };
    for (const auto& [path, expected] : normalised)
        EXPECT_EQ(U8(CInstallSettings::NormalizeFolder(path)), expected) << U8(path);

    const std::tuple<const char16_t*, const char16_t*, const char*> resolved[] = {
        {kXmlPath, u"Support", "C:\\Setup\\Disk1\\Support\\"}, {kXmlPath, u"  ..\\Support  ", "C:\\Setup\\Support\\"},
        {kXmlPath, u"E:\\Media", "E:\\Media\\"}, {kXmlPath, u"\\\\nas\\media\\x", "\\\\nas\\media\\x\\"},
        {kXmlPath, u"", ""}, {u"\\\\server\\setup\\Install.xml", u"..\\..\\Support", "\\\\server\\setup\\Support\\"},
        {u"Install.xml", u"Support", "Support\\"},
    };
    for (const auto& [xml, value, expected] : resolved)
        EXPECT_EQ(U8(CInstallSettings::ResolveFolder(xml, value)), expected) << U8(value);
}

TEST(CInstallSettingsTest, ReadsTheFileAtThePathItIsGiven)
{
    const ScratchDir dir;
    const HVString xmlPath = dir.Path("Install.xml");
    std::vector<std::string> asked;
    const auto exists = [&](const HVString& folder) {
        asked.push_back(U8(folder));
        return true;
    };
    // A missing file: defaults, and no folder is even looked at.
    const CInstallSettings none = CInstallSettings::Read(xmlPath, exists);
    EXPECT_FALSE(none.Applies());
    EXPECT_TRUE(asked.empty());

    dir.Write("Install.xml", "<HVIC version=\"1.0\"><Settings SupportFiles=\"Support\" AllowDowngrade=\"1\"/></HVIC>");
    const CInstallSettings s = CInstallSettings::Read(xmlPath, exists);
    EXPECT_TRUE(s.Applies());
    EXPECT_TRUE(s.GetAllowDowngrade());
    ASSERT_EQ(asked.size(), 1u);
    EXPECT_EQ(U8(s.GetSupportFolder()), asked[0]);
    EXPECT_TRUE(s.GetSupportFolder().EndsWith(u"\\Support\\"));
    EXPECT_EQ(s.GetSupportFolder().Find(u'/'), HVString::npos);
}
}   // namespace

// The install settings as start-up reads them from Install.xml: which files count, and which
// folders survive the existence test.
#include "install/CInstallSettings.h"

#include <gtest/gtest.h>

#include <set>

namespace
{
const char16_t* const kXmlPath = u"C:\\Media\\Install.xml";

struct Row
{
    const char* name;
    const char16_t* xml;
    bool applies;
    const char16_t* support;  // empty: stays as it was
    bool allowDowngrade;
    const char16_t* bundledMedia;
};

const Row kRows[] = {
    {"all three", u"<HVIC version=\"1.0\"><Settings SupportFiles=\"Support Files\" AllowDowngrade=\"1\" "
                  u"BundledMedia=\"Media\"/></HVIC>",
     true, u"C:\\Media\\Support Files\\", true, u"C:\\Media\\Media\\"},
    {"newer version", u"<HVIC version=\"2.5\"><Settings AllowDowngrade=\"7\"/></HVIC>", true, u"", true, u""},
    {"version below 1.0", u"<HVIC version=\"0.9\"><Settings AllowDowngrade=\"1\" BundledMedia=\"Media\"/></HVIC>",
     false, u"", false, u""},
    {"version not a number", u"<HVIC version=\"abc\"><Settings AllowDowngrade=\"1\"/></HVIC>", false, u"", false,
     u""},
    {"no version", u"<HVIC><Settings AllowDowngrade=\"1\"/></HVIC>", false, u"", false, u""},
    {"another root", u"<Setup version=\"1.0\"><Settings AllowDowngrade=\"1\"/></Setup>", false, u"", false, u""},
    {"folders that don't exist are dropped",
     u"<HVIC version=\"1.0\"><Settings SupportFiles=\"Missing\" BundledMedia=\"Gone\"/></HVIC>", true, u"", false,
     u""},
    {"relative climbs are resolved", u"<HVIC version=\"1.0\"><Settings SupportFiles=\"Disk1\\..\\Support Files\"/></HVIC>",
     true, u"C:\\Media\\Support Files\\", false, u""},
    {"AllowDowngrade 0 and junk", u"<HVIC version=\"1.0\"><Settings AllowDowngrade=\"no\"/></HVIC>", true, u"", false,
     u""},
    {"no Settings element", u"<HVIC version=\"1.0\"/>", true, u"", false, u""},
};
}

TEST(InstallSettingsAtStartup, WhichFilesCountAndWhichFoldersSurvive)
{
    const std::set<std::u16string> existing = {u"C:\\Media\\Support Files\\", u"C:\\Media\\Media\\"};
    for (const Row& row : kRows)
    {
        HVInstallDescription description;
        description.SetText(row.xml);
        const CInstallSettings settings = CInstallSettings::Read(description, kXmlPath, [&](const HVString& folder) {
            return existing.count(std::u16string(folder.view())) > 0;
        });
        EXPECT_EQ(settings.Applies(), row.applies) << row.name;
        EXPECT_EQ(settings.GetSupportFolder(), row.support) << row.name;
        EXPECT_EQ(settings.GetAllowDowngrade(), row.allowDowngrade) << row.name;
        EXPECT_EQ(settings.GetBundledMediaFolder(), row.bundledMedia) << row.name;
    }
}

#include "product/CSetupFolders.h"

#include <gtest/gtest.h>

TEST(CSetupFolders, FoldersAndTheDescriptionBesideOrAbove)
{
    struct Case
    {
        const char16_t* setupFolder;
        bool descriptionBeside;
        const char16_t* support;
        const char16_t* library;
        const char16_t* description;
    };
    const Case cases[] = {
        {u"C:\\Media\\", true, u"C:\\Media\\Support\\", u"C:\\Media\\Library\\", u"C:\\Media\\Install.xml"},
        {u"C:\\Media\\", false, u"C:\\Media\\Support\\", u"C:\\Media\\Library\\", u"C:\\Media\\..\\Install.xml"},
        // A folder given without its backslash still yields well-formed paths.
        {u"D:\\Setup", true, u"D:\\Setup\\Support\\", u"D:\\Setup\\Library\\", u"D:\\Setup\\Install.xml"},
    };
    for (const Case& c : cases) {
        InstallOptions options;
        std::vector<HVString> asked;
        CSetupFolders::Apply(
            c.setupFolder,
            [&](const HVString& path) {
                asked.push_back(path);
                return c.descriptionBeside;
            },
            options);
        const std::string name = HVString(c.setupFolder).ToUtf8();
        EXPECT_EQ(options.supportFolder, c.support) << name;
        EXPECT_EQ(options.libraryFolder, c.library) << name;
        EXPECT_EQ(options.installDescriptionPath, c.description) << name;
        ASSERT_EQ(asked.size(), 1u) << name;
        EXPECT_TRUE(asked[0].EndsWith(u"\\Install.xml") && asked[0].Find(u"..") == HVString::npos) << name;
    }
}

#include "product/win/CProductIdentity.h"

#include "foundation/win/HVFileSystem.h"

#include "ScratchFolderTest.h"
#include "TestPaths.h"

#include <gtest/gtest.h>

namespace
{
class CProductIdentityTest : public ScratchFolderTest
{
protected:
    void SetUp() override
    {
        ScratchFolderTest::SetUp();
        setup = root + u"Setup\\";
        install = root + u"Installed\\";
        ASSERT_TRUE(HVFileSystem::MakeDirectoryTree(setup + u"Listenwell\\Data"));
        ASSERT_TRUE(HVFileSystem::MakeDirectoryTree(install + u"Data\\Custom Art"));
    }
    void Touch(const HVString& path) { Write(path, "x"); }

    HVString setup, install;
};

TEST_F(CProductIdentityTest, VersionComesFromTheShippedMainProgram)
{
    // Without the main program, or with one that has no version resource, the fallback.
    EXPECT_EQ(CProductIdentity(setup).GetVersionText(), u"32.0.0.0");
    wchar_t self[MAX_PATH];
    ASSERT_GT(::GetModuleFileNameW(nullptr, self, MAX_PATH), 0u);
    ASSERT_TRUE(HVFileSystem::CopyFile(HVString(self), setup + u"Listenwell\\Sonora 32.exe", false));
    EXPECT_EQ(CProductIdentity(setup).GetVersionText(), u"32.0.0.0");

    ASSERT_TRUE(HVFileSystem::CopyFile(HVString(e2e::InstallWizardPath().c_str()),
                                       setup + u"Listenwell\\Sonora 32.exe", false));
    const CProductIdentity product(setup);
    EXPECT_EQ(product.GetVersionText(), u"1.0.0.0");
    EXPECT_EQ(product.GetVersionInteger(), 1 << 24);
}

// Which features each edition and list gives, CProductIdentityRulesTest proves.
TEST_F(CProductIdentityTest, LauncherAndFeaturesFromTheInstallDescription)
{
    const CProductIdentity standard(setup, u"  ");
    EXPECT_EQ(standard.GetLauncherName(), u"Sonora.exe");
    EXPECT_TRUE(!standard.IsServerEdition() && standard.HasFeature(173) && !standard.HasFeature(104));
    const CProductIdentity server(setup, u"Sonora Dynamo.exe");
    EXPECT_TRUE(server.IsServerEdition() && server.HasFeature(104));
    const CProductIdentity distributor(setup, u"Sonora.exe", u"176");
    EXPECT_TRUE(distributor.HasFeature(176) && !distributor.HasFeature(173));
}

TEST_F(CProductIdentityTest, ArtIsLookedUpCustomFirst)
{
    const CProductIdentity product(setup);
    EXPECT_EQ(product.FindArt(install, u"Disc.ico"), install + u"Data\\Default Art\\Disc.ico");
    Touch(install + u"Data\\Custom Art\\Disc.ico");
    EXPECT_EQ(product.FindArt(install, u"Disc.ico"), install + u"Data\\Custom Art\\Disc.ico");
}

TEST_F(CProductIdentityTest, ProductFilesAreFoundInstalledFolderFirst)
{
    const CProductIdentity product(setup);
    const HVString name = u"FileAssociations.xml";
    EXPECT_EQ(product.FindFile(name, install), u"");
    // Each place, once a copy is there, wins over the places before it.
    for (const HVString& place : {setup, setup + u"Listenwell\\", setup + u"Listenwell\\Data\\", install, install + u"Data\\"}) {
        Touch(place + name);
        EXPECT_EQ(product.FindFile(name, install), place + name);
    }
    EXPECT_EQ(product.FindFile(name, HVString()), setup + u"Listenwell\\Data\\" + name);
    EXPECT_EQ(product.FindFile(u"", install), u"");
}
}

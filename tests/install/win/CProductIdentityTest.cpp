#include "install/win/CProductIdentity.h"

#include "foundation/win/HVFileSystem.h"
#include "foundation/win/HVRegKey.h"

#include "TestPaths.h"

#include "TestRegistry.h"

#include <gtest/gtest.h>

namespace
{
class CProductIdentityTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        const std::wstring folder = e2e::ScratchFolder(L"CProductIdentity");
        ASSERT_FALSE(folder.empty());
        setup = HVString(folder.c_str()) + u"Setup\\";
        install = HVString(folder.c_str()) + u"Installed\\";
        ASSERT_TRUE(HVFileSystem::MakeDirectoryTree(setup + u"Listenwell\\Data"));
        ASSERT_TRUE(HVFileSystem::MakeDirectoryTree(install + u"Data\\Custom Art"));
    }
    void Touch(const HVString& path) { ASSERT_TRUE(HVFileSystem::WriteFile(path, "x", 1)) << path.ToUtf8(); }

    HVString setup, install;
};

TEST_F(CProductIdentityTest, FixedNamesAndKeys)
{
    const CProductIdentity product(setup);
    EXPECT_EQ(product.GetDisplayName(), u"Sonora");
    EXPECT_EQ(product.GetMajorVersion(), 32);
    EXPECT_EQ(product.GetRegistryHive(), HKEY_CURRENT_USER);
    EXPECT_EQ(product.GetRegistryRoot(), u"Software\\Halvard\\Sonora 32");
    EXPECT_EQ(product.GetSettingsKey(), u"Software\\Halvard\\Sonora 32\\Properties");
    EXPECT_EQ(product.GetInstallerKey(), u"Software\\Halvard\\Sonora 32\\Installer");
    EXPECT_EQ(product.GetLauncherName(), u"Sonora.exe");
    EXPECT_EQ(product.GetMainProgramName(), u"Sonora 32.exe");
    EXPECT_EQ(product.GetMainProgramSourcePath(), setup + u"Listenwell\\Sonora 32.exe");
    EXPECT_EQ(product.GetStartMenuFolderName(), u"Sonora");
    EXPECT_EQ(product.GetProductWithVersion(), u"Sonora32");
}

TEST_F(CProductIdentityTest, VersionComesFromTheShippedMainProgram)
{
    // Without the main program, or with one that has no version resource, the fallback.
    EXPECT_EQ(CProductIdentity(setup).GetVersionText(), u"32.0.0.0");
    wchar_t self[MAX_PATH];
    ASSERT_GT(::GetModuleFileNameW(nullptr, self, MAX_PATH), 0u);
    ASSERT_TRUE(HVFileSystem::CopyFile(HVString(self), setup + u"Listenwell\\Sonora 32.exe", false));
    EXPECT_EQ(CProductIdentity(setup).GetVersionText(), u"32.0.0.0");
    EXPECT_EQ(CProductIdentity(setup).GetVersionInteger(), 32 << 24);

    ASSERT_TRUE(HVFileSystem::CopyFile(HVString(e2e::InstallWizardPath().c_str()),
                                       setup + u"Listenwell\\Sonora 32.exe", false));
    const CProductIdentity product(setup);
    EXPECT_EQ(product.GetVersionText(), u"1.0.0.0");
    EXPECT_EQ(product.GetVersionInteger(), 1 << 24);
}

TEST_F(CProductIdentityTest, LauncherAndFeaturesFromTheInstallDescription)
{
    const CProductIdentity standard(setup, u"  ");
    EXPECT_EQ(standard.GetLauncherName(), u"Sonora.exe");
    EXPECT_FALSE(standard.IsServerEdition());
    for (int32_t f : {24, 173, 176})
        EXPECT_TRUE(standard.HasFeature(f)) << f;
    EXPECT_FALSE(standard.HasFeature(104));

    const CProductIdentity server(setup, u"Sonora Dynamo.exe");
    EXPECT_TRUE(server.IsServerEdition());
    EXPECT_TRUE(server.HasFeature(104));

    const CProductIdentity distributor(setup, u"Sonora.exe", u"176");
    EXPECT_TRUE(distributor.HasFeature(176));
    EXPECT_FALSE(distributor.HasFeature(173));
    EXPECT_FALSE(distributor.HasFeature(24));
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
    Touch(setup + name);
    EXPECT_EQ(product.FindFile(name, install), setup + name);
    Touch(setup + u"Listenwell\\" + name);
    EXPECT_EQ(product.FindFile(name, install), setup + u"Listenwell\\" + name);
    Touch(setup + u"Listenwell\\Data\\" + name);
    EXPECT_EQ(product.FindFile(name, install), setup + u"Listenwell\\Data\\" + name);
    EXPECT_EQ(product.FindFile(name, HVString()), setup + u"Listenwell\\Data\\" + name);
    Touch(install + name);
    EXPECT_EQ(product.FindFile(name, install), install + name);
    Touch(install + u"Data\\" + name);
    EXPECT_EQ(product.FindFile(name, install), install + u"Data\\" + name);
    EXPECT_EQ(product.FindFile(u"", install), u"");
}

TEST_F(CProductIdentityTest, EarlierInstallationFromTheInstallationRecord)
{
    const HVString key = u"Software\\Halvard\\Corvale\\Installations\\Sonora 32";
    HVRegKey existing;
    if (existing.Open(HKEY_LOCAL_MACHINE, key))
        GTEST_SKIP() << "an installation record exists already";
    {
        HVRegKey record;
        ASSERT_TRUE(record.Create(HKEY_LOCAL_MACHINE, key));
        ASSERT_TRUE(record.SetString(u"Path", install + u"Sonora.exe"));
    }
    EXPECT_EQ(CProductIdentity(setup).GetEarlierInstallationFolder(), install);
    EXPECT_TRUE(e2e::RegDeleteKeyTreeAndEmptyParents(HKEY_LOCAL_MACHINE, key.w()));
}

// A stand-in for the running product: a top-level "LWFrame" window that closes on WM_CLOSE.
LRESULT CALLBACK FrameProc(HWND window, UINT message, WPARAM w, LPARAM l)
{
    if (message == WM_CLOSE) {
        ::DestroyWindow(window);
        return 0;
    }
    return ::DefWindowProcW(window, message, w, l);
}

TEST(CProductIdentityRunningTest, RunningCopyIsFoundAndAskedToClose)
{
    EXPECT_FALSE(CProductIdentity::IsRunning());
    EXPECT_FALSE(CProductIdentity::CloseRunningCopy());

    WNDCLASSW wc = {};
    wc.lpfnWndProc = FrameProc;
    wc.hInstance = ::GetModuleHandleW(nullptr);
    wc.lpszClassName = CProductIdentity::kMainWindowClass;
    ASSERT_NE(::RegisterClassW(&wc), 0);
    HWND frame = ::CreateWindowExW(0, CProductIdentity::kMainWindowClass, L"Sonora", WS_OVERLAPPEDWINDOW, 0, 0, 100,
                                   100, nullptr, nullptr, wc.hInstance, nullptr);
    ASSERT_NE(frame, nullptr);

    EXPECT_TRUE(CProductIdentity::IsRunning());
    EXPECT_EQ(CProductIdentity::GetMainWindow(), frame);
    EXPECT_TRUE(CProductIdentity::CloseRunningCopy());
    MSG msg;
    for (int i = 0; i < 100 && ::IsWindow(frame); ++i)
        while (::PeekMessageW(&msg, nullptr, 0, 0, PM_REMOVE))
            ::DispatchMessageW(&msg);
    EXPECT_FALSE(::IsWindow(frame));
    EXPECT_FALSE(CProductIdentity::IsRunning());
    ::UnregisterClassW(CProductIdentity::kMainWindowClass, wc.hInstance);
}
}

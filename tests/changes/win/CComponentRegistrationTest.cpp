#include "changes/win/CComponentRegistration.h"

#include "foundation/win/HVFileSystem.h"
#include "foundation/win/HVRegKey.h"

#include "TestPaths.h"

#include <gtest/gtest.h>

#include <functional>

namespace
{
TEST(CComponentRegistrationTest, FindsAndCallsDllRegisterServer)
{
    const HVString media(e2e::MediaFolder().c_str());
    const HVString folder(e2e::ScratchFolder(L"CComponentRegistration").c_str());
    const HVString shell = folder + u"HVShellExt.dll";
    const bool productKeyExisted = HVRegKey::KeyExists(HKEY_CURRENT_USER, u"Software\\Halvard\\Sonora 32");
    ASSERT_TRUE(HVFileSystem::CopyFile(media + u"Listenwell\\HVShellExt.dll", shell, false));
    ASSERT_TRUE(HVFileSystem::CopyFile(shell, folder + u"HVShellExt.exe", false));
    struct Case { HVString path; bool selfRegistering; bool registers; };
    for (const Case& c : {Case{shell, true, true}, Case{folder + u"HVShellExt.exe", true, false},
                          Case{media + u"System\\Check Version\\HVCodecSupport.dll", false, false},
                          Case{media + u"License.txt", false, false}, Case{folder + u"missing.dll", false, false}}) {
        EXPECT_EQ(CComponentRegistration::IsSelfRegistering(c.path), c.selfRegistering) << c.path.ToUtf8();
        EXPECT_EQ(CComponentRegistration::RegisterServer(c.path), c.registers) << c.path.ToUtf8();
    }
    // The sample component leaves its path behind when it is registered.
    HVRegKey marker;
    HVString registered;
    ASSERT_TRUE(marker.Open(HKEY_CURRENT_USER, u"Software\\Halvard\\Sonora 32\\Registered", KEY_READ | KEY_WRITE));
    EXPECT_TRUE(marker.QueryString(u"HVShellExt.dll", registered));
    EXPECT_EQ(registered, shell);
    marker.DeleteValue(u"HVShellExt.dll");
    marker.Close();
    HVRegKey halvard;
    if (!productKeyExisted && halvard.Open(HKEY_CURRENT_USER, u"Software\\Halvard", KEY_READ | KEY_WRITE))
        halvard.DeleteSubKeyTree(u"Sonora 32");
}

// The two helper routes, each leaving the sample component's marker and taking it away again.
TEST(CComponentRegistrationTest, PackageInstallerAndRegSvr32RegisterAndUnregister)
{
    const HVString media(e2e::MediaFolder().c_str());
    const HVString folder(e2e::ScratchFolder(L"CComponentRegistrationHelpers").c_str());
    const HVString dll = folder + u"With Blanks\\SampleShell.dll";
    ASSERT_TRUE(HVFileSystem::MakeDirectoryTree(folder + u"With Blanks\\"));
    ASSERT_TRUE(HVFileSystem::CopyFile(media + u"Listenwell\\Plugins\\System\\SampleShell.dll", dll, false));
    ASSERT_TRUE(HVFileSystem::CopyFile(media + u"Listenwell\\PackageInstaller.exe", folder + u"PackageInstaller.exe", false));
    const auto registered = [] {
        HVRegKey marker;
        HVString path;
        return marker.Open(HKEY_CURRENT_USER, u"Software\\Halvard\\Sonora 32\\Registered", KEY_READ) &&
                       marker.QueryString(u"SampleShell.dll", path)
                   ? path
                   : HVString();
    };
    const struct { const char* route; std::function<bool(bool unregister)> run; } routes[] = {
        {"PackageInstaller.exe",
         [&](bool unregister) { return CComponentRegistration::RegisterWithPackageInstaller(folder, dll, unregister); }},
        {"RegSvr32.exe",
         [&](bool unregister) { return CComponentRegistration::RegisterWithRegSvr32(dll, unregister ? u"/u" : u""); }},
    };
    for (const auto& r : routes) {
        EXPECT_TRUE(r.run(false)) << r.route;
        EXPECT_EQ(registered(), dll) << r.route;
        EXPECT_TRUE(r.run(true)) << r.route;
        EXPECT_EQ(registered(), HVString()) << r.route;
    }
    // No package installer in the folder: nothing to run, a failure.
    EXPECT_FALSE(CComponentRegistration::RegisterWithPackageInstaller(folder + u"With Blanks\\", dll, false));
}
}

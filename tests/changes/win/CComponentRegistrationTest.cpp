#include "changes/win/CComponentRegistration.h"

#include "foundation/win/HVFileSystem.h"

#include "FreshMachineTest.h"
#include "TestPaths.h"
#include "TestRegistry.h"

#include <gtest/gtest.h>

#include <functional>

namespace
{
// The sample component's marker of its registration starts and ends as a fresh machine has it.
using CComponentRegistrationTest = e2e::FreshMachineTest;
const std::wstring kRegistered = L"Software\\Halvard\\Sonora 32\\Registered";

TEST_F(CComponentRegistrationTest, FindsAndCallsDllRegisterServer)
{
    const HVString media(e2e::MediaFolder().c_str());
    const HVString folder(e2e::ScratchFolder(L"CComponentRegistration").c_str());
    const HVString shell = folder + u"HVShellExt.dll";
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
    EXPECT_EQ(e2e::RegString(HKEY_CURRENT_USER, kRegistered, L"HVShellExt.dll"), std::wstring(shell.w()));
}

// The two helper routes, each leaving the sample component's marker and taking it away again.
TEST_F(CComponentRegistrationTest, PackageInstallerAndRegSvr32RegisterAndUnregister)
{
    const HVString media(e2e::MediaFolder().c_str());
    const HVString folder(e2e::ScratchFolder(L"CComponentRegistrationHelpers").c_str());
    const HVString dll = folder + u"With Blanks\\SampleShell.dll";
    ASSERT_TRUE(HVFileSystem::MakeDirectoryTree(folder + u"With Blanks\\"));
    ASSERT_TRUE(HVFileSystem::CopyFile(media + u"Listenwell\\Plugins\\System\\SampleShell.dll", dll, false));
    ASSERT_TRUE(HVFileSystem::CopyFile(media + u"Listenwell\\PackageInstaller.exe", folder + u"PackageInstaller.exe", false));
    const auto registered = [] { return e2e::RegString(HKEY_CURRENT_USER, kRegistered, L"SampleShell.dll").value_or(L""); };
    const struct { const char* route; std::function<bool(bool unregister)> run; } routes[] = {
        {"PackageInstaller.exe",
         [&](bool unregister) { return CComponentRegistration::RegisterWithPackageInstaller(folder, dll, unregister); }},
        {"RegSvr32.exe",
         [&](bool unregister) { return CComponentRegistration::RegisterWithRegSvr32(dll, unregister ? u"/u" : u""); }},
    };
    for (const auto& r : routes) {
        EXPECT_TRUE(r.run(false)) << r.route;
        EXPECT_EQ(registered(), dll.w()) << r.route;
        EXPECT_TRUE(r.run(true)) << r.route;
        EXPECT_EQ(registered(), L"") << r.route;
    }
    // No package installer in the folder: nothing to run, a failure.
    EXPECT_FALSE(CComponentRegistration::RegisterWithPackageInstaller(folder + u"With Blanks\\", dll, false));
}
}

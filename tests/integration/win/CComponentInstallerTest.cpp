#include "integration/win/CComponentInstaller.h"

#include "engine/win/CUninstaller.h"

#include "FolderTree.h"
#include "FreshMachineTest.h"
#include "InstallStepParts.h"
#include "ProductKeys.h"
#include "SetupRun.h"
#include "TestPaths.h"
#include "TestRegistry.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>

namespace
{
using e2e::kPropertiesKey;

// The plug-in step of the server edition in a program folder of the test's own, with the
// sample package installer also standing in for the server's control program (both log their
// command line to "PackageInstaller.log").
using CComponentInstallerTest = e2e::FreshMachineTest;

TEST_F(CComponentInstallerTest, PluginStepOfTheServerEdition)
{
    const std::wstring media = e2e::MediaFolder();
    const std::wstring folder = e2e::ScratchFolder(L"CComponentInstaller");
    const std::wstring install = folder + L"Program\\";
    for (const wchar_t* file : {L"PackageInstaller.exe", L"HVShellExt.dll", L"Plugins\\System\\SampleShell.dll"})
        ASSERT_TRUE(e2e::WriteFileBytes(install + file, e2e::ReadFileText(media + L"Listenwell\\" + file)));
    ASSERT_TRUE(e2e::WriteFileBytes(install + L"DynamoControl.exe", e2e::ReadFileText(media + L"Listenwell\\PackageInstaller.exe")));
    ASSERT_TRUE(e2e::CopyTree(media + L"Drivers\\", folder + L"Drivers\\"));
    // An older driver is on the machine.
    ASSERT_TRUE(e2e::RegSetString(HKEY_CURRENT_USER, kPropertiesKey, L"WDM Driver Installed Version", L"1.0.0.0"));

    e2e::InstallStepParts parts(folder.c_str(), install.c_str(), u"DynamoServer.exe");
    ASSERT_TRUE(parts.product.IsServerEdition());
    CComponentInstaller components(parts.context);

    const std::wstring log = install + L"PackageInstaller.log";
    const auto run = [&] {
        DeleteFileW(log.c_str());
        components.RunPluginStep(parts.progress);
        return e2e::ReadFileText(log);
    };
    const std::string first = run();
    const std::string version = e2e::Utf8(*e2e::RegString(HKEY_CURRENT_USER, kPropertiesKey, L"WDM Driver Installed Version"));
    EXPECT_TRUE(version == "2.4.0.12" || version == "2.3.1.7") << version;
    const std::vector<std::string> order = {"/RegDLL \"" + e2e::Utf8(install) + "HVShellExt.dll\"",
                                            "/RegDLL \"" + e2e::Utf8(install) + "Plugins\\System\\SampleShell.dll\"",
                                            "/RemoveWDMDriver \"" + e2e::Utf8(folder) + "Drivers\\WDM\\Win",
                                            "/InstallWDMDriver \"" + e2e::Utf8(folder) + "Drivers\\WDM\\Win",
                                            "DynamoControl.exe\" /Install"};
    size_t at = 0;
    for (const std::string& call : order) {
        at = first.find(call, at);
        EXPECT_NE(at, std::string::npos) << call << " in order in\n" << first;
    }
    EXPECT_EQ(parts.progress.statuses, (std::vector<HVString>{u"Installing Sonora Shell Integration", u"Installing plug-in 'SampleShell'",
                                                         u"Installing WDM driver", u"Installing Dynamo Server as system service"}));
    EXPECT_EQ(e2e::RegString(HKEY_CURRENT_USER, kPropertiesKey, L"System Plugin - SampleShell.dll"), L"installed");
    EXPECT_FALSE(e2e::RegValueExists(HKEY_CURRENT_USER, kPropertiesKey, L"InstallPackageError"));

    // Again: the driver of that version stays as it is.
    EXPECT_EQ(e2e::CountOf(run(), "WDMDriver"), 0);

    // What the step registered, the uninstaller takes out by the same helpers.
    CInstallRecord::Contents record;
    std::ranges::copy_if(parts.changes.Changes(), std::back_inserter(record.changes),
                         [](const InstallChange& c) { return c.kind == InstallChange::Kind::ModuleRegistered; });
    const CUninstallPlan plan = CUninstallPlan::Make(record, {.installFolder = install.c_str()}, true);
    ASSERT_FALSE(plan.Refused()) << plan.Reason().ToUtf8();
    // The helper's log beside itself goes with the uninstall: its copy in the temporary folder
    // tells what it was asked.
    const std::wstring lasting = e2e::Expand(L"%TEMP%\\Sample Package Installer.log");
    DeleteFileW(lasting.c_str());
    DeleteFileW(log.c_str());
    CUninstaller(install.c_str(), (install + L"HVMediaUninstall.exe").c_str()).Run(plan);
    EXPECT_FALSE(e2e::PathExists(log));
    const std::string removal = e2e::ReadFileText(lasting);
    for (const std::string& call : {"/UnRegDLL \"" + e2e::Utf8(install) + "HVShellExt.dll\"",
                                    "/RemoveWDMDriver \"" + e2e::Utf8(folder) + "Drivers\\WDM\\Win",
                                    std::string("DynamoControl.exe\" /Uninstall")})
        EXPECT_EQ(e2e::CountOf(removal, call), 1) << call << " in\n" << removal;

    // Without the package installer and the control program: marked, and the step still ends.
    for (const wchar_t* file : {L"PackageInstaller.exe", L"DynamoControl.exe"})
        ASSERT_TRUE(DeleteFileW((install + file).c_str()));
    EXPECT_EQ(run(), "");
    EXPECT_EQ(e2e::RegString(HKEY_CURRENT_USER, kPropertiesKey, L"InstallPackageError"), L"DynamoControl.exe");

    // With /NoDriver nothing is asked of the driver, even when none is recorded.
    parts.options.noDriver = true;
    e2e::RegDeleteValueIfPresent(HKEY_CURRENT_USER, kPropertiesKey, L"WDM Driver Installed Version");
    run();
    EXPECT_FALSE(e2e::RegValueExists(HKEY_CURRENT_USER, kPropertiesKey, L"WDM Driver Installed Version"));
}
}

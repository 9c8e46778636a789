// Packages named by the install description, installed by the plug-in step of an interactive
// install: the sample package's skin, plug-in and registry lines; "No" at the confirmation;
// a package fetched from an address, pinned or not. (Hostile packages, one per way out of their
// folder: CInstallPackageTest.)
#include "E2ESupport.h"

#include "foundation/win/HVFileSystem.h"
#include "foundation/win/HVSha256.h"

#include <gtest/gtest.h>

#include <windows.h>

namespace
{
using e2e::kPropertiesKey;
const std::wstring kDestination = L"C:\\Program Files\\Halvard\\Sonora\\";
const std::wstring kLoungeKey = L"Software\\Halvard\\Sample Lounge";
const std::wstring kPluginKey = L"SOFTWARE\\Halvard\\Listenwell\\Plugins\\Input\\Sample Tracker Input";

class PackagesTest : public e2e::FreshMachineTest
{
protected:
    void SetUp() override
    {
        FreshMachineTest::SetUp();
        e2e::DeleteTree(e2e::TempFolder() + L"Install Wizard Package\\");
    }

    // A setup folder whose description names one package, copied from `package`.
    std::wstring SetupWithPackage(const std::wstring& package)
    {
        const std::wstring setup = e2e::CopySampleSetup(L"Packages");
        const std::wstring name = package.substr(package.rfind(L'\\') + 1);
        if (setup.empty() || !e2e::MakeFolder(setup + L"Packages") ||
            !::CopyFileW(package.c_str(), (setup + L"Packages\\" + name).c_str(), FALSE) ||
            !e2e::SetDescriptionText(setup, "Installer/Packages", "Packages\\" + e2e::Utf8(name)))
            return {};
        return setup;
    }

    // A setup folder whose description names a package by its address, pinned to `sha256`.
    static std::wstring SetupWithAddress(const std::string& url, const std::string& sha256 = "")
    {
        const std::wstring setup = e2e::CopySampleSetup(L"Packages");
        return !setup.empty() && e2e::SetDescriptionText(setup, "Installer/Packages", url) &&
                       e2e::SetDescriptionText(setup, "Installer/Downloads",
                                               "<SamplePackage.lwp><SHA256>" + sha256 + "</SHA256></SamplePackage.lwp>")
                   ? setup
                   : std::wstring();
    }

    // An interactive express install that answers the package's one box with `button`.
    e2e::SetupRun Install(const std::wstring& setup, e2e::DialogRule rule)
    {
        e2e::WizardUser user({e2e::NextOn(L"Welcome"), e2e::NextOn(L"Setup Type"), e2e::NextOn(L"File Associations")});
        rule.times = 1;
        return e2e::RunSetup(setup, L"", {rule}, user.Poller());
    }

    static e2e::DialogRule Confirm(int button)
    {
        return {.title = L"Confirm Action",
                .text = L"Sample Lounge is about to install a component.  Do you wish to continue?",
                .button = button};
    }
};
}   // namespace

// Yes: its skin, its plug-in and its registry lines; No: none of them, and the product all the same.
TEST_F(PackagesTest, TheSamplePackageInstallsItsSkinPluginAndRegistryLinesOnlyWhenConfirmed)
{
    for (const bool yes : {true, false}) {
        SCOPED_TRACE(yes ? "Yes" : "No");
        SetUp();
        const std::wstring setup = SetupWithPackage(e2e::TestProgramFolder() + L"SamplePackage.lwp");
        ASSERT_FALSE(setup.empty());
        const e2e::SetupRun run = Install(setup, Confirm(yes ? IDYES : IDNO));
        ASSERT_TRUE(run.result.ExitedWith(0)) << run.Describe();
        ASSERT_EQ(run.result.dialogs.size(), 1u) << run.Describe();
        EXPECT_TRUE(e2e::FolderExists(kDestination));
        // main.xml says LWFS: a Lounge View skin, and INSTALLSKIN makes it a full skin.
        EXPECT_EQ(e2e::TreeMatches(kDestination + L"FullSkins\\Lounge View\\Sample Lounge\\", {L"main.xml"}), yes);
        EXPECT_EQ(e2e::FolderExists(kDestination + L"FullSkins\\"), yes);
        const std::wstring plugin = kDestination + L"Plugins\\Input\\in_sampletracker.dll";
        EXPECT_EQ(e2e::PathExists(plugin), yes);
        EXPECT_EQ(e2e::FolderExists(kDestination + L"Plugins\\Input\\"), yes);
        EXPECT_EQ(e2e::RegDword(HKEY_LOCAL_MACHINE, kPluginKey, L"IVersion"), yes ? std::optional<DWORD>(4) : std::nullopt);
        EXPECT_EQ(e2e::RegString(HKEY_LOCAL_MACHINE, kPluginKey, L"Path"), yes ? std::optional(plugin) : std::nullopt);
        EXPECT_EQ(e2e::RegKeyExists(HKEY_LOCAL_MACHINE, kPluginKey), yes);
        // The registry lines with their macros, under a root the action table doesn't have.
        EXPECT_EQ(e2e::RegString(HKEY_CURRENT_USER, kLoungeKey, L"Installed By"), yes ? std::optional<std::wstring>(L"Sonora 32") : std::nullopt);
        EXPECT_EQ(e2e::RegString(HKEY_CURRENT_USER, kLoungeKey, L"Folder"), yes ? std::optional(kDestination) : std::nullopt);
        if (yes) {   // a fresh machine doesn't reset the default user's hive: not looked at after No
            EXPECT_EQ(e2e::RegDword(HKEY_USERS, L".DEFAULT\\" + kLoungeKey, L"Seen"), 1u);
        }
        EXPECT_EQ(e2e::RegKeyExists(HKEY_CURRENT_USER, kLoungeKey), yes);
        EXPECT_FALSE(e2e::FolderExists(e2e::TempFolder() + L"Install Wizard Package\\"));
        EXPECT_FALSE(e2e::RegString(HKEY_CURRENT_USER, kPropertiesKey, L"InstallPackageError").has_value());
        EXPECT_EQ(run.Logged(L"Sample Lounge: not confirmed"), !yes);
        TearDown();
    }
}

TEST_F(PackagesTest, APackageAtAnAddressIsDownloadedFirstAndAFailedDownloadSaysWhy)
{
    std::string package;
    ASSERT_TRUE(e2e::ReadFileBytes(e2e::TestProgramFolder() + L"SamplePackage.lwp", package));
    e2e::LocalHttpServer server([&](const std::string& path) {
        return path == "/SamplePackage.lwp" ? e2e::HttpReply{.body = package}
                                            : e2e::HttpReply{.status = 404, .statusText = "Not Found"};
    });
    ASSERT_TRUE(server.Started());

    const HVFileHandle file = HVFileSystem::OpenFile((e2e::TestProgramFolder() + L"SamplePackage.lwp").c_str(), GENERIC_READ,
                                                     FILE_SHARE_READ, OPEN_EXISTING);
    const struct
    {
        std::string name, pin;
        std::wstring reason;  // "" when it installs
    } cases[] = {
        {"SamplePackage.lwp", HVSha256::OfFile(file.Get()).ToUtf8(), L""},
        {"SamplePackage.lwp", "", L"The downloaded file is damaged or not the expected one."},  // only https vouches
        {"Missing.lwp", "", L"Server returned: 404 Not Found"},
    };
    for (const auto& c : cases) {
        ASSERT_TRUE(e2e::ResetToFreshMachine());
        const std::string address = server.BaseUrl() + c.name;
        const e2e::SetupRun run = Install(SetupWithAddress(address, c.pin),
                                          c.reason.empty() ? Confirm(IDYES)
                                                           : e2e::DialogRule{.title = L"Information",
                                                                             .text = L"More Info: " + c.reason + L"\r\nURL: " + e2e::Wide(address),
                                                                             .match = e2e::TextMatch::Contains,
                                                                             .button = IDOK});
        ASSERT_TRUE(run.result.ExitedWith(0)) << run.Describe();
        ASSERT_EQ(run.result.dialogs.size(), 1u) << run.Describe();
        EXPECT_EQ(e2e::PathExists(kDestination + L"Plugins\\Input\\in_sampletracker.dll"), c.reason.empty()) << run.Describe();
        EXPECT_EQ(run.Logged(L"Install Wizard Download 1\\" + e2e::Wide(c.name)), c.reason.empty()) << run.Describe();
        EXPECT_EQ(e2e::RegString(HKEY_CURRENT_USER, kPropertiesKey, L"InstallPackageError"),
                  c.reason.empty() ? std::nullopt : std::optional(e2e::Wide(address)));
    }
}

// The release as it ships, on the release tree that make test builds (scripts/release-test.sh
// signs a copy of its setup folder and hands both over): the one download, checked against
// its package manifest and installed with the manifest's own silent switch, and the signed
// setup folder installed as it is.
#include "E2ESupport.h"
#include "ManifestValue.h"

#include "foundation/HVZipReader.h"
#include "foundation/win/HVFileSystem.h"
#include "foundation/win/HVSha256.h"
#include "foundation/win/HVZipUnpacker.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <string>

namespace
{
std::wstring FromEnvironment(const char* name)
{
    const char* value = std::getenv(name);
    return e2e::Wide(value ? value : "");
}

std::wstring Manifest(const std::string& manifest, const std::string& key) { return e2e::Wide(ManifestValue(manifest, key)); }

using Release = e2e::FreshMachineTest;
}  // namespace

TEST_F(Release, TheDownloadIsTheManifestsAndInstallsWithItsSilentSwitch)
{
    const std::wstring release = FromEnvironment("IW_RELEASE");
    const std::string manifest = e2e::ReadFileText(release + L"winget\\Halvard.Sonora.installer.yaml");
    ASSERT_FALSE(manifest.empty()) << e2e::Utf8(release);
    const std::wstring version = Manifest(manifest, "PackageVersion");
    const std::wstring archive = release + L"Sonora-" + version + L"-setup.zip";

    HVFileHandle file = HVFileSystem::OpenFile(archive.c_str(), GENERIC_READ, FILE_SHARE_READ, OPEN_EXISTING);
    ASSERT_TRUE(file) << e2e::Utf8(archive);
    EXPECT_TRUE(HVSha256::Matches(HVSha256::OfFile(file.Get()), Manifest(manifest, "InstallerSha256").c_str()));
    file = HVFileHandle();

    std::vector<uint8_t> bytes;
    HVZipReader reader;
    HVString error;
    const std::wstring setup = e2e::ScratchFolder(L"Download");
    ASSERT_TRUE(HVZipUnpacker::ReadArchive(archive.c_str(), bytes) && reader.Open(bytes.data(), bytes.size()) &&
                HVZipUnpacker::Unpack(reader, setup.c_str(), true, error))
        << error.ToUtf8() << reader.GetError().ToUtf8();
    ASSERT_TRUE(e2e::PathExists(setup + Manifest(manifest, "- RelativeFilePath")));

    const e2e::SetupRun run = e2e::RunSetup(setup, Manifest(manifest, "  Silent"));
    ASSERT_TRUE(run.result.ExitedWith(0)) << run.Describe();
    // Apps and Features shows what the manifest says it will.
    const std::wstring entry = L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Uninstall\\" +
                               Manifest(manifest, "  ProductCode");
    for (const char* name : {"DisplayName", "Publisher", "DisplayVersion"})
        EXPECT_EQ(e2e::RegString(HKEY_LOCAL_MACHINE, entry, e2e::Wide(name), HVRegView::Key64), Manifest(manifest, name))
            << name;
    EXPECT_EQ(version, Manifest(manifest, "  DisplayVersion"));
}

TEST_F(Release, TheSignedSetupInstalls)
{
    const std::wstring setup = FromEnvironment("IW_SIGNED_SETUP");
    const e2e::SetupRun run = e2e::RunSetup(setup, L"/Silent /SuppressMessages");
    ASSERT_TRUE(run.result.ExitedWith(0)) << run.Describe();
    // The uninstaller that was installed is the signed one.
    const std::string uninstaller = e2e::ReadFileText(setup + L"Listenwell\\HVMediaUninstall.exe");
    EXPECT_FALSE(uninstaller.empty());
    EXPECT_EQ(e2e::ReadFileText(e2e::DefaultDestination() + L"HVMediaUninstall.exe"), uninstaller);
}

// The package manager's manifest (packaging/winget/) promises deployment tools what the setup
// program's switches do and what its exit codes mean: checked here against the program's own
// command-line parser and exit codes, so that neither can change without the other.
#include "product/CCommandLineParser.h"
#include "product/InstallExitCode.h"

#include "ManifestValue.h"
#include "SourceFile.h"

#include <gtest/gtest.h>

#include <map>
#include <string>

namespace
{
// What each exit code means to a deployment; 0 and 1603 need no entry (success, and failure
// with nothing more to say).
const std::map<int, std::string> kResponses = {
    {kExitCancelled, "cancelledByUser"},       {kExitAnotherInstaller, "installInProgress"},
    {kExitNotSupported, "systemNotSupported"}, {kExitProductRunning, "packageInUse"},
    {kExitBrowserTooOld, "missingDependency"}, {kExitNoRights, "blockedByPolicy"},
    {kExitRestartNeeded, "rebootRequiredToFinish"},
};

const std::string kInstaller = "packaging/winget/Halvard.Sonora.installer.yaml";
}  // namespace

TEST(PackageManifest, ReturnCodesAreTheProgramsExitCodes)
{
    const std::string manifest = SourceFileText(kInstaller);
    std::map<int, std::string> listed;
    for (size_t at = manifest.find("- InstallerReturnCode: "); at != std::string::npos;
         at = manifest.find("- InstallerReturnCode: ", at + 1))
        listed[std::stoi(manifest.substr(at + 23))] = ManifestValue(manifest.substr(at), "  ReturnResponse");
    EXPECT_EQ(listed, kResponses);
    // A new exit code gets its meaning here (and so in the manifest) before this passes.
    for (const InstallExitCode code : kInstallExitCodes)
        EXPECT_TRUE(code == kExitInstalled || code == kExitFatalError || kResponses.contains(code)) << code;
}

TEST(PackageManifest, SwitchesDoWhatTheManifestSays)
{
    const std::string manifest = SourceFileText(kInstaller);
    const auto parse = [&](const char* key, const char* placeholder, const char16_t* path) {
        HVString line = HVString::FromUtf8(ManifestValue(manifest, std::string("  ") + key));
        if (placeholder)
            line.Replace(HVString::FromUtf8(placeholder), path);
        InstallOptions options;
        EXPECT_TRUE(CCommandLineParser::Parse(u"InstallWizard.exe " + line, options).empty()) << key;
        return options;
    };
    const InstallOptions silent = parse("Silent", nullptr, nullptr);
    EXPECT_TRUE(silent.silent && silent.suppressMessages);
    const InstallOptions progress = parse("SilentWithProgress", nullptr, nullptr);
    EXPECT_TRUE(progress.silent && !progress.suppressMessages);
    const InstallOptions log = parse("Log", "<LOGPATH>", u"C:\\Deploy Logs\\sonora.log");
    EXPECT_TRUE(log.log);
    EXPECT_EQ(log.logPath, u"C:\\Deploy Logs\\sonora.log");
    EXPECT_EQ(parse("InstallLocation", "<INSTALLPATH>", u"D:\\My Apps\\Sonora").destinationFolder, u"D:\\My Apps\\Sonora");
    // A program whose manifest asks for administrator rights raises itself when started without.
    EXPECT_NE(SourceFileText("src/install/win/res/InstallWizard.manifest").find("\"requireAdministrator\""), std::string::npos);
    EXPECT_EQ(ManifestValue(manifest, "ElevationRequirement"), "elevatesSelf");
    EXPECT_EQ(ManifestValue(manifest, "Scope"), "machine");
}

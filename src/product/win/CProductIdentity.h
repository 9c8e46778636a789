#pragma once

#include "foundation/CVersionInfo.h"
#include "foundation/HVString.h"

#include <windows.h>

#include <cstdint>
#include <vector>

// Who the installed product is. Every part of the installer that needs the product's name,
// version, registry keys, file names or features asks this class, so that they all agree:
//
//   display name          "Sonora" (the %s of every message that names the product)
//   major version         32
//   version               the version resource of the main program as shipped in the setup
//                         folder ("Listenwell\Sonora 32.exe"); "32.0.0.0" when that file is
//                         missing or carries no version. As one integer (the "Start Menu
//                         Version" value): CProductIdentityRules::VersionInteger.
//   product with version  "Sonora32": the stem of the product's ProgIDs and backup value
//                         names, which may not hold spaces
//   registry root         "Software\Halvard\Sonora 32" under HKEY_CURRENT_USER; its settings
//                         in "Properties", the installer's own values in "Installer"
//   installation record   subkey "Sonora 32" under "Software\Halvard\Corvale\Installations"
//   launcher              "/*/Product/LauncherName" of the install description, "Sonora.exe"
//                         when empty; the main program is "Sonora 32.exe"
//   Start Menu folder     "Sonora"
//   art                   "Data\Custom Art\" of the install folder first, then
//                         "Data\Default Art\" (that path is returned even when the file is
//                         in neither, so the caller always gets a place to look)
//   product files         (such as "FileAssociations.xml") the install folder's "Data\", the
//                         install folder, then the setup folder's "Listenwell\Data\",
//                         "Listenwell\" and the setup folder itself
//   features              24, 173 and 176, plus 104 for the server edition (a launcher name
//                         containing "Dynamo"); "/*/Product/Features" (";"-separated numbers)
//                         replaces the set (CProductIdentityRules::ParseFeatures)
//   support address       "https://www.halvard.com/support/sonora/": the one address of the
//                         uninstall entry's help, update and about links
//   running copy          a top-level window of class "LWFrame"; it is the main window, and
//                         closing it politely is posting it WM_CLOSE
class CProductIdentity
{
public:
    static constexpr const char16_t* kDisplayName = u"Sonora";
    static constexpr int32_t kMajorVersion = 32;
    static constexpr const char16_t* kFallbackVersion = u"32.0.0.0";
    static constexpr const char16_t* kProductWithVersion = u"Sonora32";
    static constexpr const char16_t* kRegistryRoot = u"Software\\Halvard\\Sonora 32";
    static constexpr const char16_t* kInstallationKeyName = u"Sonora 32";
    static constexpr const char16_t* kDefaultLauncherName = u"Sonora.exe";
    static constexpr const char16_t* kMainProgramName = u"Sonora 32.exe";
    static constexpr const char16_t* kProgramSourceFolder = u"Listenwell\\";
    static constexpr const char16_t* kStartMenuFolder = u"Sonora";
    static constexpr const char16_t* kCustomArtFolder = u"Data\\Custom Art\\";
    static constexpr const char16_t* kDefaultArtFolder = u"Data\\Default Art\\";
    static constexpr const wchar_t* kMainWindowClass = L"LWFrame";
    static constexpr const char16_t* kSupportAddress = u"https://www.halvard.com/support/sonora/";
    static constexpr const char16_t* kPublisher = u"Halvard, Inc.";

    // setupFolder: the folder the setup program runs from. launcherName and featuresText are
    // the install description's "/*/Product/LauncherName" and "/*/Product/Features" (empty
    // when absent). The version resource is read here, once.
    explicit CProductIdentity(const HVString& setupFolder, const HVString& launcherName = HVString(),
                              const HVString& featuresText = HVString());

    const HVString& GetDisplayName() const { return displayName_; }
    int32_t GetMajorVersion() const { return kMajorVersion; }
    const CVersionInfo& GetVersion() const { return version_; }
    HVString GetVersionText() const { return version_.GetText(); }
    int32_t GetVersionInteger() const;
    HVString GetProductWithVersion() const { return kProductWithVersion; }

    HKEY GetRegistryHive() const { return HKEY_CURRENT_USER; }
    HVString GetRegistryRoot() const { return kRegistryRoot; }
    HVString GetSettingsKey() const;
    HVString GetInstallerKey() const;
    HVString GetInstallationKeyName() const { return kInstallationKeyName; }
    // The folder of the earlier installation recorded under the installation record, or "".
    HVString GetEarlierInstallationFolder() const;

    const HVString& GetLauncherName() const { return launcherName_; }
    HVString GetMainProgramName() const { return kMainProgramName; }
    // The main program as shipped in the setup folder.
    HVString GetMainProgramSourcePath() const;
    HVString GetStartMenuFolderName() const { return kStartMenuFolder; }
    const HVString& GetSetupFolder() const { return setupFolder_; }

    bool IsServerEdition() const;
    bool HasFeature(int32_t feature) const;
    const std::vector<int32_t>& GetFeatures() const { return features_; }

    HVString FindArt(const HVString& installFolder, const HVString& fileName) const;
    // The first existing place of a product file, or "" when there is none.
    HVString FindFile(const HVString& fileName, const HVString& installFolder) const;

    static bool IsRunning();
    static HWND GetMainWindow();
    // Asks the running copy to close; false when there is none to ask.
    static bool CloseRunningCopy();

private:
    HVString setupFolder_;
    HVString displayName_ = kDisplayName;
    HVString launcherName_;
    std::vector<int32_t> features_;
    CVersionInfo version_;
};

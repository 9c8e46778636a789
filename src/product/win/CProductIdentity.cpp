#include "product/win/CProductIdentity.h"

#include "foundation/HVFileSystemPath.h"
#include "foundation/win/HVFileSystem.h"
#include "foundation/win/HVProductPaths.h"
#include "product/CProductIdentityRules.h"

CProductIdentity::CProductIdentity(const HVString& setupFolder, const HVString& launcherName,
                                   const HVString& featuresText)
    : setupFolder_(HVFileSystemPath::AddBackslash(setupFolder))
{
    launcherName_ = launcherName;
    launcherName_.Trim();
    if (launcherName_.IsEmpty())
        launcherName_ = kDefaultLauncherName;
    features_ = CProductIdentityRules::ParseFeatures(featuresText.view(), launcherName_.view());

    // A main program without a version (or none at all) must not make the product version
    // 0.0.0.0: every record and comparison would then call it older than anything.
    if (!version_.Read(GetMainProgramSourcePath()) || version_.IsZero())
        CVersionInfo::Parse(kFallbackVersion, version_);
}

int32_t CProductIdentity::GetVersionInteger() const { return CProductIdentityRules::VersionInteger(version_); }

HVString CProductIdentity::GetSettingsKey() const { return GetRegistryRoot() + u"\\Properties"; }

HVString CProductIdentity::GetInstallerKey() const { return GetRegistryRoot() + u"\\Installer"; }

HVString CProductIdentity::GetEarlierInstallationFolder() const
{
    return HVProductPaths::GetInstallationFolder(kInstallationKeyName);
}

HVString CProductIdentity::GetMainProgramSourcePath() const
{
    if (setupFolder_.IsEmpty())
        return HVString();
    return setupFolder_ + kProgramSourceFolder + kMainProgramName;
}

bool CProductIdentity::IsServerEdition() const { return CProductIdentityRules::IsServerEdition(launcherName_.view()); }

bool CProductIdentity::HasFeature(int32_t feature) const
{
    for (int32_t f : features_)
        if (f == feature)
            return true;
    return false;
}

HVString CProductIdentity::FindArt(const HVString& installFolder, const HVString& fileName) const
{
    const HVString folder = HVFileSystemPath::AddBackslash(installFolder);
    const HVString custom = folder + kCustomArtFolder + fileName;
    if (HVFileSystem::Exists(custom, false))
        return custom;
    return folder + kDefaultArtFolder + fileName;
}

HVString CProductIdentity::FindFile(const HVString& fileName, const HVString& installFolder) const
{
    if (fileName.IsEmpty())
        return HVString();
    std::vector<HVString> candidates;
    if (!installFolder.IsEmpty()) {
        const HVString folder = HVFileSystemPath::AddBackslash(installFolder);
        candidates.push_back(folder + u"Data\\" + fileName);
        candidates.push_back(folder + fileName);
    }
    if (!setupFolder_.IsEmpty()) {
        candidates.push_back(setupFolder_ + kProgramSourceFolder + u"Data\\" + fileName);
        candidates.push_back(setupFolder_ + kProgramSourceFolder + fileName);
        candidates.push_back(setupFolder_ + fileName);
    }
    for (const HVString& candidate : candidates)
        if (HVFileSystem::Exists(candidate, false))
            return candidate;
    return HVString();
}

HWND CProductIdentity::GetMainWindow() { return ::FindWindowW(kMainWindowClass, nullptr); }

bool CProductIdentity::IsRunning() { return GetMainWindow() != nullptr; }

bool CProductIdentity::CloseRunningCopy()
{
    HWND window = GetMainWindow();
    return window && ::PostMessageW(window, WM_CLOSE, 0, 0);
}

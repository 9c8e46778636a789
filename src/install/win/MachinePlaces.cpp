#include "install/win/MachinePlaces.h"

#include "changes/win/CInstallRun.h"
#include "foundation/HVFileSystemPath.h"
#include "foundation/HVXMLDocument.h"
#include "foundation/win/HVFileSystem.h"
#include "foundation/win/HVProductPaths.h"
#include "foundation/win/HVRegKey.h"
#include "install/CUninstallPlaces.h"
#include "integration/FileTypeModel.h"
#include "product/CProductRecordRules.h"
#include "product/win/CProductIdentity.h"

#include <shlobj.h>

namespace
{
HVString ShellFolder(int csidl)
{
    wchar_t path[MAX_PATH + 1] = {};
    if (FAILED(::SHGetFolderPathW(nullptr, csidl, nullptr, SHGFP_TYPE_CURRENT, path)) || !path[0])
        return HVString();
    return HVFileSystemPath::AddBackslash(HVString(path));
}

// The product's record under the installations key: the one whose program lies in this folder
// (a portable copy has one of its own, named after its folder).
HVString OwnInstallationKey(const HVString& installFolder, HVString& uninstallKey)
{
    for (bool portable : {false, true}) {
        const HVString name = CProductRecordRules::InstallationKeyName(CProductIdentity::kInstallationKeyName, portable,
                                                                       installFolder);
        HVRegKey record;
        HVString path;
        if (record.Open(HKEY_LOCAL_MACHINE, HVString(HVProductPaths::kInstallationsKey) + u"\\" + name) &&
            record.QueryString(u"Path", path) && CUninstallPlan::IsBelow(path, installFolder)) {
            record.QueryString(u"Uninstall Key", uninstallKey);
            return u"HKLM\\" + HVString(HVProductPaths::kInstallationsKey) + u"\\" + name;
        }
    }
    return HVString();
}

// What the association table in the install folder names as URL protocols; none when it is
// gone (a record naming one is then refused, which removes nothing).
std::vector<HVString> Protocols(const HVString& installFolder)
{
    HVXMLDocument document;
    FileTypeModel model;
    if (!document.Load(installFolder + u"FileAssociations.xml") ||
        model.Load(document, FileTypeModel::Overrides(), {}) != FileTypeModel::LoadResult::Loaded)
        return {};
    return model.Protocols();
}
}

CUninstallPlan::Places MachinePlaces(const HVString& installFolder, const std::vector<HVString>& userFolders)
{
    CUninstallPlan::Places places;
    places.installFolder = installFolder;
    // The shared folders come first: files there go by their reference counts.
    for (int csidl : {CSIDL_SYSTEM, CSIDL_SYSTEMX86})
        if (HVString folder = ShellFolder(csidl); !folder.IsEmpty())
            places.folders.push_back(folder);
    places.sharedFolderCount = places.folders.size();
    places.fontsFolder = ShellFolder(CSIDL_FONTS);
    for (int csidl : {CSIDL_FONTS, CSIDL_COMMON_PROGRAMS, CSIDL_COMMON_DESKTOPDIRECTORY})
        if (HVString folder = ShellFolder(csidl); !folder.IsEmpty())
            places.folders.push_back(folder);
    // The user folders of the shortcuts are the installing user's, which the record names; an
    // older record names none, and was written by the user who removes it.
    if (!userFolders.empty()) {
        for (const HVString& folder : userFolders)
            places.folders.push_back(HVFileSystemPath::AddBackslash(folder));
    } else {
        for (const HVString& folder : CInstallRun::UserShortcutFolders())
            places.folders.push_back(folder);
    }

    CUninstallPlaces::Product product{.registryRoot = CProductIdentity::kRegistryRoot,
                                      .productWithVersion = CProductIdentity::kProductWithVersion,
                                      .displayName = CProductIdentity::kDisplayName};
    HVString uninstallKey;
    if (const HVString installation = OwnInstallationKey(places.installFolder, uninstallKey); !installation.IsEmpty())
        product.recordKeys.push_back(installation);
    if (!uninstallKey.IsEmpty())
        product.recordKeys.push_back(u"HKLM\\SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Uninstall\\" + uninstallKey);
    std::vector<HVFileSystem::Entry> programs;
    HVFileSystem::EnumerateFolder(places.installFolder, programs, u"*.exe");
    for (const HVFileSystem::Entry& program : programs)
        product.programs.push_back(program.name);
    product.protocols = Protocols(places.installFolder);
    places.registry = CUninstallPlaces::Registry(product);
    places.ownKeys = CUninstallPlaces::OwnKeys(product);
    places.recordKeys = product.recordKeys;
    places.settingsKey = HVString(u"HKCU\\") + CProductIdentity::kRegistryRoot;
    // What the installer notes of the shortcuts it made: a later install makes them again.
    for (const char16_t* value : {u"Start Menu Version", u"Create Start Menu"})
        places.forgetValues.emplace_back(places.settingsKey + u"\\Installer", value);
    const HVString userData = HVProductPaths::GetUserDataFolder();
    if (!userData.IsEmpty())
        places.dataFolder = userData + CProductIdentity::kInstallationKeyName + u"\\";
    return places;
}


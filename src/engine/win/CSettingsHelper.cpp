#include "engine/win/CSettingsHelper.h"

#include "changes/CInstallChangeLog.h"
#include "changes/win/CComponentRegistration.h"
#include "changes/win/CRegistryWriter.h"
#include "foundation/HVLog.h"
#include "foundation/HVLogTimer.h"
#include "foundation/win/HVFileSystem.h"
#include "foundation/win/HVProductPaths.h"
#include "foundation/win/HVRegKey.h"
#include "product/HVInstallDescription.h"
#include "product/win/CProductIdentity.h"

namespace
{
constexpr int32_t kShellIntegrationSetting = 5;
}

CSettingsHelper::CSettingsHelper(const CInstallContext& context) : context_(context)
{
    machine_.musicFolder = HVProductPaths::GetMusicFolder();
    machine_.shellExtensionRegistered = IsShellExtensionRegistered();
}

bool CSettingsHelper::IsShellExtensionRegistered()
{
    return HVRegKey::KeyExists(HKEY_CLASSES_ROOT, kContextMenuHandlerKey);
}

HVString CSettingsHelper::ShellExtensionName()
{
    BOOL wow64 = FALSE;
    const bool windows64 = sizeof(void*) == 8 || (::IsWow64Process(::GetCurrentProcess(), &wow64) && wow64);
    return windows64 ? HVString(u"HVShellExt x64") : HVString(u"HVShellExt");
}

int32_t CSettingsHelper::GetInteger(int32_t id) const
{
    return CSettingsTable::IntegerValue(id, context_.description, machine_);
}

HVString CSettingsHelper::GetText(int32_t id) const { return CSettingsTable::TextValue(id, context_.description, machine_); }

bool CSettingsHelper::Set(int32_t id, int32_t value) { return Store(id, HVString::Format(u"%d", value), value); }

bool CSettingsHelper::Set(int32_t id, const HVString& value)
{
    int32_t number = 0;
    if (CSettingsTable::StoredAs(id) == CSettingsTable::Stored::Number && !HVInstallDescription::ParseInteger(value, number)) {
        HVLog::Write(HVLog::kError, "CSettingsHelper::Set", u"\"%s\" is not a number for setting %d", value, id);
        return false;
    }
    return Store(id, value, number);
}

bool CSettingsHelper::Store(int32_t id, const HVString& text, int32_t number)
{
    HVLogTimer timer("CSettingsHelper::Set");
    if (!CSettingsTable::IsKnown(id)) {
        HVLog::Write(HVLog::kError, "CSettingsHelper::Set", u"Unknown setting %d", id);
        timer.SetResult(0);
        return false;
    }
    CRegistryWriter properties(context_.changes, context_.product.GetRegistryHive(), context_.product.GetSettingsKey());
    const HVString name = CSettingsTable::SettingName(id);
    const bool stored = properties.Open() && (CSettingsTable::StoredAs(id) == CSettingsTable::Stored::Text
                                                  ? properties.SetString(name, text)
                                                  : properties.SetDWORD(name, static_cast<DWORD>(number)));
    if (stored && id == kShellIntegrationSetting)
        ApplyShellIntegration(number);
    timer.SetResult(stored ? 1 : 0);
    return stored;
}

void CSettingsHelper::ApplyShellIntegration(int32_t value)
{
    HVLog::Write(HVLog::kInfo, "CSettingsHelper::Set", u"SETTINGS_ENABLESHELLINTEGRATION (%i)", value);
    const bool enable = value != 0;
    HVLog::Write(HVLog::kInfo, "CSettingsHelper::Set", u"bShellIntegration == %i", enable ? 1 : 0);
    // Before the program files are copied (a first install) there is no package installer
    // yet: the plug-in step registers the extension once the files are in place.
    const HVString installer = context_.installFolder + u"PackageInstaller.exe";
    const bool present = HVFileSystem::Exists(installer, false);
    if (present && enable)
        context_.changes.NoteRegistered(context_.installFolder + kShellExtensionFile, InstallChange::kRegisteredByPackageInstaller);
    const bool ran = present && CComponentRegistration::RegisterWithPackageInstaller(
                                    context_.installFolder, context_.installFolder + kShellExtensionFile, !enable);
    HVLog::Write(HVLog::kInfo, "CSettingsHelper::Set", u"RunPackageInstaller == %i", ran ? 1 : 0);

    CRegistryWriter extensions(context_.changes, context_.product.GetRegistryHive(),
                               context_.product.GetRegistryRoot() + u"\\Shell Extensions");
    if (extensions.Open())
        extensions.SetDWORD(ShellExtensionName(), enable ? 1 : 0);
}

std::vector<HVString> CSettingsHelper::WriteDefaults()
{
    std::vector<HVString> written;
    HVRegKey existing;
    const bool hasSettings =
        existing.Open(context_.product.GetRegistryHive(), context_.product.GetSettingsKey(), KEY_READ);
    for (int32_t id = 0; id < CSettingsTable::kCount; ++id) {
        const HVString name = CSettingsTable::SettingName(id);
        if (hasSettings && existing.HasValue(name))
            continue;
        const bool stored = CSettingsTable::StoredAs(id) == CSettingsTable::Stored::Text ? Set(id, GetText(id))
                                                                                         : Set(id, GetInteger(id));
        if (stored)
            written.push_back(name);
    }
    return written;
}

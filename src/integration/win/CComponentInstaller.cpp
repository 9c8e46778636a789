#include "integration/win/CComponentInstaller.h"

#include "changes/CComponentRules.h"
#include "changes/CInstallChangeLog.h"
#include "changes/win/CComponentRegistration.h"
#include "changes/win/CDeferredOperations.h"
#include "changes/win/CRegistryWriter.h"
#include "engine/IInstallProgress.h"
#include "engine/win/CSettingsHelper.h"
#include "foundation/HVLog.h"
#include "foundation/HVSystemIdentity.h"
#include "foundation/HVTextFileReader.h"
#include "foundation/HVTranslator.h"
#include "foundation/win/HVFileSystem.h"
#include "foundation/win/HVRegKey.h"
#include "integration/win/CInstallPackage.h"
#include "integration/win/CInstallWAPlugin.h"
#include "product/InstallOptions.h"
#include "product/win/CProductIdentity.h"

bool CComponentInstaller::RegisterServer(const HVString& path)
{
    context_.changes.NoteRegistered(path, InstallChange::kRegisteredByExport);
    return CComponentRegistration::RegisterServer(path);
}

bool CComponentInstaller::InstallInputPlugin(const HVString& path)
{
    return CInstallWAPlugin(context_.changes, context_.installFolder, context_.owner, context_.options.silent)
        .Install(path, CInstallWAPlugin::Kind::Input);
}

void CComponentInstaller::RunPluginStep(IInstallProgress& progress)
{
    InstallShellIntegration(progress);
    InstallSystemPlugins(progress);
    InstallPluginsAndPackages(progress);
    InstallDriver(progress);
    InstallServerService(progress);
}

void CComponentInstaller::InstallPluginsAndPackages(IInstallProgress&)
{
    for (const HVString& location : CInstallPackage::InstallListed(context_))
        MarkPackageError(location);
}

void CComponentInstaller::InstallShellIntegration(IInstallProgress& progress)
{
    progress.SetStatusText(HVString::Format(HVTranslator::Translate(u"Installing %s Shell Integration").c_str(),
                                            context_.product.GetDisplayName()));
    const HVString extension = context_.installFolder + CSettingsHelper::kShellExtensionFile;
    if (!HVFileSystem::Exists(extension, false))
        return;
    // An extension still in use was left to the journal, which registers it at the next logon.
    if (!context_.deferred.ShellExtensionRegistered()) {
        HVLog::Write(HVLog::kInfo, "CComponentInstaller::InstallShellIntegration", u"%s waits for the next logon", extension);
        return;
    }
    context_.changes.NoteRegistered(extension, InstallChange::kRegisteredByPackageInstaller);
    if (!CComponentRegistration::RegisterWithPackageInstaller(context_.installFolder, extension, false)) {
        MarkPackageError(CSettingsHelper::kShellExtensionFile);
        return;
    }
    CRegistryWriter extensions(context_.changes, context_.product.GetRegistryHive(),
                               context_.product.GetRegistryRoot() + u"\\Shell Extensions");
    if (extensions.Open())
        extensions.SetDWORD(CSettingsHelper::ShellExtensionName(), 1);
}

void CComponentInstaller::InstallSystemPlugins(IInstallProgress& progress)
{
    const HVString folder = context_.installFolder + u"Plugins\\System\\";
    std::vector<HVFileSystem::Entry> plugins;
    if (!HVFileSystem::FolderExists(folder) || !HVFileSystem::EnumerateFolder(folder, plugins, u"*.dll"))
        return;
    progress.SetProgressRange(0, static_cast<int32_t>(plugins.size()));
    progress.SetProgressPosition(0);
    int32_t done = 0;
    for (const HVFileSystem::Entry& plugin : plugins) {
        if (plugin.isFolder)
            continue;
        const int32_t dot = plugin.name.ReverseFind(u'.');
        progress.SetStatusText(HVString::Format(HVTranslator::Translate(u"Installing plug-in '%s'").c_str(),
                                                dot > 0 ? plugin.name.Left(dot) : plugin.name));
        context_.changes.NoteRegistered(folder + plugin.name, InstallChange::kRegisteredByPackageInstaller);
        if (CComponentRegistration::RegisterWithPackageInstaller(context_.installFolder, folder + plugin.name, false)) {
            SetSetting(CComponentRules::SystemPluginMark(plugin.name), u"installed");
        } else
            MarkPackageError(plugin.name);
        progress.SetProgressPosition(++done);
    }
}

void CComponentInstaller::InstallDriver(IInstallProgress& progress)
{
    if (context_.options.noDriver) {
        HVLog::Write(HVLog::kInfo, "CComponentInstaller::InstallDriver", u"Left out (NoDriver)");
        return;
    }
    progress.SetStatusText(u"Installing WDM driver");
    const HVString description =
        context_.setupFolder + CComponentRules::DriverDescription(HVSystemIdentity::Current().GetCode());
    HVString text;
    if (!HVFileSystem::Exists(description, false) || !HVTextFileReader::Read(description, text)) {
        HVLog::Write(HVLog::kInfo, "CComponentInstaller::InstallDriver", u"No driver in this setup (%s)", description);
        return;
    }
    const HVString version = CComponentRules::DriverVersion(text);
    const HVString installed = GetSetting(kDriverVersionSetting);
    if (!CComponentRules::DriverNeedsInstall(version, installed)) {
        HVLog::Write(HVLog::kInfo, "CComponentInstaller::InstallDriver", u"Driver %s kept (setup has \"%s\")", installed,
                     version);
        return;
    }
    // The older driver goes first: two versions of one audio device confuse Windows.
    if (!installed.IsEmpty())
        CComponentRegistration::RunPackageInstaller(context_.installFolder, u"/RemoveWDMDriver", description);
    context_.changes.NoteRegistered(description, InstallChange::kRegisteredAsDriver);
    if (CComponentRegistration::RunPackageInstaller(context_.installFolder, u"/InstallWDMDriver", description)) {
        SetSetting(kDriverVersionSetting, version);
    } else
        MarkPackageError(u"HalvardWDMDriver.inf");
}

void CComponentInstaller::InstallServerService(IInstallProgress& progress)
{
    if (!context_.product.IsServerEdition())
        return;
    progress.SetStatusText(u"Installing Dynamo Server as system service");
    const HVString control = context_.installFolder + u"DynamoControl.exe";
    if (!HVFileSystem::Exists(control, false)) {
        MarkPackageError(u"DynamoControl.exe");
        return;
    }
    context_.changes.NoteRegistered(control, InstallChange::kRegisteredAsService);
    if (!CComponentRegistration::RunServiceControl(control, false))
        MarkPackageError(u"DynamoControl.exe");
}

void CComponentInstaller::MarkPackageError(const HVString& name)
{
    HVLog::Write(HVLog::kError, "CComponentInstaller::MarkPackageError", u"%s failed; the install goes on", name);
    SetSetting(u"InstallPackageError", name);
}

bool CComponentInstaller::SetSetting(const HVString& name, const HVString& value)
{
    CRegistryWriter settings(context_.changes, context_.product.GetRegistryHive(), context_.product.GetSettingsKey());
    return settings.Open() && settings.SetString(name, value);
}

HVString CComponentInstaller::GetSetting(const HVString& name) const
{
    HVRegKey settings;
    HVString value;
    if (settings.Open(context_.product.GetRegistryHive(), context_.product.GetSettingsKey(), KEY_READ))
        settings.QueryString(name, value);
    return value;
}

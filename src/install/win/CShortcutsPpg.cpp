#include "install/win/CShortcutsPpg.h"

#include "changes/win/CRegistryWriter.h"
#include "changes/win/CShortcutWriter.h"
#include "foundation/HVLog.h"
#include "foundation/HVSystemIdentity.h"
#include "foundation/win/HVFileSystem.h"
#include "foundation/win/HVProductPaths.h"
#include "foundation/win/HVRegKey.h"
#include "install/win/CInstallWizard.h"
#include "product/CProductIdentityRules.h"
#include "product/CWizardRules.h"

#include <vector>

namespace
{
constexpr const char16_t* kQuickLaunchFolder = u"Microsoft\\Internet Explorer\\Quick Launch\\";

int32_t StartMenuVersion(const CProductIdentity& product)
{
    HVRegKey key;
    DWORD version = 0;
    if (key.Open(product.GetRegistryHive(), product.GetInstallerKey()) && key.QueryDWORD(u"Start Menu Version", version))
        return static_cast<int32_t>(version);
    return CShortcutRules::kNoStartMenuVersion;
}

// A folder the shortcuts go into, made (and noted) when it is missing.
bool MakeFolder(CInstallChangeLog& changes, const HVString& folder)
{
    if (HVFileSystem::FolderExists(folder))
        return true;
    if (!HVFileSystem::MakeDirectoryTree(folder)) {
        HVLog::Write(HVLog::kWarning, "CShortcutsPpg::MakeFolder", u"Can't make %s", folder);
        return false;
    }
    changes.Note(InstallChange::Kind::FolderCreated, folder);
    return true;
}
}

bool CShortcutsPpg::CreateControls()
{
    HVPlacement text;
    HVPlacement box;
    box.gap = 8;
    quickLaunchBox_ = CShortcutRules::QuickLaunchOffered(HVSystemIdentity::Current().GetCode());
    return description_.Create(
               *this, T(u"Install Wizard is now ready to install shortcuts. Please select from the following options"),
               text) &&
           startMenu_.Create(*this, T(u"Create Start Menu shortcuts"), box) &&
           desktop_.Create(*this, T(u"Create a desktop shortcut"), box) &&
           (!quickLaunchBox_ || quickLaunch_.Create(*this, T(u"Create a Quick Launch shortcut"), box));
}

HVString CShortcutsPpg::Title() const { return T(u"Create Shortcuts"); }

HVString CShortcutsPpg::Subtitle() const { return T(u"Please select which shortcuts you would like to create."); }

bool CShortcutsPpg::SkipTest()
{
    return CWizardRules::SkipShortcuts(Options());
}

void CShortcutsPpg::Prepare()
{
    const CProductIdentity& product = Product();
    choice_ = CShortcutRules::Defaults(Options(), StartMenuVersion(product), product.GetVersionInteger(),
                                       HVSystemIdentity::Current().GetCode());
    HVLog::Write(HVLog::kInfo, "CShortcutsPpg::Prepare", u"Start menu %d, desktop %d, Quick Launch %d", choice_.startMenu,
                 choice_.desktop, choice_.quickLaunch);
}

void CShortcutsPpg::OnShowPage()
{
    CWizardPropertyPage::OnShowPage();
    startMenu_.SetChecked(choice_.startMenu);
    desktop_.SetChecked(choice_.desktop);
    if (quickLaunchBox_)
        quickLaunch_.SetChecked(choice_.quickLaunch);
}

bool CShortcutsPpg::NextPressed()
{
    choice_.startMenu = startMenu_.IsChecked();
    choice_.desktop = desktop_.IsChecked();
    choice_.quickLaunch = quickLaunchBox_ && quickLaunch_.IsChecked();
    Options().answers.shortcuts = InstallAnswers::Shortcuts{choice_.startMenu, choice_.desktop, choice_.quickLaunch};
    return LeaveCheck();
}

bool CShortcutsPpg::LeaveCheck()
{
    const HVString installFolder = HVFileSystem::NormalizeFolderPath(Options().destinationFolder);
    CShortcutWriter writer(InstallWizard().Changes(), installFolder);
    // A choice made on the page, or in an answer file in the user's place, is kept.
    if (Options().answers.shortcuts)
        SetInstallerValue(u"Create Start Menu", choice_.startMenu ? 1 : 0);
    if (choice_.startMenu)
        MakeStartMenu(writer, installFolder);
    const HVString icon = Product().FindArt(installFolder, u"application.ico");
    if (choice_.desktop)
        MakeProgramShortcut(writer, installFolder, HVProductPaths::GetDesktopFolder(), icon);
    const HVString quickLaunch = HVProductPaths::GetAppDataFolder() + kQuickLaunchFolder;
    if (choice_.quickLaunch && MakeFolder(InstallWizard().Changes(), quickLaunch))
        MakeProgramShortcut(writer, installFolder, quickLaunch, icon);
    // Every shortcut is optional: the install is done whatever happened here.
    return true;
}

void CShortcutsPpg::MakeStartMenu(CShortcutWriter& writer, const HVString& installFolder) const
{
    const CProductIdentity& product = Product();
    SetInstallerValue(u"Start Menu Version", static_cast<DWORD>(product.GetVersionInteger()));
    const HVString folder = HVProductPaths::GetStartMenuProgramsFolder() + product.GetStartMenuFolderName() + u"\\";
    std::vector<CShortcutWriter::Shortcut> shortcuts;
    for (const CShortcutRules::StartMenuEntry& entry : CShortcutRules::StartMenuEntries()) {
        if (entry.feature != 0 && !product.HasFeature(entry.feature))
            continue;
        const HVString target = installFolder + (entry.target ? HVString(entry.target) : product.GetLauncherName());
        if (!HVFileSystem::Exists(target, false)) {
            HVLog::Write(HVLog::kInfo, "CShortcutsPpg::MakeStartMenu", u"No %s: no shortcut", target);
            continue;
        }
        const HVString name = HVString::Format(T(entry.name).c_str(), product.GetDisplayName());
        shortcuts.push_back({folder + name + u".lnk", target, entry.arguments, name,
                             product.FindArt(installFolder, entry.icon), installFolder});
    }
    // No folder without a shortcut in it.
    if (shortcuts.empty() || !MakeFolder(InstallWizard().Changes(), folder))
        return;
    for (const CShortcutWriter::Shortcut& shortcut : shortcuts)
        writer.Write(shortcut);
}

void CShortcutsPpg::SetInstallerValue(const char16_t* name, DWORD value) const
{
    CRegistryWriter installer(InstallWizard().Changes(), Product().GetRegistryHive(), Product().GetInstallerKey());
    if (installer.Open())
        installer.SetDWORD(name, value);
}

void CShortcutsPpg::MakeProgramShortcut(CShortcutWriter& writer, const HVString& installFolder, const HVString& folder,
                                        const HVString& icon) const
{
    const HVString target = installFolder + Product().GetLauncherName();
    if (!HVFileSystem::Exists(target, false))
        return;
    const HVString& name = Product().GetDisplayName();
    writer.Write({folder + name + u".lnk", target, HVString(), name, icon, installFolder});
}

#include "install/CShortcutRules.h"

#include "product/CProductIdentityRules.h"

CShortcutRules::Choice CShortcutRules::Defaults(const InstallOptions& options, int32_t startMenuVersion,
                                                int32_t productVersion, int32_t windowsCode)
{
    Choice choice;
    if (const auto& answered = options.answers.shortcuts) {
        choice.startMenu = answered->startMenu;
        choice.desktop = answered->desktop;
        choice.quickLaunch = answered->quickLaunch && QuickLaunchOffered(windowsCode);
        return choice;
    }
    const bool fresh = !options.earlierInstallationFound || options.portable;
    choice.startMenu = (fresh || options.express) && startMenuVersion != productVersion;
    choice.desktop = fresh;
    choice.quickLaunch = fresh && QuickLaunchOffered(windowsCode);
    return choice;
}

bool CShortcutRules::QuickLaunchOffered(int32_t windowsCode)
{
    return windowsCode < 1008 || windowsCode > 1999;
}

const std::vector<CShortcutRules::StartMenuEntry>& CShortcutRules::StartMenuEntries()
{
    static const std::vector<StartMenuEntry> entries = {
        {u"%s", nullptr, u"", u"Application.ico", 0},
        {u"%s Hub Server", nullptr, u"/MediaServer", u"Server.ico", CProductIdentityRules::kFeatureServer},
        {u"Uninstall %s", u"HVMediaUninstall.exe", u"", u"Application.ico", 0},
        {u"%s Tag Editor", u"HVTagEditor.exe", u"", u"Application.ico", CProductIdentityRules::kFeatureToolShortcut},
        {u"%s Audio Converter", u"HVAudioConverter.exe", u"", u"Application.ico",
         CProductIdentityRules::kFeatureConverterShortcut},
    };
    return entries;
}

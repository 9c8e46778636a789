#include "install/CUninstallPlaces.h"

#include "integration/CRegistryActionTable.h"
#include "integration/CRegistryMacros.h"

namespace
{
constexpr const char16_t* kRoots[][2] = {
    {u"HKEY_CLASSES_ROOT", u"HKCR"}, {u"HKEY_CURRENT_USER", u"HKCU"}, {u"HKEY_LOCAL_MACHINE", u"HKLM"}};

void AddOnce(std::vector<HVString>& places, const HVString& place)
{
    for (const HVString& known : places)
        if (known.EqualsNoCase(place.view()))
            return;
    places.push_back(place);
}
}

std::vector<HVString> CUninstallPlaces::Registry(const Product& product)
{
    std::vector<HVString> places;
    // The action table's keys, as the install expands them.
    CRegistryMacros macros;
    macros.productName = product.displayName;
    macros.productWithVersion = product.productWithVersion;
    HVString root;
    for (const HVString& line : CRegistryActionTable::Lines(true)) {
        const int32_t bar = line.Find(u'|');
        if (bar == HVString::npos) {
            for (const auto& [name, shortName] : kRoots)
                if (line.EqualsNoCase(name))
                    root = shortName;
            continue;
        }
        const HVString key = line.Left(bar);
        const std::vector<HVString> launchers =
            key.Find(u"[LAUNCHERNAME]") == HVString::npos ? std::vector<HVString>{HVString()} : product.programs;
        for (const HVString& launcher : launchers) {
            macros.launcherName = launcher;
            AddOnce(places, root + u"\\" + macros.Expand(key));
        }
    }
    // The association table: extensions and their per-user choices, MIME types, protocols.
    for (const char16_t* hive : {u"HKCR\\.*", u"HKCR\\Mime\\Database\\Content Type\\",
                                 u"HKCU\\Software\\Microsoft\\Windows\\CurrentVersion\\Explorer\\FileExts\\.*"})
        AddOnce(places, hive);
    for (const HVString& protocol : product.protocols)
        AddOnce(places, u"HKCR\\" + protocol);
    // Default Programs.
    AddOnce(places, u"HKLM\\Software\\Clients\\Media\\" + product.displayName);
    AddOnce(places, u"HKLM\\Software\\RegisteredApplications");
    // The product's own keys and records, the plug-in records of the maker's player, the
    // journal's logon command, the carried-over start at logon, and the machine's tables of
    // shared files and fonts.
    for (const HVString& own : OwnKeys(product))
        AddOnce(places, own);
    for (const char16_t* shared : {u"HKLM\\Software\\Halvard\\Listenwell\\Plugins\\",
                                   u"HKCU\\SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\RunOnce",
                                   u"HKCU\\Software\\Microsoft\\Windows\\CurrentVersion\\Run",
                                   u"HKLM\\SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\SharedDLLs",
                                   u"HKLM\\SOFTWARE\\Microsoft\\Windows NT\\CurrentVersion\\Fonts"})
        AddOnce(places, shared);
    return places;
}

std::vector<HVString> CUninstallPlaces::OwnKeys(const Product& product)
{
    std::vector<HVString> own{u"HKLM\\" + product.registryRoot, u"HKCU\\" + product.registryRoot,
                              u"HKCR\\" + product.productWithVersion + u".*",
                              u"HKLM\\Software\\Clients\\Media\\" + product.displayName};
    for (const HVString& program : product.programs)
        own.push_back(u"HKCR\\Applications\\" + program);
    own.insert(own.end(), product.recordKeys.begin(), product.recordKeys.end());
    return own;
}

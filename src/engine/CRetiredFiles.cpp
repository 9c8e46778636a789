#include "engine/CRetiredFiles.h"

namespace
{
bool IsItemSeparator(char16_t ch) { return ch == u'\\' || ch == u'/'; }

// An item that names a place outside the install folder: rooted, with a drive, or climbing
// up with "..". Obsolete-file lists come from the setup medium, so a bad one must not reach
// files of other programs.
bool LeavesInstallFolder(std::u16string_view item)
{
    if (IsItemSeparator(item.front()) || item.find(u':') != std::u16string_view::npos)
        return true;
    size_t start = 0;
    while (start <= item.size()) {
        size_t end = start;
        while (end < item.size() && !IsItemSeparator(item[end]))
            ++end;
        HVString part(item.substr(start, end - start));
        if (part.Trim() == u"..")
            return true;
        start = end + 1;
    }
    return false;
}
}

const std::vector<HVString>& CRetiredFiles::Entries()
{
    static const std::vector<HVString> entries = {
        // Plug-ins whose work moved into the player itself.
        u"Plugins\\HVRemoteBridge.dll",
        u"Plugins\\HVPodcastFetch.dll",
        u"Plugins\\HVLegacyRipper.dll",
        u"Plugins\\HVTagSync.dll",
        u"Plugins\\HVPartyMode.dll",
        u"Plugins\\HVAudioScrobble.dll",
        // Visualisations replaced by the current set.
        u"Visualizations\\HVSpectrumClassic.dll",
        u"Visualizations\\HVWaveTunnel.dll",
        u"Visualizations\\HVStarfield.dll",
        u"Visualizations\\HVOscilloscope.dll",
        u"Visualizations\\HVColorBloom.dll",
        // Backgrounds of the former DLNA server pages.
        u"Data\\Default Art\\Sonora DLNA Background 1.jpg",
        u"Data\\Default Art\\Sonora DLNA Background 2.jpg",
        u"Data\\Default Art\\Sonora DLNA Background 3.jpg",
        u"Data\\Default Art\\Sonora DLNA Background 4.jpg",
        u"HVSonoraWeb.dll",
        u"HVTVControl.dll",
        u"Plugins\\ForceVideoType.ax",
        // Folders of former features, removed with their contents.
        u"Web\\",
        u"Skins\\Lounge View\\Theme\\",
        u"Plugins\\ffdshow\\",
        u"Plugins\\LAVFilters\\",
    };
    return entries;
}

const std::vector<HVString>& CRetiredFiles::AlwaysCleanedFolders()
{
    static const std::vector<HVString> folders = {u"Data\\Saved Views\\", u"Skins\\Lounge View\\Themes\\Default\\"};
    return folders;
}

const std::vector<HVString>& CRetiredFiles::DataFolders()
{
    static const std::vector<HVString> folders = {u"Data\\", u"Skins\\", u"Stores\\"};
    return folders;
}

std::vector<HVString> CRetiredFiles::SplitObsoleteFiles(const HVString& text, std::vector<HVString>* refused)
{
    std::vector<HVString> items;
    int32_t start = 0;
    while (start <= text.GetLength()) {
        int32_t end = text.Find(u';', start);
        if (end < 0)
            end = text.GetLength();
        HVString item = text.Mid(start, end - start);
        item.Trim();
        if (!item.IsEmpty()) {
            if (!LeavesInstallFolder(item.view()))
                items.push_back(std::move(item));
            else if (refused)
                refused->push_back(std::move(item));
        }
        start = end + 1;
    }
    return items;
}

#include "integration/CRegistryActionTable.h"

#include "foundation/HVTranslator.h"

#include <iterator>

namespace
{
struct ActionRow
{
    const char16_t* text;    // a whole line, or the key-and-name part of a translated one
    const char16_t* action;  // English AutoPlay action text, translated at build time
    bool launcherOnly;
};

// clang-format off
const ActionRow kActionRows[] = {
    {u"HKEY_CLASSES_ROOT", nullptr, false},
    {u"[PRODUCTWITHVERSION].File|Default|[PRODUCTNAME] file|STRING|MODIFY", nullptr, false},  // 1
    {u"[PRODUCTWITHVERSION].File\\shell|Default|Play|STRING|MODIFY", nullptr, false},  // 2
    {u"[PRODUCTWITHVERSION].File\\shell\\open\\command|Default|\"[LAUNCHERPATH]\" /Play \"%L\"|STRING|MODIFY", nullptr, false},  // 3
    {u"[PRODUCTWITHVERSION].File\\shell\\Play|Default|&Play in [PRODUCTNAME]|STRING|MODIFY", nullptr, false},  // 4
    {u"[PRODUCTWITHVERSION].File\\shell\\Play\\command|Default|\"[LAUNCHERPATH]\" /Play \"%L\"|STRING|MODIFY", nullptr, false},  // 5
    {u"[PRODUCTWITHVERSION].File\\DefaultIcon|Default|\"[CUSTOMART]fileimage.ico\"|STRING|MODIFY", nullptr, false},  // 6
    {u"Applications\\[LAUNCHERNAME]|Default|[PRODUCTNAME] file|STRING|MODIFY", nullptr, true},  // 7
    {u"Applications\\[LAUNCHERNAME]\\shell|Default|Play|STRING|MODIFY", nullptr, true},  // 8
    {u"Applications\\[LAUNCHERNAME]\\shell\\open\\command|Default|\"[LAUNCHERPATH]\" /Play \"%L\"|STRING|MODIFY", nullptr, true},  // 9
    {u"Applications\\[LAUNCHERNAME]\\shell\\Play|Default|&Play in [PRODUCTNAME]|STRING|MODIFY", nullptr, true},  // 10
    {u"Applications\\[LAUNCHERNAME]\\shell\\Play\\command|Default|\"[LAUNCHERPATH]\" /Play \"%L\"|STRING|MODIFY", nullptr, true},  // 11
    {u"[PRODUCTWITHVERSION].Pack|Default|[PRODUCTWITHVERSION].Pack|STRING|MODIFY", nullptr, false},  // 12
    {u"[PRODUCTWITHVERSION].Pack|BrowserFlags|8|DWORD|MODIFY", nullptr, false},  // 13
    {u"[PRODUCTWITHVERSION].Pack|EditFlags|65536|DWORD|MODIFY", nullptr, false},  // 14
    {u"[PRODUCTWITHVERSION].Pack|Content Type|application/x-listenwell-lwp|STRING|MODIFY", nullptr, false},  // 15
    {u"[PRODUCTWITHVERSION].Pack\\shell\\open\\command|Default|\"[INSTALLDIR]PackageInstaller.exe\" /Install \"%L\"|STRING|MODIFY", nullptr, false},  // 16
    {u"[PRODUCTWITHVERSION].Pack\\DefaultIcon|Default|\"[INSTALLDIR]PackageInstaller.exe\",1|STRING|MODIFY", nullptr, false},  // 17
    {u"[PRODUCTWITHVERSION].Playlist|Default|[PRODUCTWITHVERSION].Playlist|STRING|MODIFY", nullptr, false},  // 18
    {u"[PRODUCTWITHVERSION].Playlist|BrowserFlags|8|DWORD|MODIFY", nullptr, false},  // 19
    {u"[PRODUCTWITHVERSION].Playlist|EditFlags|65536|DWORD|MODIFY", nullptr, false},  // 20
    {u"[PRODUCTWITHVERSION].Playlist|Content Type|application/x-listenwell-mpl|STRING|MODIFY", nullptr, false},  // 21
    {u"[PRODUCTWITHVERSION].Playlist\\shell\\open\\command|Default|\"[LAUNCHERPATH]\" /Play \"%L\"|STRING|MODIFY", nullptr, false},  // 22
    {u"[PRODUCTWITHVERSION].Playlist\\DefaultIcon|Default|\"[CUSTOMART]fileimage.ico\"|STRING|MODIFY", nullptr, false},  // 23
    {u"[PRODUCTWITHVERSION].Subscribe|Default|[PRODUCTWITHVERSION].Subscribe|STRING|MODIFY", nullptr, false},  // 24
    {u"[PRODUCTWITHVERSION].Subscribe|BrowserFlags|8|DWORD|MODIFY", nullptr, false},  // 25
    {u"[PRODUCTWITHVERSION].Subscribe|EditFlags|65536|DWORD|MODIFY", nullptr, false},  // 26
    {u"[PRODUCTWITHVERSION].Subscribe\\shell\\open\\command|Default|\"[LAUNCHERPATH]\" /Subscribe \"%L\"|STRING|MODIFY", nullptr, false},  // 27
    {u"[PRODUCTWITHVERSION].Subscribe\\DefaultIcon|Default|\"[CUSTOMART]fileimage.ico\"|STRING|MODIFY", nullptr, false},  // 28
    {u"[PRODUCTWITHVERSION].Mime|Default|[PRODUCTWITHVERSION].Mime|STRING|MODIFY", nullptr, false},  // 29
    {u"[PRODUCTWITHVERSION].Mime|BrowserFlags|8|DWORD|MODIFY", nullptr, false},  // 30
    {u"[PRODUCTWITHVERSION].Mime|EditFlags|65536|DWORD|MODIFY", nullptr, false},  // 31
    {u"[PRODUCTWITHVERSION].Mime\\shell\\open\\command|Default|\"[LAUNCHERPATH]\" /Mime \"%L\"|STRING|MODIFY", nullptr, false},  // 32
    {u"[PRODUCTWITHVERSION].Mime\\DefaultIcon|Default|\"[CUSTOMART]fileimage.ico\"|STRING|MODIFY", nullptr, false},  // 33
    {u"MIME\\Database\\Content Type\\application/podcast+xml|Extension|.podcast|STRING|MODIFY", nullptr, false},  // 34
    {u"MIME\\Database\\Content Type\\application/rss+xml|Extension|.rss|STRING|MODIFY", nullptr, false},  // 35
    {u".lwp|Default|[PRODUCTWITHVERSION].Pack|STRING|MODIFY", nullptr, false},  // 36
    {u".mpl|Default|[PRODUCTWITHVERSION].Playlist|STRING|MODIFY", nullptr, false},  // 37
    {u".lws|Default|[PRODUCTWITHVERSION].Pack|STRING|MODIFY", nullptr, false},  // 38
    {u"Mime\\Database\\Content Type\\application/x-listenwell-lwp|Extension|.lwp|STRING|MODIFY", nullptr, false},  // 39
    {u"Mime\\Database\\Content Type\\application/x-listenwell-mpl|Extension|.mpl|STRING|MODIFY", nullptr, false},  // 40
    {u"Mime\\Database\\Content Type\\application/x-listenwell-lwa|Extension|.lwa|STRING|MODIFY", nullptr, false},  // 41
    {u"HKEY_CURRENT_USER", nullptr, false},
    {u"Software\\Netscape\\Netscape Navigator\\User Trusted External Applications|[LAUNCHERPATH]|Yes|STRING|MODIFY", nullptr, false},  // 42
    {u"HKEY_LOCAL_MACHINE", nullptr, false},
    {u"[AUTOPLAYKEY]CancelAutoplay\\CLSID|21369263-6C67-4a4d-9202-B34D2A5CBC85||STRING|MODIFY", nullptr, false},  // 43
    {u"[AUTOPLAYKEY]EventHandlers\\MTPMediaPlayerArrival|HVMTPHandler||STRING|MODIFY", nullptr, false},  // 44
    {u"[AUTOPLAYKEY]Handlers\\HVMTPHandler|Action|", u"Synchronize media files to this device", false},  // 45
    {u"[AUTOPLAYKEY]Handlers\\HVMTPHandler|DefaultIcon|\"[CUSTOMART]fileimage.ico\"|STRING|MODIFY", nullptr, false},  // 46
    {u"[AUTOPLAYKEY]Handlers\\HVMTPHandler|ProgID|Shell.HWEventHandlerShellExecute|STRING|MODIFY", nullptr, false},  // 47
    {u"[AUTOPLAYKEY]Handlers\\HVMTPHandler|InvokeVerb|Start|STRING|MODIFY", nullptr, false},  // 48
    {u"[AUTOPLAYKEY]Handlers\\HVMTPHandler|Provider|[PRODUCTNAME]|STRING|MODIFY", nullptr, false},  // 49
    {u"[AUTOPLAYKEY]Handlers\\HVMTPHandler|InitCmdLine|\"[EXEPATH]\"|STRING|MODIFY", nullptr, false},  // 50
    {u"[AUTOPLAYKEY]EventHandlers\\HandleCDBurningOnArrival|HVBurnCDOnArrival||STRING|MODIFY", nullptr, false},  // 51
    {u"[AUTOPLAYKEY]Handlers\\HVBurnCDOnArrival|Action|", u"Burn a CD or DVD", false},  // 52
    {u"[AUTOPLAYKEY]Handlers\\HVBurnCDOnArrival|DefaultIcon|\"[CUSTOMART]fileimage.ico\"|STRING|MODIFY", nullptr, false},  // 53
    {u"[AUTOPLAYKEY]Handlers\\HVBurnCDOnArrival|InvokeProgID|[PRODUCTWITHVERSION].BurnCD|STRING|MODIFY", nullptr, false},  // 54
    {u"[AUTOPLAYKEY]Handlers\\HVBurnCDOnArrival|InvokeVerb|Burn|STRING|MODIFY", nullptr, false},  // 55
    {u"[AUTOPLAYKEY]Handlers\\HVBurnCDOnArrival|Provider|[PRODUCTNAME]|STRING|MODIFY", nullptr, false},  // 56
    {u"[AUTOPLAYKEY]EventHandlers\\PlayCDAudioOnArrival|HVCDAudioOnArrival||STRING|MODIFY", nullptr, false},  // 57
    {u"[AUTOPLAYKEY]Handlers\\HVCDAudioOnArrival|Action|", u"Play an audio CD", false},  // 58
    {u"[AUTOPLAYKEY]Handlers\\HVCDAudioOnArrival|DefaultIcon|\"[CUSTOMART]fileimage.ico\"|STRING|MODIFY", nullptr, false},  // 59
    {u"[AUTOPLAYKEY]Handlers\\HVCDAudioOnArrival|InvokeProgID|[PRODUCTWITHVERSION].PlayAudioCD|STRING|MODIFY", nullptr, false},  // 60
    {u"[AUTOPLAYKEY]Handlers\\HVCDAudioOnArrival|InvokeVerb|Play|STRING|MODIFY", nullptr, false},  // 61
    {u"[AUTOPLAYKEY]Handlers\\HVCDAudioOnArrival|Provider|[PRODUCTNAME]|STRING|MODIFY", nullptr, false},  // 62
    {u"[AUTOPLAYKEY]EventHandlers\\PlayCDAudioOnArrival|HVRipCDOnArrival||STRING|MODIFY", nullptr, false},  // 63
    {u"[AUTOPLAYKEY]Handlers\\HVRipCDOnArrival|Action|", u"Rip an audio CD", false},  // 64
    {u"[AUTOPLAYKEY]Handlers\\HVRipCDOnArrival|DefaultIcon|\"[CUSTOMART]fileimage.ico\"|STRING|MODIFY", nullptr, false},  // 65
    {u"[AUTOPLAYKEY]Handlers\\HVRipCDOnArrival|InvokeProgID|[PRODUCTWITHVERSION].Rip|STRING|MODIFY", nullptr, false},  // 66
    {u"[AUTOPLAYKEY]Handlers\\HVRipCDOnArrival|InvokeVerb|Start|STRING|MODIFY", nullptr, false},  // 67
    {u"[AUTOPLAYKEY]Handlers\\HVRipCDOnArrival|Provider|[PRODUCTNAME]|STRING|MODIFY", nullptr, false},  // 68
    {u"[AUTOPLAYKEY]EventHandlers\\PlayDVDMovieOnArrival|HVPlayDVDOnArrival||STRING|MODIFY", nullptr, false},  // 69
    {u"[AUTOPLAYKEY]Handlers\\HVPlayDVDOnArrival|Action|", u"Play DVD Video", false},  // 70
    {u"[AUTOPLAYKEY]Handlers\\HVPlayDVDOnArrival|DefaultIcon|\"[CUSTOMART]fileimage.ico\"|STRING|MODIFY", nullptr, false},  // 71
    {u"[AUTOPLAYKEY]Handlers\\HVPlayDVDOnArrival|InvokeProgID|[PRODUCTWITHVERSION].PlayDVDVideo|STRING|MODIFY", nullptr, false},  // 72
    {u"[AUTOPLAYKEY]Handlers\\HVPlayDVDOnArrival|InvokeVerb|Play|STRING|MODIFY", nullptr, false},  // 73
    {u"[AUTOPLAYKEY]Handlers\\HVPlayDVDOnArrival|Provider|[PRODUCTNAME]|STRING|MODIFY", nullptr, false},  // 74
    {u"[AUTOPLAYKEY]EventHandlers\\PlayBluRayOnArrival|HVPlayBlurayOnArrival||STRING|MODIFY", nullptr, false},  // 75
    {u"[AUTOPLAYKEY]Handlers\\HVPlayBlurayOnArrival|Action|", u"Play Blu-ray", false},  // 76
    {u"[AUTOPLAYKEY]Handlers\\HVPlayBlurayOnArrival|DefaultIcon|\"[CUSTOMART]fileimage.ico\"|STRING|MODIFY", nullptr, false},  // 77
    {u"[AUTOPLAYKEY]Handlers\\HVPlayBlurayOnArrival|InvokeProgID|[PRODUCTWITHVERSION].PlayBluray|STRING|MODIFY", nullptr, false},  // 78
    {u"[AUTOPLAYKEY]Handlers\\HVPlayBlurayOnArrival|InvokeVerb|Play|STRING|MODIFY", nullptr, false},  // 79
    {u"[AUTOPLAYKEY]Handlers\\HVPlayBlurayOnArrival|Provider|[PRODUCTNAME]|STRING|MODIFY", nullptr, false},  // 80
    {u"[AUTOPLAYKEY]EventHandlers\\PlayMusicFilesOnArrival|HVPlayMediaOnArrival||STRING|MODIFY", nullptr, false},  // 81
    {u"[AUTOPLAYKEY]EventHandlers\\ShowPicturesOnArrival|HVPlayMediaOnArrival||STRING|MODIFY", nullptr, false},  // 82
    {u"[AUTOPLAYKEY]EventHandlers\\PlayVideoFilesOnArrival|HVPlayMediaOnArrival||STRING|MODIFY", nullptr, false},  // 83
    {u"[AUTOPLAYKEY]Handlers\\HVPlayMediaOnArrival|Action|", u"Play Media", false},  // 84
    {u"[AUTOPLAYKEY]Handlers\\HVPlayMediaOnArrival|DefaultIcon|\"[CUSTOMART]fileimage.ico\"|STRING|MODIFY", nullptr, false},  // 85
    {u"[AUTOPLAYKEY]Handlers\\HVPlayMediaOnArrival|InvokeProgID|[PRODUCTWITHVERSION].PlayMedia|STRING|MODIFY", nullptr, false},  // 86
    {u"[AUTOPLAYKEY]Handlers\\HVPlayMediaOnArrival|InvokeVerb|Play|STRING|MODIFY", nullptr, false},  // 87
    {u"[AUTOPLAYKEY]Handlers\\HVPlayMediaOnArrival|Provider|[PRODUCTNAME]|STRING|MODIFY", nullptr, false},  // 88
    {u"HKEY_CLASSES_ROOT", nullptr, false},
    {u"[PRODUCTWITHVERSION].BurnCD\\DefaultIcon|Default|\"[EXEPATH]\",1|STRING|MODIFY", nullptr, false},  // 89
    {u"[PRODUCTWITHVERSION].BurnCD\\shell\\Burn\\command|Default|\"[LAUNCHERPATH]\" /Burn \"%L\"|STRING|MODIFY", nullptr, false},  // 90
    {u"[PRODUCTWITHVERSION].Rip\\DefaultIcon|Default|\"[EXEPATH]\",1|STRING|MODIFY", nullptr, false},  // 91
    {u"[PRODUCTWITHVERSION].Rip\\shell\\Start\\command|Default|\"[LAUNCHERPATH]\" /Rip \"%L\"|STRING|MODIFY", nullptr, false},  // 92
    {u"[PRODUCTWITHVERSION].PlayAudioCD\\DefaultIcon|Default|\"[EXEPATH]\",1|STRING|MODIFY", nullptr, false},  // 93
    {u"[PRODUCTWITHVERSION].PlayAudioCD\\shell\\Play\\command|Default|\"[LAUNCHERPATH]\" /AudioCD \"%L\"|STRING|MODIFY", nullptr, false},  // 94
    {u"[PRODUCTWITHVERSION].PlayDVDVideo\\DefaultIcon|Default|\"[EXEPATH]\",1|STRING|MODIFY", nullptr, false},  // 95
    {u"[PRODUCTWITHVERSION].PlayDVDVideo\\shell\\Play\\command|Default|\"[LAUNCHERPATH]\" /DVDVideo \"%L\"|STRING|MODIFY", nullptr, false},  // 96
    {u"[PRODUCTWITHVERSION].PlayBluray\\DefaultIcon|Default|\"[EXEPATH]\",1|STRING|MODIFY", nullptr, false},  // 97
    {u"[PRODUCTWITHVERSION].PlayBluray\\shell\\Play\\command|Default|\"[LAUNCHERPATH]\" /Bluray \"%L\"|STRING|MODIFY", nullptr, false},  // 98
    {u"[PRODUCTWITHVERSION].Start\\DefaultIcon|Default|\"[EXEPATH]\",1|STRING|MODIFY", nullptr, false},  // 99
    {u"[PRODUCTWITHVERSION].Start\\shell\\Start\\command|Default|\"[LAUNCHERPATH]\" /Start|STRING|MODIFY", nullptr, false},  // 100
    {u"[PRODUCTWITHVERSION].PlayMedia\\DefaultIcon|Default|\"[EXEPATH]\",1|STRING|MODIFY", nullptr, false},  // 101
    {u"[PRODUCTWITHVERSION].PlayMedia\\shell\\Start\\command|Default|\"[LAUNCHERPATH]\" /Play \"%L\"|STRING|MODIFY", nullptr, false},  // 102
    {u"HKEY_CURRENT_USER", nullptr, false},
    {u"SOFTWARE\\Microsoft\\Keyboard\\Native Media Players\\[PRODUCTNAME]|AppName|[PRODUCTNAME]|STRING|MODIFY", nullptr, false},  // 103
    {u"SOFTWARE\\Microsoft\\Keyboard\\Native Media Players\\[PRODUCTNAME]|ExePath|[EXEPATH]|STRING|MODIFY", nullptr, false},  // 104
};
// clang-format on
}

std::vector<HVString> CRegistryActionTable::Lines(bool withLauncher)
{
    std::vector<HVString> lines;
    lines.reserve(std::size(kActionRows));
    for (const ActionRow& row : kActionRows) {
        if (row.launcherOnly && !withLauncher)
            continue;
        if (!row.action) {
            lines.emplace_back(row.text);
            continue;
        }
        HVString text = HVTranslator::Translate(row.action);
        if (text.IsEmpty())
            text = row.action;
        lines.push_back(HVString(row.text) + text + u"|STRING|MODIFY");
    }
    return lines;
}

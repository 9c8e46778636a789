#include "engine/CSettingsTable.h"

#include "product/HVInstallDescription.h"

namespace
{
using Stored = CSettingsTable::Stored;

struct SettingRow
{
    const char16_t* key;  // nullptr: can't be preset
    const char16_t* name;
    int32_t integerDefault;
    const char16_t* textDefault;
    Stored stored;
};

// Indexed by identifier. The music folder (0) and the shell integration state (5) are
// computed defaults and filled in from the machine.
constexpr SettingRow kSettingRows[CSettingsTable::kCount] = {
    {u"MEDIALOCATION", u"General - Music Location", 0, u"", Stored::Text},  // 0
    {u"MAKEDEFAULTPLAYER", u"General - Make Default Music Player", 1, u"", Stored::Number},  // 1
    {u"MINIMIZETOSYSTRAY", u"General - Minimize To System Tray", 0, u"", Stored::Number},  // 2
    {u"MINIME_ALWAYSONTOP", u"Minime - Always On Top", 0, u"", Stored::Number},  // 3
    {u"MINIME_INACTIVETRANSPARENT", u"General - Inactive Mini View Transparent", 1, u"", Stored::Number},  // 4
    {u"ENABLESHELLINTEGRATION", u"General - Enable Shell Integration", 0, u"", Stored::Number},  // 5
    {nullptr, u"General - Online Metadata Automatic Disc Lookup and Submit", 1, u"", Stored::Number},  // 6
    {nullptr, u"General - Online Metadata Automatic Cover Art Submit", 1, u"", Stored::Number},  // 7
    {nullptr, u"General - Online Metadata Automatic Ratings Submit", 0, u"", Stored::Number},  // 8
    {nullptr, u"General - Online Metadata Lookup Language", 0, u"en", Stored::Text},  // 9
    {u"START_MODE", u"Startup - Mode", 0, u"", Stored::Number},  // 10
    {u"START_LOCATION", u"Startup - Page", 7, u"", Stored::Number},  // 11
    {u"START_SHOWSPLASHSCREEN", u"Startup - Show Splash Screen", 1, u"", Stored::Number},  // 12
    {nullptr, u"Startup - Show Tree", 1, u"", Stored::Number},  // 13
    {nullptr, u"Startup - Show Action Window", 1, u"", Stored::Number},  // 14
    {u"START_PLAYBACKCURRENT", u"Startup - Start Playback", 0, u"", Stored::Number},  // 15
    {u"START_OPTIMIZEVOLUME", u"Startup - Optimize Volume", 1, u"", Stored::Number},  // 16
    {u"LIBCONVERSION_ENCODER", u"Library Server Conversion - Encoder", 3, u"", Stored::Number},  // 17
    {u"LIBCONVERSION_ENCODERQUALITY", u"Library Server Conversion - Quality", 0, u"", Stored::Number},  // 18
    {u"AUTOIMPORT_FILES", u"General - Automatically Import Files", 0, u"", Stored::Number},  // 19
    {u"UPDATETAGS", u"Tagging - Update Tags", 1, u"", Stored::Number},  // 20
    {nullptr, u"Tagging - Use Sidecar", 0, u"Video;Data", Stored::Text},  // 21
    {u"WINDOWS_STARTUP_RUN_MODE", u"General - Windows Startup Run Mode", 0, u"", Stored::Number},  // 22
    {nullptr, u"General - Jump On Play Mode Audio", 0, u"", Stored::Number},  // 23
    {u"JUMP_ON_PLAY_MODE_VIDEO", u"General - Jump On Play Mode Video", 3, u"", Stored::Number},  // 24
    {nullptr, u"General - Force Windowed Playback From External", 0, u"", Stored::Number},  // 25
    {u"DOUBLECLICKMOD", u"General - List Double Click Mode", 1, u"", Stored::Number},  // 26
    {u"PLAYBUTTONMODE", u"General - Play Button Mode", 0, u"", Stored::Number},  // 27
    {u"PREVIOUSBUTTONMODE", u"General - Previous Button Mode", 1, u"", Stored::Number},  // 28
    {u"SHOWSTOPBUTTON", u"General - Show Stop Button", 1, u"", Stored::Number},  // 29
    {u"REMOVEFILESFROMPLAYINGNOWASPLAYED", u"General - Remove Files From Playing Now As Played", 0, u"", Stored::Number},  // 30
    {u"STARTPLAYBACKONADD", u"General - Start Playback On Add", 1, u"", Stored::Number},  // 31
    {u"CLEARRECENTLYIMPORTEDONEXIT", u"General - Clear Recently Imported On Exit", 0, u"", Stored::Number},  // 32
    {u"CLEARPLAYINGNOWONEXIT", u"General - Clear Playing Now On Exit", 0, u"", Stored::Number},  // 33
    {nullptr, u"General - Show Playlist Groups As Collection", 0, u"", Stored::Number},  // 34
    {nullptr, u"General - Bookmark Mode", 0, u"", Stored::Number},  // 35
    {nullptr, u"General - Bookmark Auto Search", 0, u"", Stored::Number},  // 36
    {u"HOTKEY_MODE", u"General - Hot Key Mode", 0, u"", Stored::Number},  // 37
    {u"LIST_SHOWGRIDLINES", u"View - Show List Grid Lines", 1, u"", Stored::Number},  // 38
    {u"LIST_CHECKFORMISSING", u"View - List Check For Missing Files", 0, u"", Stored::Number},  // 39
    {u"LIST_AUTOSIZECOLUMNS", u"View - List Autosize Columns", 1, u"", Stored::Number},  // 40
    {u"LIST_LEFTMOUSELASSO", u"View - Left Mouse Lasso", 0, u"", Stored::Number},  // 41
    {u"LIST_TEXTLINES", u"View - List Lines", 0, u"", Stored::Number},  // 42
    {nullptr, u"View - Tool Tips", 1, u"", Stored::Number},  // 43
    {u"AUTOEXPANDTREE", u"View - Auto Expand Tree", 1, u"", Stored::Number},  // 44
    {u"AUTOSIZETREE", u"View - Auto Size Tree", 0, u"", Stored::Number},  // 45
    {u"SORTING_AUTOSAVELISTSORT", u"Sorting - Auto Save List Sorting", 1, u"", Stored::Number},  // 46
    {u"AUTOSIZETRUNCATELONG", u"View - Auto Size Truncate Long Values", 1, u"", Stored::Number},  // 47
    {u"MENUMRUCOUNT_RIGHTCLICK", u"View - Right Click MRU Count", 1, u"", Stored::Number},  // 48
    {u"RIP_AUTORIPMODE", u"Ripping - Auto Rip Mode", 1, u"", Stored::Number},  // 49
    {u"RIP_ANALYZEAUDIO", u"Ripping - Analyze Audio During Ripping", 1, u"", Stored::Number},  // 50
    {u"RIP_RETRIEVECOVERART", u"Ripping - Get Cover Art After Ripping", 1, u"", Stored::Number},  // 51
    {u"RIP_SHOWRECENTLYRIPPEDPLAYLIST", u"Ripping - Show Recently Ripped Playlist After Ripping", 1, u"", Stored::Number},  // 52
    {u"RIP_EJECT", u"Ripping - Eject After Ripping", 1, u"", Stored::Number},  // 53
    {u"RIP_PLAYSOUNDWHENCOMPLETE", u"Ripping - Play Sound After Ripping", 0, u"", Stored::Number},  // 54
    {u"RIP_SOUNDFILE", u"Ripping - Complete Sound File", 0, u"chord.wav", Stored::Text},  // 55
    {u"BURN_SOUNDFILE", u"Burning - Complete Sound File", 0, u"chord.wav", Stored::Text},  // 56
    {u"BURN_PLAYSOUND_AFTER_BURN", u"Burning - Play Sound After Burn", 0, u"", Stored::Number},  // 57
    {u"BURN_ISO_VERSION", u"Burning - ISO Version", 1, u"", Stored::Number},  // 58
    {u"BURN_USE_PLAYBACK_SETTINGS", u"Burning - Use Playback Settings", 0, u"", Stored::Number},  // 59
    {u"BURN_WRITER_NAME", u"Burning - Writer Name", 0, u"", Stored::Text},  // 60
    {u"BURN_EJECT", u"Burning - Eject After Burn", 1, u"", Stored::Number},  // 61
    {u"BURN_TEST_MODE", u"Burning - Test Mode", 0, u"", Stored::Number},  // 62
    {u"BURN_WRITE_CD_TEXT", u"Burning - Write CD Text", 1, u"", Stored::Number},  // 63
    {u"BURN_CLOSE_DISK", u"Burning - Close Disc", 0, u"", Stored::Number},  // 64
    {u"BURN_DATA_FILE_SYSTEM", u"Burning - Data File System", 0, u"", Stored::Number},  // 65
    {u"ASSOC_AUDIO_CD", u"File Associations - Play Audio CDs", 1, u"", Stored::Number},  // 66
    {u"LIBCONVERSION_ENABLE", u"Library Server Conversion - Convert audio files", 0, u"", Stored::Number},  // 67
    {nullptr, u"Ripping - Show TRDB Multi Match", 1, u"", Stored::Number},  // 68
    {nullptr, u"Ripping - Show TRDB Submission", 1, u"", Stored::Number},  // 69
    {nullptr, u"Ripping - Show TRDB Failure", 1, u"", Stored::Number},  // 70
    {nullptr, u"Ripping - Overwrite Existing", 0, u"", Stored::Number},  // 71
    {nullptr, u"Ripping - Cue File Support", 0, u"", Stored::Number},  // 72
    {nullptr, u"Ripping - Cue File Template", 0, u"", Stored::Text},  // 73
    {nullptr, u"Ripping - Auto Create Secure Mode Log File", 0, u"", Stored::Number},  // 74
    {nullptr, u"Ripping - Max Ripping Processes", 1, u"", Stored::Number},  // 75
    {nullptr, u"Ripping - Max Encoding Processes", 3, u"", Stored::Number},  // 76
    {nullptr, u"Ripping - Max Combined Processes", 4, u"", Stored::Number},  // 77
    {nullptr, u"Ripping - Encode and Rip Concurrently", 1, u"", Stored::Number},  // 78
    {nullptr, u"Ripping - Normalize After", 0, u"", Stored::Number},  // 79
    {u"START_ALWAYS_LOAD_DEFAULT_LIBRARY", u"Startup - Always load default library", 0, u"", Stored::Number},  // 80
    {nullptr, u"General - Hotkey As Hub Server", 1, u"", Stored::Number},  // 81
    {nullptr, u"Tagging - Sidecar mode", 0, u"0", Stored::Text},  // 82
    {nullptr, u"General - Mouse wheel jump increment", 9, u"", Stored::Number},  // 83
    {nullptr, u"General - Disable skipping with mouse wheel", 0, u"", Stored::Number},  // 84
    {u"MOUSEWHEELVOLUME", u"General - Mouse Wheel Volume", 1, u"", Stored::Number},  // 85
    {u"MINIVIEWCLOSEMODE", u"General - Mini View Close Mode", 0, u"", Stored::Number},  // 86
    {u"DBLCLICK_IMG_PREVIEW", u"General - Image Double Click Preview", 0, u"", Stored::Number},  // 87
};

constexpr int32_t kMusicLocation = 0;
constexpr int32_t kShellIntegration = 5;

HVString DescriptionPath(int32_t id) { return HVString(u"/*/DefaultSettings/") + kSettingRows[id].key; }
}

HVString CSettingsTable::KeyName(int32_t id)
{
    return IsKnown(id) && kSettingRows[id].key ? HVString(kSettingRows[id].key) : HVString();
}

HVString CSettingsTable::SettingName(int32_t id) { return IsKnown(id) ? HVString(kSettingRows[id].name) : HVString(); }

CSettingsTable::Stored CSettingsTable::StoredAs(int32_t id) { return IsKnown(id) ? kSettingRows[id].stored : Stored::Number; }

int32_t CSettingsTable::IntegerDefault(int32_t id, const Machine& machine)
{
    if (id == kShellIntegration)
        return machine.shellExtensionRegistered ? 1 : 0;
    return IsKnown(id) ? kSettingRows[id].integerDefault : 0;
}

HVString CSettingsTable::TextDefault(int32_t id, const Machine& machine)
{
    if (id == kMusicLocation)
        return machine.musicFolder;
    return IsKnown(id) ? HVString(kSettingRows[id].textDefault) : HVString();
}

int32_t CSettingsTable::IntegerValue(int32_t id, const HVInstallDescription& description, const Machine& machine)
{
    const int32_t fallback = IntegerDefault(id, machine);
    if (!IsKnown(id) || !kSettingRows[id].key)
        return fallback;
    return description.GetInteger(DescriptionPath(id).view(), fallback);
}

HVString CSettingsTable::TextValue(int32_t id, const HVInstallDescription& description, const Machine& machine)
{
    const HVString fallback = TextDefault(id, machine);
    if (!IsKnown(id) || !kSettingRows[id].key)
        return fallback;
    return description.GetText(DescriptionPath(id).view(), fallback);
}

HVString CSettingsTable::ValueText(int32_t id, const HVInstallDescription& description, const Machine& machine)
{
    if (StoredAs(id) == Stored::Text)
        return TextValue(id, description, machine);
    return HVString::Format(u"%d", IntegerValue(id, description, machine));
}

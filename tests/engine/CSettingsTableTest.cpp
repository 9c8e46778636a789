#include "engine/CSettingsTable.h"

#include "product/HVInstallDescription.h"

#include <gtest/gtest.h>

#include <iterator>
#include <memory>
#include <set>

namespace
{
using Stored = CSettingsTable::Stored;

// Not movable: each test keeps its description where it was made.
std::unique_ptr<HVInstallDescription> Description(const HVString& defaultSettings)
{
    auto description = std::make_unique<HVInstallDescription>();
    description->SetText(u"<HVIC version=\"1.0\"><Product/>" + defaultSettings + u"</HVIC>");
    return description;
}

const CSettingsTable::Machine kMachine{u"C:\\Users\\me\\Music\\", true};

TEST(CSettingsTableTest, EveryIdentifierHasItsKeyNameAndDefaults)
{
    // Written from the published table, identifier by identifier; 5's default is the one of a
    // machine with the shell extension registered, 0's the machine's music folder.
    const HVString kMusic = kMachine.musicFolder;
    const struct { const char16_t* key; const char16_t* name; int32_t integer; HVString text; } table[] = {
        {u"MEDIALOCATION", u"General - Music Location", 0, kMusic},
        {u"MAKEDEFAULTPLAYER", u"General - Make Default Music Player", 1, u""},
        {u"MINIMIZETOSYSTRAY", u"General - Minimize To System Tray", 0, u""},
        {u"MINIME_ALWAYSONTOP", u"Minime - Always On Top", 0, u""},
        {u"MINIME_INACTIVETRANSPARENT", u"General - Inactive Mini View Transparent", 1, u""},
        {u"ENABLESHELLINTEGRATION", u"General - Enable Shell Integration", 1, u""},
        {u"", u"General - Online Metadata Automatic Disc Lookup and Submit", 1, u""},
        {u"", u"General - Online Metadata Automatic Cover Art Submit", 1, u""},
        {u"", u"General - Online Metadata Automatic Ratings Submit", 0, u""},
        {u"", u"General - Online Metadata Lookup Language", 0, u"en"},
        {u"START_MODE", u"Startup - Mode", 0, u""},
        {u"START_LOCATION", u"Startup - Page", 7, u""},
        {u"START_SHOWSPLASHSCREEN", u"Startup - Show Splash Screen", 1, u""},
        {u"", u"Startup - Show Tree", 1, u""},
        {u"", u"Startup - Show Action Window", 1, u""},
        {u"START_PLAYBACKCURRENT", u"Startup - Start Playback", 0, u""},
        {u"START_OPTIMIZEVOLUME", u"Startup - Optimize Volume", 1, u""},
        {u"LIBCONVERSION_ENCODER", u"Library Server Conversion - Encoder", 3, u""},
        {u"LIBCONVERSION_ENCODERQUALITY", u"Library Server Conversion - Quality", 0, u""},
        {u"AUTOIMPORT_FILES", u"General - Automatically Import Files", 0, u""},
        {u"UPDATETAGS", u"Tagging - Update Tags", 1, u""},
        {u"", u"Tagging - Use Sidecar", 0, u"Video;Data"},
        {u"WINDOWS_STARTUP_RUN_MODE", u"General - Windows Startup Run Mode", 0, u""},
        {u"", u"General - Jump On Play Mode Audio", 0, u""},
        {u"JUMP_ON_PLAY_MODE_VIDEO", u"General - Jump On Play Mode Video", 3, u""},
        {u"", u"General - Force Windowed Playback From External", 0, u""},
        {u"DOUBLECLICKMOD", u"General - List Double Click Mode", 1, u""},
        {u"PLAYBUTTONMODE", u"General - Play Button Mode", 0, u""},
        {u"PREVIOUSBUTTONMODE", u"General - Previous Button Mode", 1, u""},
        {u"SHOWSTOPBUTTON", u"General - Show Stop Button", 1, u""},
        {u"REMOVEFILESFROMPLAYINGNOWASPLAYED", u"General - Remove Files From Playing Now As Played", 0, u""},
        {u"STARTPLAYBACKONADD", u"General - Start Playback On Add", 1, u""},
        {u"CLEARRECENTLYIMPORTEDONEXIT", u"General - Clear Recently Imported On Exit", 0, u""},
        {u"CLEARPLAYINGNOWONEXIT", u"General - Clear Playing Now On Exit", 0, u""},
        {u"", u"General - Show Playlist Groups As Collection", 0, u""},
        {u"", u"General - Bookmark Mode", 0, u""},
        {u"", u"General - Bookmark Auto Search", 0, u""},
        {u"HOTKEY_MODE", u"General - Hot Key Mode", 0, u""},
        {u"LIST_SHOWGRIDLINES", u"View - Show List Grid Lines", 1, u""},
        {u"LIST_CHECKFORMISSING", u"View - List Check For Missing Files", 0, u""},
        {u"LIST_AUTOSIZECOLUMNS", u"View - List Autosize Columns", 1, u""},
        {u"LIST_LEFTMOUSELASSO", u"View - Left Mouse Lasso", 0, u""},
        {u"LIST_TEXTLINES", u"View - List Lines", 0, u""},
        {u"", u"View - Tool Tips", 1, u""},
        {u"AUTOEXPANDTREE", u"View - Auto Expand Tree", 1, u""},
        {u"AUTOSIZETREE", u"View - Auto Size Tree", 0, u""},
        {u"SORTING_AUTOSAVELISTSORT", u"Sorting - Auto Save List Sorting", 1, u""},
        {u"AUTOSIZETRUNCATELONG", u"View - Auto Size Truncate Long Values", 1, u""},
        {u"MENUMRUCOUNT_RIGHTCLICK", u"View - Right Click MRU Count", 1, u""},
        {u"RIP_AUTORIPMODE", u"Ripping - Auto Rip Mode", 1, u""},
        {u"RIP_ANALYZEAUDIO", u"Ripping - Analyze Audio During Ripping", 1, u""},
        {u"RIP_RETRIEVECOVERART", u"Ripping - Get Cover Art After Ripping", 1, u""},
        {u"RIP_SHOWRECENTLYRIPPEDPLAYLIST", u"Ripping - Show Recently Ripped Playlist After Ripping", 1, u""},
        {u"RIP_EJECT", u"Ripping - Eject After Ripping", 1, u""},
        {u"RIP_PLAYSOUNDWHENCOMPLETE", u"Ripping - Play Sound After Ripping", 0, u""},
        {u"RIP_SOUNDFILE", u"Ripping - Complete Sound File", 0, u"chord.wav"},
        {u"BURN_SOUNDFILE", u"Burning - Complete Sound File", 0, u"chord.wav"},
        {u"BURN_PLAYSOUND_AFTER_BURN", u"Burning - Play Sound After Burn", 0, u""},
        {u"BURN_ISO_VERSION", u"Burning - ISO Version", 1, u""},
        {u"BURN_USE_PLAYBACK_SETTINGS", u"Burning - Use Playback Settings", 0, u""},
        {u"BURN_WRITER_NAME", u"Burning - Writer Name", 0, u""},
        {u"BURN_EJECT", u"Burning - Eject After Burn", 1, u""},
        {u"BURN_TEST_MODE", u"Burning - Test Mode", 0, u""},
        {u"BURN_WRITE_CD_TEXT", u"Burning - Write CD Text", 1, u""},
        {u"BURN_CLOSE_DISK", u"Burning - Close Disc", 0, u""},
        {u"BURN_DATA_FILE_SYSTEM", u"Burning - Data File System", 0, u""},
        {u"ASSOC_AUDIO_CD", u"File Associations - Play Audio CDs", 1, u""},
        {u"LIBCONVERSION_ENABLE", u"Library Server Conversion - Convert audio files", 0, u""},
        {u"", u"Ripping - Show TRDB Multi Match", 1, u""},
        {u"", u"Ripping - Show TRDB Submission", 1, u""},
        {u"", u"Ripping - Show TRDB Failure", 1, u""},
        {u"", u"Ripping - Overwrite Existing", 0, u""},
        {u"", u"Ripping - Cue File Support", 0, u""},
        {u"", u"Ripping - Cue File Template", 0, u""},
        {u"", u"Ripping - Auto Create Secure Mode Log File", 0, u""},
        {u"", u"Ripping - Max Ripping Processes", 1, u""},
        {u"", u"Ripping - Max Encoding Processes", 3, u""},
        {u"", u"Ripping - Max Combined Processes", 4, u""},
        {u"", u"Ripping - Encode and Rip Concurrently", 1, u""},
        {u"", u"Ripping - Normalize After", 0, u""},
        {u"START_ALWAYS_LOAD_DEFAULT_LIBRARY", u"Startup - Always load default library", 0, u""},
        {u"", u"General - Hotkey As Hub Server", 1, u""},
        {u"", u"Tagging - Sidecar mode", 0, u"0"},
        {u"", u"General - Mouse wheel jump increment", 9, u""},
        {u"", u"General - Disable skipping with mouse wheel", 0, u""},
        {u"MOUSEWHEELVOLUME", u"General - Mouse Wheel Volume", 1, u""},
        {u"MINIVIEWCLOSEMODE", u"General - Mini View Close Mode", 0, u""},
        {u"DBLCLICK_IMG_PREVIEW", u"General - Image Double Click Preview", 0, u""},
    };
    static_assert(std::size(table) == CSettingsTable::kCount);
    const std::set<int32_t> storedAsText = {0, 9, 21, 55, 56, 60, 73, 82};
    const auto none = Description(u"");
    for (int32_t id = 0; id < CSettingsTable::kCount; ++id) {
        SCOPED_TRACE(id);
        EXPECT_EQ(CSettingsTable::KeyName(id), table[id].key);
        EXPECT_EQ(CSettingsTable::SettingName(id), table[id].name);
        EXPECT_EQ(CSettingsTable::IntegerValue(id, *none, kMachine), table[id].integer);
        EXPECT_EQ(CSettingsTable::TextValue(id, *none, kMachine), table[id].text);
        EXPECT_EQ(CSettingsTable::StoredAs(id), storedAsText.count(id) ? Stored::Text : Stored::Number);
    }
    EXPECT_EQ(CSettingsTable::IntegerDefault(5, {}), 0);
    // Beyond the table nothing, whatever the description says.
    const auto preset = Description(u"<DefaultSettings><MEDIALOCATION>D:\\</MEDIALOCATION></DefaultSettings>");
    for (int32_t id : {-1, 88, 89, INT32_MAX, INT32_MIN}) {
        EXPECT_EQ(CSettingsTable::KeyName(id) + CSettingsTable::SettingName(id) + CSettingsTable::TextValue(id, *preset, kMachine), u"");
        EXPECT_EQ(CSettingsTable::IntegerValue(id, *preset, kMachine), 0);
    }
}

TEST(CSettingsTableTest, APresentKeyOverridesAndKeylessSettingsCanNotBePreset)
{
    // Every keyed setting preset to 42, and elements named after the key-less settings' names
    // too: only the keyed ones may change.
    HVString presets;
    for (int32_t id = 0; id < CSettingsTable::kCount; ++id) {
        const HVString key = CSettingsTable::KeyName(id);
        presets += key.IsEmpty() ? HVString::Format(u"<Setting%d>42</Setting%d>", id, id)
                                 : HVString::Format(u"<%s>42</%s>", key, key);
    }
    const auto preset = Description(u"<DefaultSettings>" + presets + u"</DefaultSettings>");
    const auto none = Description(u"");
    for (int32_t id = 0; id < CSettingsTable::kCount; ++id) {
        SCOPED_TRACE(id);
        const bool keyed = !CSettingsTable::KeyName(id).IsEmpty();
        EXPECT_EQ(CSettingsTable::IntegerValue(id, *preset, kMachine),
                  keyed ? 42 : CSettingsTable::IntegerValue(id, *none, kMachine));
        EXPECT_EQ(CSettingsTable::TextValue(id, *preset, kMachine),
                  keyed ? HVString(u"42") : CSettingsTable::TextValue(id, *none, kMachine));
    }
}

TEST(CSettingsTableTest, ABadNumberLeavesTheBuiltInDefault)
{
    // START_LOCATION (11), built-in default 7.
    const struct { const char16_t* text; int32_t expected; } rows[] = {
        {u"3", 3},   {u" -2 ", -2}, {u"+5", 5},  {u"12abc", 7}, {u"", 7},         {u"-0x5", 7},
        {u"0x10", 7}, {u"99999999999", 7}, {u"2147483647", 2147483647}, {u"-2147483649", 7}, {u"1.5", 7},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(HVString(row.text).ToUtf8());
        const auto description = Description(
            HVString::Format(u"<DefaultSettings><START_LOCATION>%s</START_LOCATION></DefaultSettings>", row.text));
        EXPECT_EQ(CSettingsTable::IntegerValue(11, *description, kMachine), row.expected);
        EXPECT_EQ(CSettingsTable::ValueText(11, *description, kMachine), HVString::Format(u"%d", row.expected));
    }
    // A text setting takes its text as it stands; an empty one leaves the default.
    EXPECT_EQ(CSettingsTable::ValueText(55, *Description(u"<DefaultSettings><RIP_SOUNDFILE>tada.wav</RIP_SOUNDFILE>"
                                                        u"</DefaultSettings>"), kMachine), u"tada.wav");
    EXPECT_EQ(CSettingsTable::ValueText(55, *Description(u"<DefaultSettings><RIP_SOUNDFILE/></DefaultSettings>"),
                                        kMachine), u"chord.wav");
}
}  // namespace

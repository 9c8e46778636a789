#include "engine/CSettingsTable.h"

#include "install/HVInstallDescription.h"

#include <gtest/gtest.h>

#include <iterator>
#include <map>
#include <memory>
#include <set>

namespace
{
using Stored = CSettingsTable::Stored;

// Key and product setting name of identifiers 0 to 87, as the product reads them.
const struct { const char16_t* key; const char16_t* name; } kExpected[] = {
    {u"MEDIALOCATION", u"General - Music Location"}, {u"MAKEDEFAULTPLAYER", u"General - Make Default Music Player"},
    {u"MINIMIZETOSYSTRAY", u"General - Minimize To System Tray"}, {u"MINIME_ALWAYSONTOP", u"Minime - Always On Top"},
    {u"MINIME_INACTIVETRANSPARENT", u"General - Inactive Mini View Transparent"},
    {u"ENABLESHELLINTEGRATION", u"General - Enable Shell Integration"},
    {u"", u"General - Online Metadata Automatic Disc Lookup and Submit"},
    {u"", u"General - Online Metadata Automatic Cover Art Submit"},
    {u"", u"General - Online Metadata Automatic Ratings Submit"}, {u"", u"General - Online Metadata Lookup Language"},
    {u"START_MODE", u"Startup - Mode"}, {u"START_LOCATION", u"Startup - Page"},
    {u"START_SHOWSPLASHSCREEN", u"Startup - Show Splash Screen"}, {u"", u"Startup - Show Tree"},
    {u"", u"Startup - Show Action Window"}, {u"START_PLAYBACKCURRENT", u"Startup - Start Playback"},
    {u"START_OPTIMIZEVOLUME", u"Startup - Optimize Volume"},
    {u"LIBCONVERSION_ENCODER", u"Library Server Conversion - Encoder"},
    {u"LIBCONVERSION_ENCODERQUALITY", u"Library Server Conversion - Quality"},
    {u"AUTOIMPORT_FILES", u"General - Automatically Import Files"}, {u"UPDATETAGS", u"Tagging - Update Tags"},
    {u"", u"Tagging - Use Sidecar"}, {u"WINDOWS_STARTUP_RUN_MODE", u"General - Windows Startup Run Mode"},
    {u"", u"General - Jump On Play Mode Audio"}, {u"JUMP_ON_PLAY_MODE_VIDEO", u"General - Jump On Play Mode Video"},
    {u"", u"General - Force Windowed Playback From External"}, {u"DOUBLECLICKMOD", u"General - List Double Click Mode"},
    {u"PLAYBUTTONMODE", u"General - Play Button Mode"}, {u"PREVIOUSBUTTONMODE", u"General - Previous Button Mode"},
    {u"SHOWSTOPBUTTON", u"General - Show Stop Button"},
    {u"REMOVEFILESFROMPLAYINGNOWASPLAYED", u"General - Remove Files From Playing Now As Played"},
    {u"STARTPLAYBACKONADD", u"General - Start Playback On Add"},
    {u"CLEARRECENTLYIMPORTEDONEXIT", u"General - Clear Recently Imported On Exit"},
    {u"CLEARPLAYINGNOWONEXIT", u"General - Clear Playing Now On Exit"},
    {u"", u"General - Show Playlist Groups As Collection"}, {u"", u"General - Bookmark Mode"},
    {u"", u"General - Bookmark Auto Search"}, {u"HOTKEY_MODE", u"General - Hot Key Mode"},
    {u"LIST_SHOWGRIDLINES", u"View - Show List Grid Lines"},
    {u"LIST_CHECKFORMISSING", u"View - List Check For Missing Files"},
    {u"LIST_AUTOSIZECOLUMNS", u"View - List Autosize Columns"}, {u"LIST_LEFTMOUSELASSO", u"View - Left Mouse Lasso"},
    {u"LIST_TEXTLINES", u"View - List Lines"}, {u"", u"View - Tool Tips"},
    {u"AUTOEXPANDTREE", u"View - Auto Expand Tree"}, {u"AUTOSIZETREE", u"View - Auto Size Tree"},
    {u"SORTING_AUTOSAVELISTSORT", u"Sorting - Auto Save List Sorting"},
    {u"AUTOSIZETRUNCATELONG", u"View - Auto Size Truncate Long Values"},
    {u"MENUMRUCOUNT_RIGHTCLICK", u"View - Right Click MRU Count"}, {u"RIP_AUTORIPMODE", u"Ripping - Auto Rip Mode"},
    {u"RIP_ANALYZEAUDIO", u"Ripping - Analyze Audio During Ripping"},
    {u"RIP_RETRIEVECOVERART", u"Ripping - Get Cover Art After Ripping"},
    {u"RIP_SHOWRECENTLYRIPPEDPLAYLIST", u"Ripping - Show Recently Ripped Playlist After Ripping"},
    {u"RIP_EJECT", u"Ripping - Eject After Ripping"},
    {u"RIP_PLAYSOUNDWHENCOMPLETE", u"Ripping - Play Sound After Ripping"},
    {u"RIP_SOUNDFILE", u"Ripping - Complete Sound File"}, {u"BURN_SOUNDFILE", u"Burning - Complete Sound File"},
    {u"BURN_PLAYSOUND_AFTER_BURN", u"Burning - Play Sound After Burn"}, {u"BURN_ISO_VERSION", u"Burning - ISO Version"},
    {u"BURN_USE_PLAYBACK_SETTINGS", u"Burning - Use Playback Settings"},
    {u"BURN_WRITER_NAME", u"Burning - Writer Name"}, {u"BURN_EJECT", u"Burning - Eject After Burn"},
    {u"BURN_TEST_MODE", u"Burning - Test Mode"}, {u"BURN_WRITE_CD_TEXT", u"Burning - Write CD Text"},
    {u"BURN_CLOSE_DISK", u"Burning - Close Disc"}, {u"BURN_DATA_FILE_SYSTEM", u"Burning - Data File System"},
    {u"ASSOC_AUDIO_CD", u"File Associations - Play Audio CDs"},
    {u"LIBCONVERSION_ENABLE", u"Library Server Conversion - Convert audio files"},
    {u"", u"Ripping - Show TRDB Multi Match"}, {u"", u"Ripping - Show TRDB Submission"},
    {u"", u"Ripping - Show TRDB Failure"}, {u"", u"Ripping - Overwrite Existing"}, {u"", u"Ripping - Cue File Support"},
    {u"", u"Ripping - Cue File Template"}, {u"", u"Ripping - Auto Create Secure Mode Log File"},
    {u"", u"Ripping - Max Ripping Processes"}, {u"", u"Ripping - Max Encoding Processes"},
    {u"", u"Ripping - Max Combined Processes"}, {u"", u"Ripping - Encode and Rip Concurrently"},
    {u"", u"Ripping - Normalize After"},
    {u"START_ALWAYS_LOAD_DEFAULT_LIBRARY", u"Startup - Always load default library"},
    {u"", u"General - Hotkey As Hub Server"}, {u"", u"Tagging - Sidecar mode"},
    {u"", u"General - Mouse wheel jump increment"}, {u"", u"General - Disable skipping with mouse wheel"},
    {u"MOUSEWHEELVOLUME", u"General - Mouse Wheel Volume"}, {u"MINIVIEWCLOSEMODE", u"General - Mini View Close Mode"},
    {u"DBLCLICK_IMG_PREVIEW", u"General - Image Double Click Preview"},
};

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
    static_assert(std::size(kExpected) == CSettingsTable::kCount);
    // The defaults as a rule rather than a table: a slip in either shows as a difference.
    const std::set<int32_t> ones = {1,  4,  6,  7,  12, 13, 14, 16, 20, 26, 28, 29, 31, 38, 40, 43, 44, 46,
                                    47, 48, 49, 50, 51, 52, 53, 58, 61, 63, 66, 68, 69, 70, 75, 78, 81, 85};
    const std::map<int32_t, int32_t> others = {{11, 7}, {17, 3}, {24, 3}, {76, 3}, {77, 4}, {83, 9}, {5, 1}};
    const std::map<int32_t, HVString> texts = {{0, kMachine.musicFolder}, {9, u"en"},         {21, u"Video;Data"},
                                               {55, u"chord.wav"},        {56, u"chord.wav"}, {82, u"0"}};
    const std::set<int32_t> storedAsText = {0, 9, 21, 55, 56, 60, 73, 82};
    const auto none = Description(u"");
    for (int32_t id = 0; id < CSettingsTable::kCount; ++id) {
        SCOPED_TRACE(id);
        EXPECT_EQ(CSettingsTable::KeyName(id), kExpected[id].key);
        EXPECT_EQ(CSettingsTable::SettingName(id), kExpected[id].name);
        const int32_t integer = ones.count(id) ? 1 : others.count(id) ? others.at(id) : 0;
        EXPECT_EQ(CSettingsTable::IntegerValue(id, *none, kMachine), integer);
        EXPECT_EQ(CSettingsTable::TextValue(id, *none, kMachine), texts.count(id) ? texts.at(id) : HVString());
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

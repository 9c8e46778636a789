#include "engine/CSettingsTable.h"

#include "product/HVInstallDescription.h"

#include <gtest/gtest.h>

#include <map>
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
    // The defaults as a rule rather than a table: a slip in either shows as a difference.
    const std::set<int32_t> ones = {1,  4,  6,  7,  12, 13, 14, 16, 20, 26, 28, 29, 31, 38, 40, 43, 44, 46,
                                    47, 48, 49, 50, 51, 52, 53, 58, 61, 63, 66, 68, 69, 70, 75, 78, 81, 85};
    const std::map<int32_t, int32_t> others = {{11, 7}, {17, 3}, {24, 3}, {76, 3}, {77, 4}, {83, 9}, {5, 1}};
    const std::map<int32_t, HVString> texts = {{0, kMachine.musicFolder}, {9, u"en"},         {21, u"Video;Data"},
                                               {55, u"chord.wav"},        {56, u"chord.wav"}, {82, u"0"}};
    const std::set<int32_t> storedAsText = {0, 9, 21, 55, 56, 60, 73, 82};
    const auto none = Description(u"");
    std::set<HVString> names, keys;
    for (int32_t id = 0; id < CSettingsTable::kCount; ++id) {
        SCOPED_TRACE(id);
        // Names are the product's own; a row out of place shows in the defaults or below.
        EXPECT_TRUE(names.insert(CSettingsTable::SettingName(id)).second);
        const HVString key = CSettingsTable::KeyName(id);
        EXPECT_TRUE(key.IsEmpty() || keys.insert(key).second);
        const int32_t integer = ones.count(id) ? 1 : others.count(id) ? others.at(id) : 0;
        EXPECT_EQ(CSettingsTable::IntegerValue(id, *none, kMachine), integer);
        EXPECT_EQ(CSettingsTable::TextValue(id, *none, kMachine), texts.count(id) ? texts.at(id) : HVString());
        EXPECT_EQ(CSettingsTable::StoredAs(id), storedAsText.count(id) ? Stored::Text : Stored::Number);
    }
    EXPECT_EQ(keys.size(), 59u);
    const std::pair<int32_t, const char16_t*> spots[] = {
        {0, u"MEDIALOCATION|General - Music Location"}, {11, u"START_LOCATION|Startup - Page"},
        {13, u"|Startup - Show Tree"}, {55, u"RIP_SOUNDFILE|Ripping - Complete Sound File"},
        {72, u"|Ripping - Cue File Support"}, {87, u"DBLCLICK_IMG_PREVIEW|General - Image Double Click Preview"}};
    for (const auto& [id, expected] : spots)
        EXPECT_EQ(CSettingsTable::KeyName(id) + u"|" + CSettingsTable::SettingName(id), expected) << id;
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

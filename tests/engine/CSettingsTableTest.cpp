#include "engine/CSettingsTable.h"

#include "product/HVInstallDescription.h"

#include "PublishedSettings.h"

#include <gtest/gtest.h>

#include <memory>
#include <vector>

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
    const std::vector<PublishedSetting> table = PublishedSettings(kMachine.musicFolder);
    ASSERT_EQ(table.size(), static_cast<size_t>(CSettingsTable::kCount));
    const auto none = Description(u"");
    for (int32_t id = 0; id < CSettingsTable::kCount; ++id) {
        const PublishedSetting& row = table[static_cast<size_t>(id)];
        SCOPED_TRACE(row.line);
        ASSERT_EQ(row.id, id);
        EXPECT_EQ(CSettingsTable::KeyName(id), row.key);
        EXPECT_EQ(CSettingsTable::SettingName(id), row.name);
        EXPECT_EQ(CSettingsTable::IntegerValue(id, *none, kMachine), row.integer);
        EXPECT_EQ(CSettingsTable::TextValue(id, *none, kMachine), row.text);
        EXPECT_EQ(CSettingsTable::StoredAs(id), row.storedAsText ? Stored::Text : Stored::Number);
    }
    // 5's default on a machine without the shell extension.
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

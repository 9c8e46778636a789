#pragma once

// The settings table as published, kept in tests/engine/data/SettingsTable.txt: the table of
// defaults and the first-run settings written to the registry are both checked against it.
// Header-only, so the native core tests and the Windows test programs share it.
//
//   for (const PublishedSetting& s : PublishedSettings(u"C:\\Users\\me\\Music\\"))
//       EXPECT_EQ(CSettingsTable::SettingName(s.id), s.name);

#include "SourceFile.h"

#include "foundation/HVString.h"

#include <cstdint>
#include <sstream>
#include <string>
#include <vector>

struct PublishedSetting
{
    int32_t id = 0;
    HVString key;    // empty: a description can't preset it
    HVString name;
    int32_t integer = 0;
    HVString text;
    bool storedAsText = false;
    std::string line;   // as the file has it, for failure messages
};

// The rows in order; the music folder's default (0) is `musicFolder`.
inline std::vector<PublishedSetting> PublishedSettings(const HVString& musicFolder)
{
    std::vector<PublishedSetting> rows;
    std::istringstream lines(SourceFileText("tests/engine/data/SettingsTable.txt"));
    for (std::string line; std::getline(lines, line);) {
        if (line.empty() || line[0] == '#')
            continue;
        std::vector<std::string> f;
        std::istringstream fields(line);
        for (std::string field; std::getline(fields, field, '|');)
            f.push_back(field);
        f.resize(6);
        rows.push_back({std::stoi(f[0]), HVString::FromUtf8(f[1]), HVString::FromUtf8(f[2]), std::stoi(f[3]),
                        f[4] == "{MUSIC}" ? musicFolder : HVString::FromUtf8(f[4]), f[5] == "text", line});
    }
    return rows;
}

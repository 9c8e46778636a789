#include "engine/CRetiredFiles.h"

#include <gtest/gtest.h>

#include <set>

namespace
{
TEST(CRetiredFilesTest, EighteenFilesThenFourFoldersInsideTheInstallFolder)
{
    const std::vector<HVString>& entries = CRetiredFiles::Entries();
    ASSERT_EQ(entries.size(), 22u);
    std::set<HVString> seen;
    int folders = 0, art = 0;
    for (size_t i = 0; i < entries.size(); ++i) {
        const HVString& entry = entries[i];
        EXPECT_TRUE(seen.insert(entry).second) << entry.ToUtf8();
        EXPECT_EQ(entry.EndsWith(u"\\"), i >= 18) << entry.ToUtf8();
        folders += entry.EndsWith(u"\\");
        art += entry.StartsWith(u"Data\\Default Art\\");
        // Every entry passes the same test as the install description's items.
        EXPECT_EQ(CRetiredFiles::SplitObsoleteFiles(entry).size(), 1u) << entry.ToUtf8();
    }
    EXPECT_EQ(folders, 4);
    EXPECT_EQ(art, 4);
    EXPECT_TRUE(seen.count(u"Plugins\\ForceVideoType.ax"));
    for (const char16_t* folder : {u"Web\\", u"Skins\\Lounge View\\Theme\\", u"Plugins\\ffdshow\\", u"Plugins\\LAVFilters\\"})
        EXPECT_TRUE(seen.count(folder)) << HVString(folder).ToUtf8();
}

TEST(CRetiredFilesTest, ObsoleteFilesSplitAndItemsLeavingTheFolderAreRefused)
{
    std::vector<HVString> refused;
    const auto items = CRetiredFiles::SplitObsoleteFiles(
        u" Plugins\\Old.dll;;Data\\a..b.txt ; C:\\Windows\\win.ini;\\boot.ini;/etc;..\\Other\\x.dll;"
        u"Data\\..\\..\\y.dll;Data\\ .. \\z.dll;\\\\server\\share\\f;x:y",
        &refused);
    EXPECT_EQ(items, (std::vector<HVString>{u"Plugins\\Old.dll", u"Data\\a..b.txt"}));
    EXPECT_EQ(refused.size(), 8u);
    EXPECT_TRUE(CRetiredFiles::SplitObsoleteFiles(u" ; ").empty());
}
}

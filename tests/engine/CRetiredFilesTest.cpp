#include "engine/CRetiredFiles.h"

#include <gtest/gtest.h>

namespace
{
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

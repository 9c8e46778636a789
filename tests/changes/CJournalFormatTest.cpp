#include "changes/CJournalFormat.h"

#include <gtest/gtest.h>

namespace
{
TEST(CJournalFormatTest, DeletesAndInstallsAreCountedApart)
{
    const std::vector<HVString> pending = {
        CJournalFormat::DeleteEntry(u"C:\\Sonora\\Old.dll"),
        CJournalFormat::InstallEntry(u"C:\\Sonora\\Setup\\Sonora.exe", u"C:\\Sonora\\Sonora.exe"),
        CJournalFormat::DeleteEntry(u"C:\\Sonora\\Older.dll"),
    };
    const std::vector<CJournalFormat::Value> values = CJournalFormat::FileValues(pending);
    ASSERT_EQ(values.size(), 3u);
    EXPECT_EQ(values[0].name, u"Delete File (0)");
    EXPECT_EQ(values[0].data, u"C:\\Sonora\\Old.dll|_DELETEFILE");
    EXPECT_EQ(values[1].name, u"Install File (0)");
    EXPECT_EQ(values[1].data, u"C:\\Sonora\\Setup\\Sonora.exe|C:\\Sonora\\Sonora.exe");
    EXPECT_EQ(values[2].name, u"Delete File (1)");
}

TEST(CJournalFormatTest, TheDeleteMarkerAnywhereMakesADelete)
{
    // The companion program reads it so; an install into such a path is journaled as a delete.
    const HVString odd = CJournalFormat::InstallEntry(u"C:\\S\\Setup\\a.dll", u"C:\\S\\_DELETEFILE\\a.dll");
    EXPECT_TRUE(CJournalFormat::IsDeleteEntry(odd));
    EXPECT_EQ(CJournalFormat::FileValues({odd})[0].name, u"Delete File (0)");
    EXPECT_FALSE(CJournalFormat::IsDeleteEntry(CJournalFormat::RegisterEntry(u"C:\\a.dll")));
}
}

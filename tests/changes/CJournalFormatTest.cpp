#include "changes/CJournalFormat.h"

#include <gtest/gtest.h>

namespace
{
TEST(CJournalFormatTest, TheDeleteMarkerAnywhereMakesADelete)
{
    // The companion program reads it so; an install into such a path is journaled as a delete.
    const HVString odd = CJournalFormat::InstallEntry(u"C:\\S\\Setup\\a.dll", u"C:\\S\\_DELETEFILE\\a.dll");
    EXPECT_TRUE(CJournalFormat::IsDeleteEntry(odd));
    EXPECT_EQ(CJournalFormat::FileValues({odd})[0].name, u"Delete File (0)");
    EXPECT_FALSE(CJournalFormat::IsDeleteEntry(CJournalFormat::RegisterEntry(u"C:\\a.dll")));
}
}

#include "changes/win/CInstallRun.h"

#include "foundation/win/HVFileSystem.h"

#include "ScratchFolderTest.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

namespace
{
class CInstallRunTest : public ScratchFolderTest
{
};

// The destination page makes the folders it checks before there is a record: those on the way
// to the install folder become the install's (noted, so that an undo or an uninstall takes them),
// the others go at the end of the run while they are empty.
TEST_F(CInstallRunTest, FoldersMadeBeforeTheRecordAreTheInstallsOrGoAtTheEnd)
{
    const struct
    {
        const char* label;
        std::vector<const char16_t*> madeEarly; // in the order the user chose them
        const char16_t* installFolder;
        const char16_t* filled;                 // a file the user put in one of them meanwhile
        std::vector<const char16_t*> noted;     // FolderCreated, in order
        std::vector<const char16_t*> leftAtEnd; // of the early ones
    } rows[] = {
        {"chosen and installed into", {u"Halvard\\Sonora\\"}, u"Halvard\\Sonora\\", nullptr,
         {u"Halvard\\", u"Halvard\\Sonora\\"}, {u"Halvard\\", u"Halvard\\Sonora\\"}},
        {"a deeper folder than the one checked", {u"Halvard\\"}, u"Halvard\\Sonora\\", nullptr,
         {u"Halvard\\", u"Halvard\\Sonora\\"}, {u"Halvard\\", u"Halvard\\Sonora\\"}},
        {"a choice gone back on goes", {u"Elsewhere\\Deep\\", u"Halvard\\"}, u"Halvard\\", nullptr,
         {u"Halvard\\"}, {u"Halvard\\"}},
        {"a choice gone back on that the user filled stays", {u"Elsewhere\\Deep\\", u"Halvard\\"}, u"Halvard\\",
         u"Elsewhere\\Deep\\mine.txt", {u"Halvard\\"}, {u"Halvard\\", u"Elsewhere\\", u"Elsewhere\\Deep\\"}},
        {"nothing made early", {}, u"Halvard\\", nullptr, {u"Halvard\\"}, {u"Halvard\\"}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.label);
        ASSERT_TRUE(Empty());
        CInstallRun run;
        for (const char16_t* folder : row.madeEarly)
            ASSERT_TRUE(run.MakeFolderEarly(root + folder));
        if (row.filled) {
            ASSERT_TRUE(HVFileSystem::WriteFile(root + row.filled, "x", 1));
        }
        ASSERT_TRUE(run.StartRecord(root + row.installFolder));
        std::vector<HVString> noted, expected;
        for (const InstallChange& change : run.Changes().Changes())
            if (change.kind == InstallChange::Kind::FolderCreated)
                noted.push_back(change.path);
        for (const char16_t* folder : row.noted)
            expected.push_back(root + folder);
        EXPECT_EQ(noted, expected);
        run.AbandonRecord();
        run.RemoveFoldersMadeEarly();
        for (const char16_t* folder : {u"Halvard\\", u"Halvard\\Sonora\\", u"Elsewhere\\", u"Elsewhere\\Deep\\"}) {
            const bool left = std::find_if(row.leftAtEnd.begin(), row.leftAtEnd.end(), [&](const char16_t* f) {
                                  return HVString(f) == folder;
                              }) != row.leftAtEnd.end();
            EXPECT_EQ(HVFileSystem::FolderExists(root + folder), left) << HVString(folder).ToUtf8();
        }
    }
}
}

#include "changes/CInstallRecord.h"

#include <gtest/gtest.h>

namespace
{
using Kind = InstallChange::Kind;

InstallChange Change(Kind kind, const char16_t* path, const char16_t* name = u"", bool existed = false,
                     const char16_t* before = u"", bool deferred = false, const char16_t* after = u"")
{
    return {.kind = kind, .path = path, .name = name, .existedBefore = existed, .before = before, .after = after,
            .deferred = deferred};
}

// A line as the first format wrote it, before the records kept what was written.
const std::string kFirstFormat = "HVInstallRecord\t1\r\nFileWritten\t-\tC:\\Sonora\\Sonora.exe\t\t\t8AE911E9\r\n";

TEST(CInstallRecordTest, EveryFieldRoundTrips)
{
    const std::vector<InstallChange> changes = {
        Change(Kind::FileStarted, u"C:\\Program Files\\Sonora\\~Sonora.exe.tmp", u"", true),
        Change(Kind::ValueWritten, u"HKLM\\SOFTWARE\\Classes\\.mp3", u"", true, u"Old.File\tWith\ttabs", false, u"\"New\tone\""),
        Change(Kind::ValueWritten, u"HKCU\\Software\\Halvard", u"Multi\r\nline", true, u"a\nb\\c%41%"),
        Change(Kind::FileDeleted, u"C:\\Sonora\\Old.dll", u"", true, u"", true),
        Change(Kind::ShortcutCreated, u"C:\\Users\\Ünïcødé ♫\\Sonora.lnk", u"C:\\Sonora\\Sonora.exe"),
        Change(Kind::SharedFileCounted, u"C:\\windows\\system32\\hvcodec.dll", u"", false, u""),
        Change(Kind::InstallEnded, u"0"),
    };
    const std::vector<HVString> folders = {u"C:\\Users\\Ünïcødé\tx\\Desktop\\", u"C:\\Users\\u\\Start Menu\\Programs\\"};
    // A second run names the same folders again: each is read once.
    std::string text = CInstallRecord::Header(folders) + CInstallRecord::Header({folders[1]});
    for (const InstallChange& change : changes) {
        const std::string line = CInstallRecord::EncodeLine(change);
        // One change, one line, whatever its fields hold.
        EXPECT_EQ(line.find('\n'), line.size() - 1) << line;
        text += line;
    }
    const CInstallRecord::Contents read = CInstallRecord::Parse(text);
    EXPECT_TRUE(read.problem.IsEmpty()) << read.problem.ToUtf8();
    EXPECT_EQ(read.damagedLines, 0u);
    EXPECT_EQ(read.userFolders, folders);
    ASSERT_EQ(read.changes.size(), changes.size());
    for (size_t i = 0; i < changes.size(); ++i) {
        SCOPED_TRACE(i);
        EXPECT_EQ(read.changes[i].kind, changes[i].kind);
        EXPECT_EQ(read.changes[i].path, changes[i].path);
        EXPECT_EQ(read.changes[i].name, changes[i].name);
        EXPECT_EQ(read.changes[i].existedBefore, changes[i].existedBefore);
        EXPECT_EQ(read.changes[i].before, changes[i].before);
        EXPECT_EQ(read.changes[i].deferred, changes[i].deferred);
        EXPECT_EQ(read.changes[i].after, changes[i].after);
        EXPECT_TRUE(read.changes[i].afterKnown);
    }
    // A record of the first format is still read, knowing nothing of what was written.
    const CInstallRecord::Contents first = CInstallRecord::Parse(kFirstFormat + CInstallRecord::Header() + text.substr(text.find("FileStarted")));
    EXPECT_TRUE(first.problem.IsEmpty()) << first.problem.ToUtf8();
    ASSERT_EQ(first.changes.size(), changes.size() + 1);
    EXPECT_FALSE(first.changes[0].afterKnown);
    EXPECT_TRUE(first.changes[1].afterKnown);
}

TEST(CInstallRecordTest, DamageIsToleratedOnlyAtTheEnd)
{
    const std::string header = CInstallRecord::Header();
    const std::string a = CInstallRecord::EncodeLine(Change(Kind::FolderCreated, u"C:\\Sonora\\"));
    const std::string b = CInstallRecord::EncodeLine(Change(Kind::FileWritten, u"C:\\Sonora\\Sonora.exe"));
    std::string flipped = a;
    flipped[3] = 'x';
    std::string withoutLineEnd = b;
    withoutLineEnd.resize(b.size() - 2);
    struct Case { const char* what; std::string text; size_t changes; size_t damaged; bool problem; };
    const Case cases[] = {
        {"whole", header + a + b, 2, 0, false},
        {"header only", header, 0, 0, false},
        {"torn last line (a kill)", header + a + b.substr(0, b.size() / 2), 1, 1, false},
        {"torn inside the check", header + a + b.substr(0, b.size() - 5), 1, 1, false},
        {"whole last line without its line end", header + a + withoutLineEnd, 2, 0, false},
        {"bad check at the end", header + b + flipped, 1, 1, false},
        {"bad check in the middle", header + flipped + b, 1, 1, true},
        {"stray bytes in the middle", header + a + "junk\r\n" + b, 2, 1, true},
        {"no header", a + b, 0, 0, true},
        {"empty", "", 0, 0, true},
        {"unknown version", "HVInstallRecord\t3\r\n" + a, 0, 0, true},
        {"a line of the first format in a run of the second", header + kFirstFormat.substr(kFirstFormat.find('F')) + b, 1, 1, true},
        {"lines ended by LF alone", header + a.substr(0, a.size() - 2) + "\n" + b, 2, 0, false},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        const CInstallRecord::Contents read = CInstallRecord::Parse(c.text);
        EXPECT_EQ(read.changes.size(), c.changes);
        EXPECT_EQ(read.damagedLines, c.damaged);
        EXPECT_EQ(!read.problem.IsEmpty(), c.problem) << read.problem.ToUtf8();
    }
}
}

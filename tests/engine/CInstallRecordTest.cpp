#include "engine/CInstallRecord.h"

#include <gtest/gtest.h>

namespace
{
using Kind = InstallChange::Kind;

InstallChange Change(Kind kind, const char16_t* path, const char16_t* name = u"", bool existed = false,
                     const char16_t* before = u"", bool deferred = false)
{
    InstallChange change;
    change.kind = kind;
    change.path = path;
    change.name = name;
    change.existedBefore = existed;
    change.before = before;
    change.deferred = deferred;
    return change;
}

TEST(CInstallRecordTest, EveryFieldRoundTrips)
{
    const std::vector<InstallChange> changes = {
        Change(Kind::FileStarted, u"C:\\Program Files\\Sonora\\~Sonora.exe.tmp", u"", true),
        Change(Kind::ValueWritten, u"HKLM\\SOFTWARE\\Classes\\.mp3", u"", true, u"Old.File\tWith\ttabs"),
        Change(Kind::ValueWritten, u"HKCU\\Software\\Halvard", u"Multi\r\nline", true, u"a\nb\\c%41%"),
        Change(Kind::FileDeleted, u"C:\\Sonora\\Old.dll", u"", true, u"", true),
        Change(Kind::ShortcutCreated, u"C:\\Users\\Ünïcødé ♫\\Sonora.lnk", u"C:\\Sonora\\Sonora.exe"),
        Change(Kind::SharedFileCounted, u"C:\\windows\\system32\\hvcodec.dll", u"", false, u""),
        Change(Kind::InstallEnded, u"0"),
    };
    std::string text = CInstallRecord::Header();
    for (const InstallChange& change : changes) {
        const std::string line = CInstallRecord::EncodeLine(change);
        // One change, one line, whatever its fields hold.
        EXPECT_EQ(line.find('\n'), line.size() - 1) << line;
        text += line;
    }
    const CInstallRecord::Contents read = CInstallRecord::Parse(text);
    EXPECT_TRUE(read.problem.IsEmpty()) << read.problem.ToUtf8();
    EXPECT_EQ(read.damagedLines, 0u);
    ASSERT_EQ(read.changes.size(), changes.size());
    for (size_t i = 0; i < changes.size(); ++i) {
        SCOPED_TRACE(i);
        EXPECT_EQ(read.changes[i].kind, changes[i].kind);
        EXPECT_EQ(read.changes[i].path, changes[i].path);
        EXPECT_EQ(read.changes[i].name, changes[i].name);
        EXPECT_EQ(read.changes[i].existedBefore, changes[i].existedBefore);
        EXPECT_EQ(read.changes[i].before, changes[i].before);
        EXPECT_EQ(read.changes[i].deferred, changes[i].deferred);
    }
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
        {"unknown version", "HVInstallRecord\t2\r\n" + a, 0, 0, true},
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

#include "install/CSelectPathRules.h"

#include "BracketTranslator.h"
#include "SelectPathMachine.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>

namespace
{
std::string U8(const HVString& s) { return s.ToUtf8(); }

constexpr uint64_t MiB = uint64_t(1) << 20;

// The entered folder, the check that refuses it (0: accepted) and the folder it normalises to.
TEST(CSelectPathRules, RefusesWithTheFirstFailingCheck)
{
    const struct { const char16_t* entered; int check; const char16_t* folder; } rows[] = {
        {u"", 1, u""}, {u"   ", 1, u""}, {u"\t ", 1, u""}, {u"C:\\", 2, u"C:\\"}, {u"C:", 2, u"C:\\"},
        {u"d:\\\\", 2, u"d:\\"}, {u"C:\\Foo\\..", 2, u"C:\\"}, {u"\\\\server\\share", 2, u"\\\\server\\share\\"},
        {u"\\", 2, u"\\"}, {u"C:\\Windows", 3, u"C:\\Windows\\"},
        {u"c:\\WINDOWS\\System32\\Sonora", 3, u"c:\\WINDOWS\\System32\\Sonora\\"},
        {u"C:/Windows/Sonora", 3, u"C:\\Windows\\Sonora\\"},
        {u"C:\\WindowsApps\\Sonora", 0, u"C:\\WindowsApps\\Sonora\\"},
        {u"C:\\Program Files", 4, u"C:\\Program Files\\"}, {u"c:\\program files\\ ", 4, u"c:\\program files\\"},
        {u"C:\\Program Files\\Halvard\\Sonora", 0, u"C:\\Program Files\\Halvard\\Sonora\\"},
        {u"C:\\Program Files (x86)\\Sonora", 0, u"C:\\Program Files (x86)\\Sonora\\"},
        {u"D:\\Games\\Other Player", 5, u"D:\\Games\\Other Player\\"},
        {u"d:\\games\\other player\\Skins", 5, u"d:\\games\\other player\\Skins\\"},
        {u"C:\\Tools\\Editor\\", 5, u"C:\\Tools\\Editor\\"}, {u"C:\\Tools\\Editor2", 0, u"C:\\Tools\\Editor2\\"},
        {u"D:\\Games", 0, u"D:\\Games\\"}, {u"  E:\\Music Player  ", 0, u"E:\\Music Player\\"},
        {u"E:\\Music.\\Player ", 0, u"E:\\Music\\Player\\"}, {u"E:\\a<b>c|d?", 0, u"E:\\a_b_c_d_\\"},
        {u"Sonora", 6, u"Sonora\\"}, {u"Halvard\\Sonora", 6, u"Halvard\\Sonora\\"}, {u"\\Sonora", 6, u"\\Sonora\\"},
        {u"C:Sonora", 6, u"C:Sonora\\"}, {u"..\\..\\Sonora", 6, u"..\\..\\Sonora\\"},
    };
    for (const auto& row : rows) {
        SelectPathMachine machine;
        CSelectPathResult r = CSelectPathRules::Check(row.entered, u"Sonora", machine);
        EXPECT_EQ(r.check, row.check) << U8(HVString(row.entered));
        EXPECT_EQ(r.accepted, row.check == 0);
        EXPECT_EQ(U8(r.folder), U8(HVString(row.folder)));
        // Only checks 6 and 7 are reached with a folder that gets created.
        EXPECT_EQ(machine.created.size(), (row.check == 0 || row.check == 7) ? 1u : 0u);
    }
}

// The refusals' other texts are read from the real wizard, end to end; too little space has its own box.
TEST(CSelectPathRules, FreeSpaceIsMeasuredInWholeMiBAgainstThirty)
{
    struct Row { std::optional<uint64_t> free; bool accepted; } rows[] = {
        {30 * MiB, true},     {30 * MiB - 1, false}, {31 * MiB - 1, true}, {0, false},
        {std::nullopt, true}, {UINT64_MAX, true},    {29 * MiB, false},
    };
    for (const Row& row : rows) {
        SelectPathMachine machine;
        machine.freeBytes = row.free;
        CSelectPathResult r = CSelectPathRules::Check(u"E:\\Sonora", u"Sonora", machine);
        EXPECT_EQ(r.accepted, row.accepted) << (row.free ? *row.free : 0);
        EXPECT_EQ(r.check, row.accepted ? 0 : 7);
        // The folder was created before space was looked at, even when refused.
        EXPECT_EQ(machine.created.size(), 1u);
        EXPECT_EQ(U8(r.title), row.accepted ? "" : "Insufficient Disk Space");
        EXPECT_EQ(U8(r.text), row.accepted ? "" : "There is not enough free space on this drive to install Sonora.\r\n\r\n"
                                                  "Sonora installation requires at least 20 MB of free disk space.\r\n\r\n"
                                                  "Please select a different drive or free more space on the selected drive.");
    }
}

TEST(CSelectPathRules, EarlierChecksWinOverLaterOnesAndUnreadFoldersRefuseNothing)
{
    SelectPathMachine machine;
    machine.windows = u"C:\\Windows\\";
    machine.protectedFolders = {u"C:\\Windows\\Apps\\", u"C:\\Program Files\\"};
    machine.createOk = false;
    EXPECT_EQ(CSelectPathRules::Check(u"C:\\Windows\\Apps\\x", u"S", machine).check, 3);
    EXPECT_EQ(CSelectPathRules::Check(u"C:\\Program Files", u"S", machine).check, 4);
    EXPECT_EQ(CSelectPathRules::Check(u"C:\\Program Files\\x", u"S", machine).check, 5);
    machine.freeBytes = 0;  // never reached: check 6 decides first
    EXPECT_EQ(CSelectPathRules::Check(u"C:\\Elsewhere", u"S", machine).check, 6);
    ASSERT_EQ(machine.created.size(), 1u);
    EXPECT_EQ(U8(machine.created[0]), "C:\\Elsewhere\\");

    // A machine whose folders couldn't be read must not refuse every folder.
    SelectPathMachine unread;
    unread.windows.Empty();
    unread.programFiles.Empty();
    unread.protectedFolders = {HVString(), HVString(u"")};
    EXPECT_TRUE(CSelectPathRules::Check(u"C:\\Sonora", u"Sonora", unread).accepted);
}

TEST(CSelectPathRules, TranslatesEachPartBeforeFillingInTheName)
{
    const BracketTranslator translator({{u"%s can not be installed to an empty folder.\r\n\r\n", u"Leer: %s.\r\n\r\n"},
                                        {u"Failed to create %s directory.", u"Ordner %s nicht erstellt."}});
    SelectPathMachine machine;
    CSelectPathResult r = CSelectPathRules::Check(u"", u"%s", machine);   // a name with a marker stays literal
    EXPECT_EQ(U8(r.title), "[Invalid Destination Folder]");
    EXPECT_EQ(U8(r.text), "Leer: %s.\r\n\r\n[Please enter a new destination folder.]");
    machine.createOk = false;
    r = CSelectPathRules::Check(u"F:\\x", u"Sonora", machine);
    EXPECT_EQ(U8(r.title), "[Error]");
    EXPECT_EQ(U8(r.text), "Ordner F:\\x\\ nicht erstellt.");
}

TEST(CSelectPathRules, ProposesTheFirstKnownFolderInOrder)
{
    // The machine's earlier installation and remembered folder; what the wizard knows (portable,
    // earlier installation found, current destination, InstallToPath, the name, the answered
    // folder); the proposal.
    using In = CSelectPathRules::ProposalInput;
    const std::u16string_view e = u"C:\\Earlier\\", r = u"C:\\Rem\\", x = u"C:\\Xml\\";
    const struct { const char* name; HVString earlier, remembered; In in; const char16_t* expected; } rows[] = {
        {"portable is always empty", e, r, {true, true, u"C:\\Old\\", x, u"Sonora", u""}, u""},
        {"current destination kept", e, r, {false, true, u"C:\\Typed\\", x, u"Sonora", u""}, u"C:\\Typed\\"},
        {"earlier installation", e, r, {false, true, u"", x, u"Sonora", u""}, u"C:\\Earlier\\"},
        {"earlier folder ignored when not found", e, u"C:\\Rem", {false, false, u"", x, u"Sonora", u""}, u"C:\\Rem\\"},
        {"found but no folder", u"", r, {false, true, u"", x, u"Sonora", u""}, u"C:\\Rem\\"},
        {"remembered (x86) discarded", u"", u"C:\\Program Files (x86)\\Halvard\\Sonora\\", {false, false, u"", x, u"Sonora", u""},
         u"C:\\Xml\\"},
        {"remembered (X86) discarded", u"", u"C:\\Program Files (X86)\\S\\", {false, false, u"", u"", u"Sonora", u""},
         u"C:\\Program Files\\Halvard\\Sonora\\"},
        {"install description", u"", u"", {false, false, u"", u"D:\\From Xml", u"Sonora", u""}, u"D:\\From Xml\\"},
        {"built from Program Files", u"", u"", {false, false, u"", u"", u"Sonora", u""}, u"C:\\Program Files\\Halvard\\Sonora\\"},
        {"a typed destination stays as typed", u"", u"", {false, false, u"E:\\Typed  ", u"", u"Sonora", u""}, u"E:\\Typed  "},
        {"portable: what an answer file says was typed", e, u"", {true, true, u"C:\\Old\\", u"", u"Sonora", u"F:\\Portable\\"},
         u"F:\\Portable\\"},
    };
    for (const auto& row : rows) {
        SelectPathMachine machine;
        machine.earlier = row.earlier;
        machine.remembered = row.remembered;
        EXPECT_EQ(U8(CSelectPathRules::Propose(row.in, machine)), U8(HVString(row.expected))) << row.name;
    }
    // Program Files read without its backslash: still one between it and the company.
    SelectPathMachine bare;
    bare.programFiles = u"C:\\Program Files";
    EXPECT_EQ(U8(CSelectPathRules::Propose(rows[8].in, bare)), "C:\\Program Files\\Halvard\\Sonora\\");
}
}

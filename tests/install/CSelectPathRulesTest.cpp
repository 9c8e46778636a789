#include "install/CSelectPathRules.h"

#include "foundation/HVTranslator.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>

namespace
{
std::string U8(const HVString& s) { return s.ToUtf8(); }

// A machine described by plain fields; records what the rules asked it to create.
class FakeMachine : public ISelectPathMachine
{
public:
    HVString windows = u"C:\\Windows";
    HVString programFiles = u"C:\\Program Files\\";
    std::vector<HVString> protectedFolders{u"D:\\Games\\Other Player\\", u"C:\\Tools\\Editor"};
    HVString remembered;
    HVString earlier;
    bool createOk = true;
    std::optional<uint64_t> freeBytes = uint64_t(1) << 40;
    mutable std::vector<HVString> created;

    HVString WindowsFolder() const override { return windows; }
    HVString ProgramFilesFolder() const override { return programFiles; }
    std::vector<HVString> ProtectedFolders() const override { return protectedFolders; }
    HVString RememberedFolder() const override { return remembered; }
    HVString EarlierInstallationFolder() const override { return earlier; }
    bool MakeDirectoryTree(const HVString& folder) override
    {
        created.push_back(folder);
        return createOk;
    }
    bool FreeBytes(const HVString&, uint64_t& bytes) const override
    {
        if (!freeBytes)
            return false;
        bytes = *freeBytes;
        return true;
    }
};

constexpr uint64_t MiB = uint64_t(1) << 20;

struct CheckRow
{
    const char16_t* entered;
    int check;              // 0: accepted
    const char16_t* folder; // the normalised folder
};

class CSelectPathCheckTest : public ::testing::TestWithParam<CheckRow>
{};

TEST_P(CSelectPathCheckTest, RefusesWithTheFirstFailingCheck)
{
    const CheckRow& row = GetParam();
    FakeMachine machine;
    CSelectPathResult r = CSelectPathRules::Check(row.entered, u"Sonora", machine);
    EXPECT_EQ(r.check, row.check) << U8(HVString(row.entered));
    EXPECT_EQ(r.accepted, row.check == 0);
    EXPECT_EQ(U8(r.folder), U8(HVString(row.folder)));
    // Only checks 6 and 7 are reached with a folder that gets created.
    EXPECT_EQ(machine.created.size(), (row.check == 0 || row.check == 7) ? 1u : 0u);
}

INSTANTIATE_TEST_SUITE_P(
    Rows, CSelectPathCheckTest,
    ::testing::Values(
        CheckRow{u"", 1, u""}, CheckRow{u"   ", 1, u""}, CheckRow{u"\t ", 1, u""},
        CheckRow{u"C:\\", 2, u"C:\\"}, CheckRow{u"C:", 2, u"C:\\"}, CheckRow{u"d:\\\\", 2, u"d:\\"},
        CheckRow{u"C:\\Foo\\..", 2, u"C:\\"}, CheckRow{u"\\\\server\\share", 2, u"\\\\server\\share\\"},
        CheckRow{u"\\", 2, u"\\"},
        CheckRow{u"C:\\Windows", 3, u"C:\\Windows\\"}, CheckRow{u"c:\\WINDOWS\\System32\\Sonora", 3, u"c:\\WINDOWS\\System32\\Sonora\\"},
        CheckRow{u"C:/Windows/Sonora", 3, u"C:\\Windows\\Sonora\\"},
        CheckRow{u"C:\\WindowsApps\\Sonora", 0, u"C:\\WindowsApps\\Sonora\\"},
        CheckRow{u"C:\\Program Files", 4, u"C:\\Program Files\\"}, CheckRow{u"c:\\program files\\ ", 4, u"c:\\program files\\"},
        CheckRow{u"C:\\Program Files\\Halvard\\Sonora", 0, u"C:\\Program Files\\Halvard\\Sonora\\"},
        CheckRow{u"C:\\Program Files (x86)\\Sonora", 0, u"C:\\Program Files (x86)\\Sonora\\"},
        CheckRow{u"D:\\Games\\Other Player", 5, u"D:\\Games\\Other Player\\"},
        CheckRow{u"d:\\games\\other player\\Skins", 5, u"d:\\games\\other player\\Skins\\"},
        CheckRow{u"C:\\Tools\\Editor\\", 5, u"C:\\Tools\\Editor\\"},
        CheckRow{u"C:\\Tools\\Editor2", 0, u"C:\\Tools\\Editor2\\"},
        CheckRow{u"D:\\Games", 0, u"D:\\Games\\"},
        CheckRow{u"  E:\\Music Player  ", 0, u"E:\\Music Player\\"},
        CheckRow{u"E:\\Music.\\Player ", 0, u"E:\\Music\\Player\\"},
        CheckRow{u"E:\\a<b>c|d?", 0, u"E:\\a_b_c_d_\\"},
        CheckRow{u"Sonora", 6, u"Sonora\\"}, CheckRow{u"Halvard\\Sonora", 6, u"Halvard\\Sonora\\"},
        CheckRow{u"\\Sonora", 6, u"\\Sonora\\"}, CheckRow{u"C:Sonora", 6, u"C:Sonora\\"},
        CheckRow{u"..\\..\\Sonora", 6, u"..\\..\\Sonora\\"}));

// The refusals' other texts are read from the real wizard, end to end.
TEST(CSelectPathRules, TooLittleSpaceIsRefusedWithItsOwnBox)
{
    FakeMachine machine;
    machine.freeBytes = 5 * MiB;
    const CSelectPathResult r = CSelectPathRules::Check(u"E:\\Sonora", u"Sonora", machine);
    ASSERT_EQ(r.check, 7);
    EXPECT_EQ(U8(r.title), "Insufficient Disk Space");
    EXPECT_EQ(U8(r.text), "There is not enough free space on this drive to install Sonora.\r\n\r\n"
                          "Sonora installation requires at least 20 MB of free disk space.\r\n\r\n"
                          "Please select a different drive or free more space on the selected drive.");
}

TEST(CSelectPathRules, FreeSpaceIsMeasuredInWholeMiBAgainstThirty)
{
    struct Row
    {
        std::optional<uint64_t> free;
        bool accepted;
    } rows[] = {
        {30 * MiB, true},     {30 * MiB - 1, false}, {31 * MiB - 1, true}, {0, false},
        {std::nullopt, true}, {UINT64_MAX, true},    {29 * MiB, false},
    };
    for (const Row& row : rows) {
        FakeMachine machine;
        machine.freeBytes = row.free;
        CSelectPathResult r = CSelectPathRules::Check(u"E:\\Sonora", u"Sonora", machine);
        EXPECT_EQ(r.accepted, row.accepted) << (row.free ? *row.free : 0);
        EXPECT_EQ(r.check, row.accepted ? 0 : 7);
        // The folder was created before space was looked at, even when refused.
        EXPECT_EQ(machine.created.size(), 1u);
    }
}

TEST(CSelectPathRules, EarlierChecksWinOverLaterOnes)
{
    FakeMachine machine;
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
}

TEST(CSelectPathRules, EmptyMachineFoldersRefuseNothing)
{
    // A machine whose folders couldn't be read must not refuse every folder.
    FakeMachine machine;
    machine.windows.Empty();
    machine.programFiles.Empty();
    machine.protectedFolders = {HVString(), HVString(u"")};
    EXPECT_TRUE(CSelectPathRules::Check(u"C:\\Sonora", u"Sonora", machine).accepted);
}

class PrefixTranslator : public IHVTranslator
{
public:
    HVString Translate(const HVString& english) const override
    {
        if (english == u"%s can not be installed to an empty folder.\r\n\r\n")
            return u"Leer: %s.\r\n\r\n";
        if (english == u"Failed to create %s directory.")
            return u"Ordner %s nicht erstellt.";
        return u"[" + english + u"]";
    }
};

TEST(CSelectPathRules, TranslatesEachPartBeforeFillingInTheName)
{
    PrefixTranslator translator;
    HVTranslator::Set(&translator);
    FakeMachine machine;
    CSelectPathResult r = CSelectPathRules::Check(u"", u"%s", machine);   // a name with a marker stays literal
    EXPECT_EQ(U8(r.title), "[Invalid Destination Folder]");
    EXPECT_EQ(U8(r.text), "Leer: %s.\r\n\r\n[Please enter a new destination folder.]");
    machine.createOk = false;
    r = CSelectPathRules::Check(u"F:\\x", u"Sonora", machine);
    EXPECT_EQ(U8(r.title), "[Error]");
    EXPECT_EQ(U8(r.text), "Ordner F:\\x\\ nicht erstellt.");
    HVTranslator::Set(nullptr);
}

struct ProposalRow
{
    const char* name;
    bool portable;
    bool earlierFound;
    const char16_t* current;
    const char16_t* earlier;
    const char16_t* remembered;
    const char16_t* installToPath;
    const char16_t* expected;
};

TEST(CSelectPathRules, ProposesTheFirstKnownFolderInOrder)
{
    const ProposalRow rows[] = {
        {"portable is always empty", true, true, u"C:\\Old\\", u"C:\\Earlier\\", u"C:\\Rem\\", u"C:\\Xml\\", u""},
        {"current destination kept", false, true, u"C:\\Typed\\", u"C:\\Earlier\\", u"C:\\Rem\\", u"C:\\Xml\\", u"C:\\Typed\\"},
        {"earlier installation", false, true, u"", u"C:\\Earlier\\", u"C:\\Rem\\", u"C:\\Xml\\", u"C:\\Earlier\\"},
        {"earlier folder ignored when not found", false, false, u"", u"C:\\Earlier\\", u"C:\\Rem", u"C:\\Xml\\", u"C:\\Rem\\"},
        {"found but no folder", false, true, u"", u"", u"C:\\Rem\\", u"C:\\Xml\\", u"C:\\Rem\\"},
        {"remembered (x86) discarded", false, false, u"", u"", u"C:\\Program Files (x86)\\Halvard\\Sonora\\", u"C:\\Xml\\", u"C:\\Xml\\"},
        {"remembered (X86) discarded", false, false, u"", u"", u"C:\\Program Files (X86)\\S\\", u"", u"C:\\Program Files\\Halvard\\Sonora\\"},
        {"install description", false, false, u"", u"", u"", u"D:\\From Xml", u"D:\\From Xml\\"},
        {"built from Program Files", false, false, u"", u"", u"", u"", u"C:\\Program Files\\Halvard\\Sonora\\"},
        {"a typed destination stays as typed", false, false, u"E:\\Typed  ", u"", u"", u"", u"E:\\Typed  "},
    };
    for (const ProposalRow& row : rows) {
        FakeMachine machine;
        machine.earlier = row.earlier;
        machine.remembered = row.remembered;
        CSelectPathRules::ProposalInput in;
        in.portable = row.portable;
        in.earlierInstallationFound = row.earlierFound;
        in.currentDestination = row.current;
        in.installToPath = row.installToPath;
        in.displayName = u"Sonora";
        EXPECT_EQ(U8(CSelectPathRules::Propose(in, machine)), U8(HVString(row.expected))) << row.name;
    }
}

TEST(CSelectPathRules, BuildsTheDefaultWithOneBackslashAfterProgramFiles)
{
    FakeMachine machine;
    CSelectPathRules::ProposalInput in;
    in.displayName = u"Sonora";
    machine.programFiles = u"C:\\Program Files";
    EXPECT_EQ(U8(CSelectPathRules::Propose(in, machine)), "C:\\Program Files\\Halvard\\Sonora\\");
    machine.programFiles = u"C:\\Program Files\\";
    EXPECT_EQ(U8(CSelectPathRules::Propose(in, machine)), "C:\\Program Files\\Halvard\\Sonora\\");
}
}

#include "install/win/CProtectedFolders.h"

#include "foundation/win/HVFileSystem.h"

#include "UninstallEntriesTest.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

namespace
{
std::string U8(const HVString& s) { return s.ToUtf8(); }

CProtectedFolders::Context TestContext()
{
    CProtectedFolders::Context c;
    c.ownUninstallKey = u"Sonora 32";
    c.earlierInstallationFolder = u"C:\\Program Files\\Halvard\\Sonora";
    c.windowsFolder = u"C:\\windows";
    c.programFilesFolders = {u"C:\\Program Files\\", u"C:\\Program Files (x86)"};
    return c;
}

TEST(CProtectedFolders, DecidesEachEntry)
{
    const struct { const char16_t *entry, *location, *folder; } rows[] = {   // folder nullptr: left out
        {u"Other", u"D:\\Apps\\Other", u"D:\\Apps\\Other\\"}, {u"Other", u"\"D:\\Apps\\Quoted\\\"", u"D:\\Apps\\Quoted\\"},
        {u"Other", u"  D:/Apps/Slashed  ", u"D:\\Apps\\Slashed\\"}, {u"Other", u"%SystemDrive%\\Expanded", u"C:\\Expanded\\"},
        {u"Other", u"C:\\Windows\\System32", u"C:\\Windows\\System32\\"},
        {u"Other", u"C:\\Program Files\\Halvard\\Sonora\\Plugins\\X", u"C:\\Program Files\\Halvard\\Sonora\\Plugins\\X\\"},
        {u"Other", u"\\\\server\\share\\app", u"\\\\server\\share\\app\\"}, {u"Other", u"", nullptr},
        {u"Other", u"   ", nullptr}, {u"Other", u"\"\"", nullptr}, {u"Other", u"C:\\", nullptr},
        {u"Other", u"C:", nullptr}, {u"Other", u"\\\\server\\share", nullptr}, {u"Other", u"relative\\path", nullptr},
        {u"Other", u"\\rooted", nullptr}, {u"Other", u"c:\\WINDOWS\\", nullptr},
        {u"Other", u"C:\\Program Files", nullptr}, {u"Other", u"C:\\PROGRAM FILES (X86)\\", nullptr},
        {u"Other", u"C:\\Program Files\\Halvard\\Sonora", nullptr},
        {u"Other", u"c:\\program files\\halvard\\", nullptr}, {u"Sonora 32", u"D:\\X", nullptr},
        {u"SONORA 32", u"D:\\X", nullptr},
        // Only the key the installations record names is the product's own.
        {u"Sonora Synth", u"D:\\X", u"D:\\X\\"},
        {u"Sonora", u"D:\\X", u"D:\\X\\"},
    };
    for (const auto& row : rows) {
        HVString folder;
        const bool accepted = CProtectedFolders::Accept(row.entry, row.location, TestContext(), folder);
        EXPECT_EQ(accepted, row.folder != nullptr) << U8(row.location);
        if (accepted && row.folder) {
            EXPECT_EQ(U8(folder), U8(row.folder)) << U8(row.location);
        }
    }
}

// Once in the list, whatever its case.
bool Contains(const std::vector<HVString>& folders, const char16_t* folder)
{
    return std::count_if(folders.begin(), folders.end(), [&](const HVString& f) { return f.EqualsNoCase(folder); }) == 1;
}

using UninstallEntries = UninstallEntriesTest;

TEST_F(UninstallEntries, ReadsBothRootsAndViews)
{
    Add(HKEY_LOCAL_MACHINE, HVRegView::Key64, prefix + u"A", u"D:\\IW Test\\Machine64");
    Add(HKEY_LOCAL_MACHINE, HVRegView::Key32, prefix + u"B", u"D:\\IW Test\\Machine32\\");
    Add(HKEY_CURRENT_USER, HVRegView::Key64, prefix + u"C", u"D:\\IW Test\\User");
    Add(HKEY_CURRENT_USER, HVRegView::Key32, prefix + u"D", u"%SystemDrive%\\IW Test\\Expanded", REG_EXPAND_SZ);
    Add(HKEY_LOCAL_MACHINE, HVRegView::Key32, prefix + u"Again", u"d:\\iw test\\MACHINE64");
    Add(HKEY_LOCAL_MACHINE, HVRegView::Key64, prefix + u"Empty", u"");
    Add(HKEY_LOCAL_MACHINE, HVRegView::Key64, u"Sonora " + prefix, u"D:\\IW Test\\Own Entry");
    Add(HKEY_LOCAL_MACHINE, HVRegView::Key64, prefix + u"Earlier", u"D:\\IW Test\\Earlier Sonora");

    CProtectedFolders::Context c = CProtectedFolders::ThisMachine(u"Sonora " + prefix, u"D:\\IW Test\\Earlier Sonora\\");
    ASSERT_FALSE(c.windowsFolder.IsEmpty());
    ASSERT_FALSE(c.programFilesFolders.empty());
    Add(HKEY_LOCAL_MACHINE, HVRegView::Key64, prefix + u"Win", c.windowsFolder);
    Add(HKEY_LOCAL_MACHINE, HVRegView::Key64, prefix + u"PF", c.programFilesFolders[0]);
    Add(HKEY_LOCAL_MACHINE, HVRegView::Key64, prefix + u"Root", u"C:\\");
    const std::vector<HVString> folders = CProtectedFolders::Read(c);
    EXPECT_TRUE(Contains(folders, u"D:\\IW Test\\Machine64\\"));   // once, though listed twice
    EXPECT_TRUE(Contains(folders, u"D:\\IW Test\\Machine32\\"));
    EXPECT_TRUE(Contains(folders, u"D:\\IW Test\\User\\"));
    EXPECT_TRUE(Contains(folders, u"C:\\IW Test\\Expanded\\"));
    for (const HVString& f : folders) {
        EXPECT_GT(f.GetLength(), 3) << U8(f);
        EXPECT_EQ(f.FindNoCase(u"Own Entry"), HVString::npos) << U8(f);
        EXPECT_EQ(f.FindNoCase(u"Earlier Sonora"), HVString::npos) << U8(f);
        EXPECT_FALSE(f.EqualsNoCase(HVFileSystem::NormalizeFolderPath(c.windowsFolder).view())) << U8(f);
        EXPECT_FALSE(f.EqualsNoCase(HVFileSystem::NormalizeFolderPath(c.programFilesFolders[0]).view())) << U8(f);
    }
}
}

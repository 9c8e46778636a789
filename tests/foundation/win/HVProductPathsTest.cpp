#include "foundation/win/HVProductPaths.h"

#include "foundation/HVLog.h"
#include "foundation/win/HVFileSystem.h"
#include "foundation/win/HVLoadLibrary.h"

#include "BracketTranslator.h"
#include "FreshMachineTest.h"
#include "RecordingLogger.h"
#include "ScopedRegString.h"
#include "TestPaths.h"
#include "TestRegistry.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

namespace
{
const HVString kTestInstallation = u"IW Unit Test Installation";
const std::wstring kTestKey = (HVString(HVProductPaths::kInstallationsKey) + u"\\" + kTestInstallation).w();

// The installations records, in both views, start and end as a fresh machine has them.
class HVProductPathsTest : public e2e::FreshMachineTest
{
protected:
    void Record(HVRegView view, const HVString& path)
    {
        ASSERT_TRUE(e2e::RegSetString(HKEY_LOCAL_MACHINE, kTestKey, L"Path", path.w(), view));
    }
};

TEST_F(HVProductPathsTest, InstallationFolderNativeViewFirstThen32Bit)
{
    const HVString x86 = u"C:\\Program Files (x86)\\Halvard\\Sonora\\";
    EXPECT_EQ(HVProductPaths::GetInstallationFolder(kTestInstallation), u"");
    Record(HVRegView::Key32, x86 + u"Sonora.exe");
    EXPECT_EQ(HVProductPaths::GetInstallationFolder(kTestInstallation), x86);
    // A native Path of another type, or a blank one, counts as none.
    ASSERT_TRUE(e2e::RegSetDword(HKEY_LOCAL_MACHINE, kTestKey, L"Path", 1, HVRegView::Key64));
    EXPECT_EQ(HVProductPaths::GetInstallationFolder(kTestInstallation), x86);
    Record(HVRegView::Key64, u"   ");
    EXPECT_EQ(HVProductPaths::GetInstallationFolder(kTestInstallation), x86);
    Record(HVRegView::Key64, u"C:\\Program Files\\Halvard\\Sonora\\Sonora.exe");
    EXPECT_EQ(HVProductPaths::GetInstallationFolder(kTestInstallation), u"C:\\Program Files\\Halvard\\Sonora\\");

    const auto installations = HVProductPaths::ListInstallations();
    const auto listed = std::ranges::find_if(installations, [](const HVProductPaths::Installation& installation) {
        return installation.keyName == kTestInstallation && installation.view == HVRegView::Native;
    });
    ASSERT_NE(listed, installations.end());
    EXPECT_EQ(listed->folder, u"C:\\Program Files\\Halvard\\Sonora\\");
}

TEST_F(HVProductPathsTest, FolderOfAPathValue)
{
    const HVString scratch = HVString(e2e::ScratchFolder(L"HVProductPaths").c_str());
    EXPECT_EQ(HVProductPaths::FolderOfInstallationPath(u"C:\\P\\Sonora.exe"), u"C:\\P\\");
    EXPECT_EQ(HVProductPaths::FolderOfInstallationPath(u"C:\\P\\"), u"C:\\P\\");
    EXPECT_EQ(HVProductPaths::FolderOfInstallationPath(HVFileSystemPath::RemoveBackslash(scratch)), scratch);
    EXPECT_EQ(HVProductPaths::FolderOfInstallationPath(u""), u"");
}

TEST_F(HVProductPathsTest, ProgramFilesFallsBackWhenTheValueIsMissingOrOfAnotherType)
{
    const std::wstring key = L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion";
    // Put back as it was when the test ends.
    const e2e::ScopedRegString programFiles(HKEY_LOCAL_MACHINE, key, L"ProgramFilesDir", L"D:\\Programs");
    EXPECT_EQ(HVProductPaths::GetProgramFilesFolder(), u"D:\\Programs\\");
    ASSERT_TRUE(e2e::RegSetDword(HKEY_LOCAL_MACHINE, key, L"ProgramFilesDir", 7));
    EXPECT_EQ(HVProductPaths::GetProgramFilesFolder(), u"C:\\Program Files\\");
    ASSERT_TRUE(e2e::RegDeleteValueIfPresent(HKEY_LOCAL_MACHINE, key, L"ProgramFilesDir"));
    EXPECT_EQ(HVProductPaths::GetProgramFilesFolder(), u"C:\\Program Files\\");
}

TEST_F(HVProductPathsTest, UserAndProductFolders)
{
    const HVString data = HVProductPaths::GetUserDataFolder();
    EXPECT_TRUE(data.EndsWith(u"\\Halvard\\")) << data.ToUtf8();
    EXPECT_TRUE(HVFileSystemPath::IsAbsolute(data.view()));
    EXPECT_TRUE(HVProductPaths::GetMusicFolder().EndsWith(u"\\"));
    EXPECT_EQ(HVProductPaths::GetProgramFolder64(u"C:\\S"), u"C:\\S\\x64\\");
    EXPECT_EQ(HVProductPaths::GetProgramFolder64(u""), u"");
    EXPECT_EQ(HVProductPaths::GetRunningProgramFolder(), HVString(e2e::TestProgramFolder().c_str()));
    using R = HVProductPaths::Resource;
    const struct { R resource; const char16_t* folder; } cases[] = {
        {R::Skins, u"C:\\S\\Skins\\"},          {R::Visualizations, u"C:\\S\\Visualizations\\"},
        {R::MiniView, u"C:\\S\\Mini View\\"},   {R::LoungeView, u"C:\\S\\Lounge View\\"},
        {R::TrackInfo, u"C:\\S\\Track Info\\"}};
    for (const auto& c : cases)
        EXPECT_EQ(HVProductPaths::GetResourceFolder(u"C:\\S\\", c.resource), c.folder);
}

TEST(HVLoadLibraryTest, LoadsSystemLibrariesAndLogsFailures)
{
    RecordingLogger log;
    wchar_t system[MAX_PATH];
    ASSERT_GT(::GetSystemDirectoryW(system, MAX_PATH), 0u);
    DWORD error = 1;
    EXPECT_TRUE(HVLoadLibrary::Load(HVString(system) + u"\\version.dll", &error).IsValid());
    EXPECT_EQ(error, 0u);
    EXPECT_TRUE(log.Lines().empty());

    const HVString missing = HVString(e2e::TestProgramFolder().c_str()) + u"Missing Helper.dll";
    EXPECT_FALSE(HVLoadLibrary::Load(missing, &error).IsValid());
    EXPECT_EQ(error, static_cast<DWORD>(ERROR_MOD_NOT_FOUND));
    ASSERT_EQ(log.Lines().size(), 1u);
    EXPECT_EQ(std::to_string(log.Lines()[0].level) + " " + log.Lines()[0].Text(), "1 HVLoadLibrary: Loading " + missing.ToUtf8() + " failed, error: 126");

    EXPECT_FALSE(HVLoadLibrary::LoadProductLibrary(u"C:\\Sonora", u"Helper.dll").IsValid());
    ASSERT_EQ(log.Lines().size(), 2u);
    EXPECT_NE(log.Texts()[1].find("Loading C:\\Sonora\\x64\\Helper.dll failed"), std::string::npos) << log.Texts()[1];
}

TEST(HVLoadLibraryTest, CriticalErrorTextIsTranslatedBeforeFilling)
{
    EXPECT_EQ(HVLoadLibrary::CriticalErrorText(u"Helper.dll", u"Not found."),
              u"The following module has failed to load:\r\nHelper.dll\r\n\r\nIt has reported the following error:"
              u"\r\n\r\nNot found.\r\n\r\nPlease reinstall the latest version of the program.");
    {
        const BracketTranslator translator;
        EXPECT_EQ(HVLoadLibrary::CriticalErrorTitle(), u"[Critical Error]");
        EXPECT_TRUE(HVLoadLibrary::CriticalErrorText(u"Helper.dll", u"x").StartsWith(u"[The following module"));
    }
    EXPECT_FALSE(HVLoadLibrary::SystemErrorText(ERROR_MOD_NOT_FOUND).IsEmpty());
    EXPECT_FALSE(HVLoadLibrary::SystemErrorText(ERROR_MOD_NOT_FOUND).EndsWith(u"\n"));
}
}

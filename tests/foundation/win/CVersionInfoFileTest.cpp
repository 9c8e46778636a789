#include "foundation/CVersionInfo.h"

#include "foundation/HVSystemIdentity.h"
#include "foundation/win/HVFileSystem.h"

#include "TestPaths.h"

#include <gtest/gtest.h>

#include <thread>
#include <vector>

namespace
{
HVString Folder(const std::wstring& folder) { return HVString(folder.c_str()); }

// The sample libraries' versions are read through this class by SampleMedia's test.
TEST(CVersionInfoFileTest, NoVersionResourceOrNoFileIsZero)
{
    // Test programs are built without a version resource; a text file has none either.
    wchar_t self[MAX_PATH];
    ASSERT_GT(::GetModuleFileNameW(nullptr, self, MAX_PATH), 0u);
    for (const HVString& path : {HVString(self), Folder(e2e::TestProgramFolder()) + u"missing.dll", HVString(),
                                 Folder(e2e::MediaFolder()) + u"System\\Check Version\\HVSystemNotes.txt"}) {
        CVersionInfo v(9, 9, 9, 9);
        EXPECT_FALSE(v.Read(path)) << path.ToUtf8();
        EXPECT_FALSE(v.HasVersionResource());
        EXPECT_TRUE(v.IsZero());
        EXPECT_LT(v, CVersionInfo(0, 0, 0, 1));
    }
}

// The installer's own version resource says 1.0.0.0, also read from beyond 260 characters.
TEST(CVersionInfoFileTest, ReadsTheFixedFileVersion)
{
    HVString folder = Folder(e2e::ScratchFolder(L"CVersionInfo"));
    ASSERT_FALSE(folder.IsEmpty());
    for (int i = 0; i < 5; ++i)
        folder += HVString::Format(u"a folder name of some sixty characters to pass the limit %d\\", i);
    ASSERT_TRUE(HVFileSystem::MakeDirectoryTree(folder));
    const HVString wizard(e2e::InstallWizardPath().c_str());
    ASSERT_TRUE(HVFileSystem::CopyFile(wizard, folder + u"Sonora 32.exe", false));
    for (const HVString& path : {wizard, folder + u"Sonora 32.exe"}) {
        const CVersionInfo v(path);
        EXPECT_TRUE(v.HasVersionResource()) << path.ToUtf8();
        EXPECT_EQ(v.GetText(), u"1.0.0.0");
        EXPECT_EQ(v.GetShortText(), u"1.0.0");
    }
}

TEST(HVSystemIdentityCurrentTest, TheRunningSystemIsKnownAndReadOnce)
{
    const HVSystemIdentity& current = HVSystemIdentity::Current();
    EXPECT_GE(current.GetCode(), HVSystemIdentity::kWindowsNT);
    EXPECT_TRUE(current.GetName().StartsWith(u"Microsoft Windows ")) << current.GetName().ToUtf8();
    EXPECT_GE(current.GetMajor(), 5u);

    // The same answer on every thread, worked out once.
    std::vector<const HVSystemIdentity*> seen(4);
    std::vector<std::thread> threads;
    for (size_t i = 0; i < seen.size(); ++i)
        threads.emplace_back([&seen, i] { seen[i] = &HVSystemIdentity::Current(); });
    for (auto& t : threads)
        t.join();
    for (const HVSystemIdentity* s : seen)
        EXPECT_EQ(s, &current);

    // It agrees with the table for the numbers it read.
    const HVSystemIdentity again = HVSystemIdentity::FromVersion(HVSystemIdentity::Platform::NT, current.GetMajor(),
                                                                 current.GetMinor(), current.GetBuild(), u"");
    EXPECT_EQ(again.GetCode(), current.GetCode());
    EXPECT_EQ(again.GetName(), current.GetName());
}
}

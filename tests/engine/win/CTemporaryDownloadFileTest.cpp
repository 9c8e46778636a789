#include "engine/win/CTemporaryDownloadFile.h"

#include "E2ESupport.h"
#include "foundation/win/HVFileSystem.h"

#include <gtest/gtest.h>

// Read back through the system: no access for anyone but SYSTEM and administrators (under
// Wine, which keeps no descriptor of its own for files, SYSTEM and the owner), the file held
// against writers and deleters, and nothing left afterwards. Where the folder is, and that the
// program runs from it: DependenciesTest.
TEST(CTemporaryDownloadFileTest, OnlySystemAndAdministratorsReachTheFolderAndNothingIsLeft)
{
    std::wstring folder;
    {
        CTemporaryDownloadFile file;
        ASSERT_TRUE(file.Create(u"Setup.exe"));
        folder = file.Folder().w();
        const std::wstring sddl = e2e::SecurityDescriptorText(folder);
        EXPECT_NE(sddl.find(L"(A;OICI;FA;;;SY)"), std::wstring::npos) << e2e::Utf8(sddl);
        for (const wchar_t* others : {L";WD)", L";BU)", L";AU)", L";IU)"})
            EXPECT_EQ(sddl.find(others), std::wstring::npos) << e2e::Utf8(sddl);
        for (const bool reopened : {false, true}) {
            ASSERT_TRUE(!reopened || file.ReopenForReading());
            EXPECT_FALSE(HVFileSystem::OpenFile(file.Path(), GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE, OPEN_EXISTING));
            EXPECT_FALSE(DeleteFileW(file.Path().w()));
        }
    }
    EXPECT_FALSE(e2e::PathExists(folder));
}

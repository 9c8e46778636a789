// The folder a download lands in, read back through the system: made for this download, no
// access for anyone but SYSTEM and administrators (under Wine, whose files keep no security
// descriptor of their own, the owner and SYSTEM), the file held against writers, all gone after.
#include "engine/win/CTemporaryDownloadFile.h"

#include "foundation/win/HVFileSystem.h"

#include <gtest/gtest.h>

#include <aclapi.h>
#include <sddl.h>

#include <string>

TEST(CTemporaryDownloadFileTest, OnlySystemAndAdministratorsReachTheFolderAndNothingIsLeft)
{
    std::wstring folder;
    {
        CTemporaryDownloadFile file;
        ASSERT_TRUE(file.Create(u"Setup.exe"));
        folder = file.Folder().w();
        EXPECT_EQ(std::wstring(file.Path().w()), folder + L"Setup.exe");
        wchar_t windows[MAX_PATH] = {};
        GetWindowsDirectoryW(windows, MAX_PATH);
        EXPECT_EQ(folder.rfind(std::wstring(windows) + L"\\Temp\\Install Wizard Download ", 0), 0u);

        PSECURITY_DESCRIPTOR raw = nullptr;
        PACL dacl = nullptr;
        ASSERT_EQ(GetNamedSecurityInfoW(folder.c_str(), SE_FILE_OBJECT, DACL_SECURITY_INFORMATION, nullptr, nullptr, &dacl,
                                        nullptr, &raw), ERROR_SUCCESS);
        const HVLocalMemory descriptor(raw);
        LPWSTR text = nullptr;
        ASSERT_TRUE(ConvertSecurityDescriptorToStringSecurityDescriptorW(raw, SDDL_REVISION_1, DACL_SECURITY_INFORMATION, &text,
                                                                        nullptr));
        const HVLocalMemory textMemory(text);
        const std::wstring sddl(text);
        EXPECT_NE(sddl.find(L"(A;OICI;FA;;;SY)"), std::wstring::npos) << sddl.c_str();
        for (const wchar_t* everyone : {L";WD)", L";BU)", L";AU)", L";IU)"})
            EXPECT_EQ(sddl.find(everyone), std::wstring::npos) << sddl.c_str();

        // Nobody writes, renames or deletes it while it is ours, and the checked file is the held one.
        EXPECT_FALSE(HVFileSystem::OpenFile(file.Path(), GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE, OPEN_EXISTING));
        ASSERT_TRUE(file.ReopenForReading());
        EXPECT_FALSE(HVFileSystem::OpenFile(file.Path(), GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE, OPEN_EXISTING));
        EXPECT_FALSE(DeleteFileW(file.Path().w()));
    }
    EXPECT_EQ(GetFileAttributesW(folder.c_str()), INVALID_FILE_ATTRIBUTES);
}

#include "install/win/LoadCriticalLibrary.h"

#include "foundation/win/HVLoadLibrary.h"

#include "OwnDialog.h"
#include "TestPaths.h"

#include <gtest/gtest.h>

#include <atomic>
#include <thread>

namespace
{
TEST(LoadCriticalLibraryTest, CriticalFailureIsShownToTheUser)
{
    const HVString missing = HVString(e2e::TestProgramFolder().c_str()) + u"Missing Critical.dll";
    std::atomic<bool> loaded{true};
    std::thread loader([&] { loaded = LoadCriticalLibrary(missing, nullptr).IsValid(); });

    const HWND box = WaitForOwnDialog();
    const std::wstring title = WindowText(box);
    const HVString shown(WindowText(::GetDlgItem(box, 0xFFFF)).c_str());
    PressButton(box, IDOK);
    loader.join();
    EXPECT_FALSE(loaded);
    EXPECT_EQ(title, L"Critical Error");
    EXPECT_EQ(shown.ToUtf8(),
              HVLoadLibrary::CriticalErrorText(missing, HVLoadLibrary::SystemErrorText(ERROR_MOD_NOT_FOUND)).ToUtf8());
}
}

// The boxes of start-up that a test can call directly, read and answered from another thread
// as a user would.
#include "install/win/CNeedInternetExplorerDlg.h"
#include "install/win/ShowCriticalError.h"

#include "BoxAnswerer.h"
#include "E2ESupport.h"

#include <gtest/gtest.h>

using e2e::BoxAnswerer;

TEST(ShowCriticalError, TitleAndTextAsTheUserReadsThem)
{
    BoxAnswerer answerer(L"OK");
    ShowCriticalError();
    const e2e::WindowInfo& box = answerer.Join();
    EXPECT_EQ(box.title, L"Install Error");
    EXPECT_EQ(box.text, L"Install Wizard encountered a critical error and must close.\r\n\r\n"
                        L"It is recommended that you reboot your computer and install again.\r\n\r\n"
                        L"If this error persists, please uninstall and then install again.");
}

TEST(CNeedInternetExplorerDlg, QuitSetupIsTheOnlyWayOnWithoutABrowser)
{
    BoxAnswerer answerer(L"Quit Setup");
    EXPECT_EQ(CNeedInternetExplorerDlg().DoModal(), CNeedInternetExplorerDlg::kQuitSetup);
    const e2e::WindowInfo& box = answerer.Join();
    std::vector<std::wstring> captions;
    for (const e2e::ButtonInfo& button : box.buttons)
        captions.push_back(e2e::StripAccelerator(button.caption));
    EXPECT_EQ(captions, (std::vector<std::wstring>{L"Download", L"Quit Setup"}));
    EXPECT_NE(box.text.find(L"Install Wizard did not detect a new enough version of Microsoft Internet Explorer."),
              std::wstring::npos);
}

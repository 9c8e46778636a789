// The box of a critical error at start-up, read and answered from another thread as a user
// would.
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

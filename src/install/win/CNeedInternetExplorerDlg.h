#pragma once

#include <windows.h>

// Tells the user that the browser engine is too old, with a way to get a new one. Either
// button ends the setup: the new engine needs a fresh start of it.
class CNeedInternetExplorerDlg
{
public:
    enum Choice { kDownload = 100, kQuitSetup = 101 };

    static constexpr const wchar_t* kDownloadPage = L"https://www.microsoft.com/download/internet-explorer";

    explicit CNeedInternetExplorerDlg(HWND owner = nullptr) : owner_(owner) {}

    // Shows the box; "Download" also opens the download page in the default browser.
    Choice DoModal();

private:
    HWND owner_;
};

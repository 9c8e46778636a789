// The dependency step and the plug-in step end to end: InstallWizard.exe /Silent on a copy of
// the sample setup folder whose download server is a server of the test's own on 127.0.0.1,
// serving the sample dependency setup program well or badly; the machine read back afterwards.
#include "E2ESupport.h"

#include "foundation/win/HVFileSystem.h"
#include "foundation/win/HVSha256.h"

#include <gtest/gtest.h>

#include <windows.h>
#include <commctrl.h>

namespace
{
using e2e::kPropertiesKey;
const std::string kEdgeSetup = "MicrosoftEdgeWebview2Setup.exe";
const std::wstring kEdgeSetupW = L"MicrosoftEdgeWebview2Setup.exe";
const std::wstring kDamaged = L"The downloaded file is damaged or not the expected one.";
constexpr DWORD kExitCancelled = 1602;

std::wstring MarkerPath() { return e2e::TempFolder() + L"Sample Dependency Setup.log"; }

// Where downloads go: a folder of their own below the Windows folder's Temp (spelt as it is on
// the disk, as a program started there sees its path).
std::wstring DownloadsBase()
{
    wchar_t windows[MAX_PATH] = {}, temp[MAX_PATH] = {};
    GetWindowsDirectoryW(windows, MAX_PATH);
    return std::wstring(temp, GetLongPathNameW((std::wstring(windows) + L"\\Temp\\").c_str(), temp, MAX_PATH));
}

std::vector<std::wstring> LeftDownloads() { return e2e::FindFiles(DownloadsBase(), L"Install Wizard Download *"); }

class DependenciesTest : public e2e::FreshMachineTest
{
protected:
    void SetUp() override
    {
        FreshMachineTest::SetUp();
        DeleteFileW(MarkerPath().c_str());
        // What a run that was ended from outside could not remove.
        for (const std::wstring& name : LeftDownloads())
            e2e::DeleteTree(DownloadsBase() + name);
        program_ = e2e::ReadFileText(e2e::TestProgramFolder() + L"SampleDependencySetup.exe");
        ASSERT_GT(program_.size(), 1000u);
        const HVFileHandle file = HVFileSystem::OpenFile((e2e::TestProgramFolder() + L"SampleDependencySetup.exe").c_str(),
                                                         GENERIC_READ, FILE_SHARE_READ, OPEN_EXISTING);
        sha256_ = HVSha256::OfFile(file.Get()).ToUtf8();
        ASSERT_EQ(sha256_.size(), 64u);
        setup_ = e2e::CopySampleSetup(L"Dependencies");
        ASSERT_FALSE(setup_.empty());
    }
    void TearDown() override
    {
        FreshMachineTest::TearDown();
        DeleteFileW(MarkerPath().c_str());
    }

    // The WebView2 runtime's recorded version; nullopt takes it away.
    static void SetEdgeVersion(const std::optional<std::wstring>& pv)
    {
        if (pv)
            ASSERT_TRUE(e2e::RegSetString(HKEY_LOCAL_MACHINE, e2e::kWebView2ClientKey, L"pv", *pv, HVRegView::Key32));
        else
            ASSERT_TRUE(e2e::RegDeleteValueIfPresent(HKEY_LOCAL_MACHINE, e2e::kWebView2ClientKey, L"pv", HVRegView::Key32));
    }

    template <class Server>
    void PointAt(const Server& server, const std::string& pin)
    {
        ASSERT_TRUE(server.Started());
        ASSERT_TRUE(e2e::SetDescriptionText(setup_, "Installer/DownloadServer", server.BaseUrl()));
        ASSERT_TRUE(e2e::SetDescriptionText(setup_, "Installer/Downloads/" + kEdgeSetup + "/SHA256", pin));
    }

    e2e::SetupRun Install(std::vector<e2e::DialogRule> rules = {}, const std::wstring& more = L"",
                          std::function<bool(DWORD)> onPoll = {})
    {
        return e2e::RunSetup(setup_, L"/Silent" + more, std::move(rules), std::move(onPoll));
    }

    std::string program_;
    std::string sha256_;
    std::wstring setup_;
};

TEST_F(DependenciesTest, AnOlderWebView2RuntimeIsDownloadedCheckedAndRunSilently)
{
    const struct
    {
        std::optional<std::wstring> pv;  // the rest of the version rules: CDependencyRulesTest
        bool downloads;
        const wchar_t* more = L"";
        bool withoutDirectX = false;  // Wine's d3dx9_43.dll moved aside: DirectX is fetched instead
    } cases[] = {{L"119.0.2151.39", true}, {L"119.0.2151.40", false}, {L"120.0.0.0", false}, {std::nullopt, true},
                 {std::nullopt, false, L" /NoDependencies"}, {L"120.0.0.0", true, L"", true}};
    // Every file is where the server first sends the client elsewhere: each download follows
    // one redirect.
    e2e::LocalHttpServer server([&](const std::string& path) {
        if (path == "/" + kEdgeSetup || path == "/d3dx943.exe")
            return e2e::HttpReply{.status = 302, .statusText = "Found", .headers = {{"Location", "/moved" + path}}};
        return path == "/moved/" + kEdgeSetup || path == "/moved/d3dx943.exe"
                   ? e2e::HttpReply{.body = program_}
                   : e2e::HttpReply{.status = 404, .statusText = "Not Found"};
    });
    PointAt(server, sha256_);
    // A folder someone else made where the first download would go is passed by, untouched.
    const std::wstring planted = L"Install Wizard Download 1";
    const std::wstring plantedFile = DownloadsBase() + planted + L"\\HV Download (1).dat";
    ASSERT_TRUE(e2e::WriteFileBytes(plantedFile, "someone else's"));
    for (const auto& c : cases) {
        const std::string label = (c.pv ? e2e::Utf8(*c.pv) : "(missing)") + e2e::Utf8(c.more);
        ASSERT_TRUE(e2e::ResetToFreshMachine());
        DeleteFileW(MarkerPath().c_str());
        SetEdgeVersion(c.pv);
        const int requestsBefore = server.Requests();
        wchar_t system[MAX_PATH] = {};
        ::GetSystemDirectoryW(system, MAX_PATH);
        const std::wstring d3dx = std::wstring(system) + L"\\d3dx9_43.dll";
        if (c.withoutDirectX) {
            ASSERT_TRUE(::MoveFileW(d3dx.c_str(), (d3dx + L".aside").c_str()));
        }
        const e2e::SetupRun run = Install({}, c.more);
        if (c.withoutDirectX) {
            ASSERT_TRUE(::MoveFileW((d3dx + L".aside").c_str(), d3dx.c_str()));
        }
        ASSERT_TRUE(run.result.ExitedWith(0)) << label << run.Describe();
        EXPECT_EQ(server.Requests() - requestsBefore, c.downloads ? 2 : 0) << label;
        // Run with the silent switches (DirectX's setup has none) from its file in a folder of its
        // own, then removed.
        const std::string marker = e2e::Utf8(DownloadsBase()) + "Install Wizard Download 2\\HV Download (1).dat|" +
                                   (c.withoutDirectX ? "" : "/silent /install") + "\r\n";
        EXPECT_EQ(e2e::ReadFileText(MarkerPath()), c.downloads ? marker : "") << label;
        EXPECT_EQ(run.Logged(L"SHA-256 expected " + e2e::Wide(sha256_)), c.downloads) << run.Describe();
        EXPECT_EQ(LeftDownloads(), std::vector<std::wstring>{planted}) << label;
    }
    EXPECT_EQ(e2e::ReadFileText(plantedFile), "someone else's");
    e2e::DeleteTree(DownloadsBase() + planted);
}

// Every way a download can go wrong gives its box, runs nothing, leaves no file, and the
// install goes on to its end.
TEST_F(DependenciesTest, AFailedDownloadSaysWhyRunsNothingAndTheInstallGoesOn)
{
    SetEdgeVersion(std::nullopt);
    std::string tampered = program_;
    tampered[tampered.size() / 2] ^= 0x5A;
    const struct
    {
        const char* label;
        e2e::HttpReply reply;
        std::wstring text;  // after "Failed to download from \n<address>\n", or the whole text
        bool wholeText;
        std::wstring orWholeText = {};
        bool offline = false;      // the server is never asked
        std::wstring logged = {};  // a line the log holds besides
        bool pinned = true;        // unpinned, the length check alone must refuse the file
    } cases[] = {
        {"404", {.status = 404, .statusText = "Not Found"}, L"Server returned: 404 Not Found", false},
        {"500", {.status = 500, .statusText = "Internal Server Error"}, L"Server returned: 500 Internal Server Error", false},
        {"redirect loop", {.status = 302, .statusText = "Found", .headers = {{"Location", "/" + kEdgeSetup}}}, L"Internet error.", false},
        // A broken connection, or (as the reset may reach the reader) an early end: either way
        // fewer bytes than announced, never run.
        {"reset half way", {.body = program_, .resetAfter = program_.size() / 2}, L"Internet error.", false, kDamaged},
        // More than announced: the client stops at the announced length, so only the digest can
        // tell the tenth that came from the program.
        {"ten times the announced size", {.body = program_, .announced = program_.size() / 10}, kDamaged, true},
        // Unpinned: the length alone must refuse these.
        {"half of what was announced", {.body = program_.substr(0, program_.size() / 2), .announced = program_.size()},
         kDamaged, true, {}, false, {}, false},
        {"empty", {.body = ""}, kDamaged, true, {}, false, {}, false},
        {"tampered", {.body = tampered}, kDamaged, true, {}, false,
         L"SHA-256 expected " + e2e::Wide(sha256_) + L", got "},
        {"silent", {.silent = true}, L"Internet error.", false},
        {"unpinned over http", {.body = program_}, kDamaged, true, {}, false, L"refused: not over https all the way", false},
        // A byte now and then, never 30 seconds apart, stops at the deadline all the same.
        {"trickling", {.body = program_, .pieceBytes = 64, .pauseMs = 200}, L"Internet error.", false, {}, false,
         L"the download's deadline of 3000 ms has passed"},
        {"two gigabytes announced", {.body = program_, .announced = 2ull << 30}, L"Internet error.", false, {}, false,
         L"announces 2147483648 bytes"},
        {"no network", {.body = program_}, L"No network connection was found.", false, {}, true},
    };
    SetEnvironmentVariableW(L"IW_TEST_ONLY_DOWNLOAD_TIMEOUT_MS", L"1500");
    SetEnvironmentVariableW(L"IW_TEST_ONLY_DOWNLOAD_DEADLINE_MS", L"3000");
    for (const auto& c : cases) {
        SetEnvironmentVariableW(L"IW_TEST_ONLY_NO_NETWORK", c.offline ? L"1" : nullptr);
        e2e::LocalHttpServer server([&](const std::string&) { return c.reply; });
        PointAt(server, c.pinned ? sha256_ : "");
        const std::wstring address = e2e::Wide(server.BaseUrl() + kEdgeSetup);
        const std::wstring text = c.wholeText ? c.text : L"Failed to download from \n" + address + L"\n" + c.text;
        std::vector<e2e::DialogRule> rules = {{.title = L"Download Error", .text = text, .button = IDOK, .times = 1}};
        if (!c.orWholeText.empty())
            rules.push_back({.title = L"Download Error", .text = c.orWholeText, .button = IDOK, .times = 1});
        const e2e::SetupRun run = Install(rules);
        ASSERT_TRUE(run.result.ExitedWith(0)) << c.label << run.Describe();
        EXPECT_EQ(run.result.dialogs.size(), 1u) << c.label << run.Describe();
        EXPECT_EQ(e2e::ReadFileText(MarkerPath()), "") << c.label;
        EXPECT_TRUE(LeftDownloads().empty()) << c.label;
        // Went on: the product is in place.
        EXPECT_TRUE(e2e::PathExists(e2e::DefaultDestination() + L"Sonora.exe")) << c.label;
        if (!c.logged.empty()) {
            EXPECT_TRUE(run.Logged(c.logged)) << run.Describe();
        }
        EXPECT_FALSE(c.offline && server.Requests() > 0) << c.label;
    }
    SetEnvironmentVariableW(L"IW_TEST_ONLY_DOWNLOAD_DEADLINE_MS", nullptr);
}

// Without a pin only https vouches for a download: from a server whose certificate Windows
// trusts it runs; from one it doesn't trust it doesn't; a redirect from https to http is not
// followed even when the file is pinned.
TEST_F(DependenciesTest, HttpsAloneVouchesForAnUnpinnedDownload)
{
    SetEdgeVersion(std::nullopt);
    e2e::LocalHttpServer plain([&](const std::string&) { return e2e::HttpReply{.body = program_}; });
    using Mode = e2e::LocalHttpsServer::Mode;
    const struct { const char* label; Mode mode; bool trusted; std::string pin; bool runs; std::wstring logged; } cases[] = {
        {"trusted", Mode::Serve, true, "", true, L"none pinned, came over https"},
        {"untrusted certificate", Mode::Serve, false, "", false, L"error 12045"},  // ERROR_INTERNET_INVALID_CA
        {"redirected to http", Mode::Redirect, true, sha256_, false, L"redirects to " + e2e::Wide(plain.BaseUrl()) + kEdgeSetupW},
    };
    for (const auto& c : cases) {
        const e2e::LocalHttpsServer server(e2e::TestProgramFolder() + L"SampleDependencySetup.exe", c.mode, plain.BaseUrl(),
                                           c.trusted);
        PointAt(server, c.pin);
        DeleteFileW(MarkerPath().c_str());
        const e2e::SetupRun run = Install(c.runs ? std::vector<e2e::DialogRule>{} : std::vector<e2e::DialogRule>{{
            .title = L"Download Error", .text = L"\nInternet error.", .match = e2e::TextMatch::Contains, .button = IDOK, .times = 1}});
        ASSERT_TRUE(run.result.ExitedWith(0)) << c.label << run.Describe();
        EXPECT_EQ(run.result.dialogs.size(), c.runs ? 0u : 1u) << c.label << run.Describe();
        EXPECT_EQ(e2e::ReadFileText(MarkerPath()).ends_with("|/silent /install\r\n"), c.runs) << c.label;
        EXPECT_EQ(plain.Requests(), 0) << c.label;
        EXPECT_TRUE(LeftDownloads().empty()) << c.label;
        EXPECT_TRUE(run.Logged(c.logged)) << c.label << run.Describe();
    }
}

// Cancel while a slow server trickles the program: the download stops at once, the box says
// so, and the install stops before a file is copied.
TEST_F(DependenciesTest, CancelDuringASlowDownloadStopsTheInstall)
{
    SetEdgeVersion(std::nullopt);
    std::string big = program_;
    big.resize(4 << 20, '\0');
    e2e::LocalHttpServer server([&](const std::string&) { return e2e::HttpReply{.body = big, .pieceBytes = 8192, .pauseMs = 100}; });
    PointAt(server, "");
    std::wstring statusSeen;
    int positionSeen = -1;
    bool clicked = false;
    const e2e::SetupRun run = Install(
        {{.title = L"Download Error", .text = L"Downloading of setup file was canceled.", .button = IDOK, .times = 1}}, L"",
        [&](DWORD pid) {
            e2e::WizardView view;
            if (clicked || !e2e::FindWizard(pid, view))
                return true;
            for (const std::wstring& text : view.Texts())
                if (text.starts_with(L"Downloading Edge WebView from server... ") && text.find(L" of 4.0 MB") != std::wstring::npos)
                    statusSeen = text;
            if (HWND bar = view.ControlOfClass(PROGRESS_CLASSW))
                positionSeen = static_cast<int>(SendMessageW(bar, PBM_GETPOS, 0, 0));
            // Once some of it has come and shows: the bar moves by the bytes received.
            if (!statusSeen.empty() && positionSeen > 0) {
                e2e::ClickCancel(view);
                clicked = true;
            }
            return true;
        });
    ASSERT_TRUE(run.result.ExitedWith(kExitCancelled)) << run.Describe() << e2e::Utf8(statusSeen);
    EXPECT_TRUE(clicked);
    EXPECT_GT(positionSeen, 0);
    EXPECT_EQ(e2e::ReadFileText(MarkerPath()), "");
    EXPECT_TRUE(LeftDownloads().empty());
    // The record the install had begun goes with it, and so do the folders the destination
    // page made for it, its parent included.
    EXPECT_FALSE(e2e::FolderExists(e2e::Expand(L"%ProgramFiles%\\Halvard\\"))) << run.Describe();
    EXPECT_TRUE(run.Logged(L"Setup did not complete. Your computer was returned to the state it was in before."));
}

// The rest of a sample install: DirectX is there already (Wine has "d3dx9_43.dll"), the bundled
// media and its start-up playlist, the shell extension, the system plug-in and the driver for
// this Windows by the product's package installer; /NoDriver leaves the driver out.
TEST_F(DependenciesTest, MediaPluginsAndDriverOfASampleInstall)
{
    e2e::LocalHttpServer server([&](const std::string&) { return e2e::HttpReply{.body = program_}; });
    PointAt(server, "");
    const std::wstring dest = e2e::DefaultDestination();
    const struct
    {
        const wchar_t* windows;
        bool noDriver;
        const char* driver;  // the description's folder, and the version it declares
        const wchar_t* version;
    } cases[] = {{L"win10", false, "Win10", L"2.4.0.12"}, {L"win81", false, "Win8", L"2.3.1.7"}, {L"win10", true, "", nullptr}};
    for (const auto& c : cases) {
        SCOPED_TRACE(e2e::Utf8(c.windows) + (c.noDriver ? " /NoDriver" : ""));
        const e2e::ScopedRegString windows(HKEY_CURRENT_USER, L"Software\\Wine", L"Version", c.windows);
        ASSERT_TRUE(e2e::ResetToFreshMachine());
        const e2e::SetupRun run = Install({}, c.noDriver ? L" /NoDriver" : L"");
        ASSERT_TRUE(run.result.ExitedWith(0)) << run.Describe();
        EXPECT_TRUE(run.Logged(L"d3dx9_43.dll is there")) << run.Describe();
        EXPECT_EQ(server.Requests(), 0);
        for (const wchar_t* file : {L"Playlist.mpl", L"Welcome Tone.wav"})
            EXPECT_EQ(e2e::ReadFileText(dest + L"Media\\" + file), e2e::ReadFileText(setup_ + L"Bundled Media\\" + file));
        EXPECT_EQ(e2e::RegString(HKEY_CURRENT_USER, kPropertiesKey, L"Install - Startup Media"), dest + L"Media\\Playlist.mpl");

        const std::string calls = e2e::ReadFileText(dest + L"PackageInstaller.log");
        const std::string folder = e2e::Utf8(dest);
        EXPECT_EQ(e2e::CountOf(calls, "/RegDLL \"" + folder + "HVShellExt.dll\""), 1) << calls;
        EXPECT_EQ(e2e::CountOf(calls, "/RegDLL \"" + folder + "Plugins\\System\\SampleShell.dll\""), 1) << calls;
        const std::string inf = e2e::Utf8(setup_) + "Drivers\\WDM\\" + c.driver + "\\HalvardWDMDriver.inf";
        EXPECT_EQ(e2e::CountOf(calls, "/InstallWDMDriver"), c.noDriver ? 0 : 1) << calls << run.Describe();
        EXPECT_EQ(e2e::CountOf(calls, "/InstallWDMDriver \"" + inf + "\""), c.noDriver ? 0 : 1) << calls;
        EXPECT_EQ(e2e::CountOf(calls, "failed"), 0) << calls;
        EXPECT_EQ(e2e::RegString(HKEY_CURRENT_USER, kPropertiesKey, L"System Plugin - SampleShell.dll"), L"installed");
        EXPECT_EQ(e2e::RegString(HKEY_CURRENT_USER, kPropertiesKey, L"WDM Driver Installed Version"),
                  c.version ? std::optional<std::wstring>(c.version) : std::nullopt);
        EXPECT_FALSE(e2e::RegValueExists(HKEY_CURRENT_USER, kPropertiesKey, L"InstallPackageError"));
    }
}
}

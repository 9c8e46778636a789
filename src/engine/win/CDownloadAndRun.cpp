#include "engine/win/CDownloadAndRun.h"

#include "changes/win/RunProgram.h"
#include "engine/CDependencyRules.h"
#include "engine/IInstallProgress.h"
#include "engine/win/CDependencyRunner.h"
#include "engine/win/CTemporaryDownloadFile.h"
#include "foundation/HVLog.h"
#include "foundation/HVTranslator.h"
#include "foundation/win/HVHttpReader.h"
#include "foundation/win/HVSha256.h"
#include "product/HVInstallDescription.h"
#include "toolkit/win/HVMessageBox.h"

#include <algorithm>
#include <cwchar>

namespace
{
const char16_t* const kFailedFrom = u"Failed to download from";
// The bar covers the download up to here; running the program takes the rest.
constexpr int32_t kDownloadShare = 30;

HVString T(const HVString& english)
{
    return HVTranslator::Translate(english);
}

HVString FailedFrom(const HVString& url, const char16_t* reason)
{
    return HVString::Format(u"%s \n%s\n%s", T(kFailedFrom), url, T(reason));
}

HVString CannotCreate(const HVString& url, const HVString& path)
{
    return HVString::Format(u"%s \n%s\n%s\n%s.", T(kFailedFrom), url, T(u"Can not create file"), path);
}
}

bool CDownloadAndRun::NetworkAlive()
{
    if (const wchar_t* test = ::_wgetenv(L"IW_TEST_ONLY_NO_NETWORK"); test && std::wcscmp(test, L"1") == 0)
        return false;
    using IsNetworkAliveFunction = BOOL(WINAPI*)(LPDWORD);
    static const HVModule sensapi(::LoadLibraryExW(L"sensapi.dll", nullptr, LOAD_LIBRARY_SEARCH_SYSTEM32));
    const auto isNetworkAlive = sensapi ? reinterpret_cast<IsNetworkAliveFunction>(
                                              reinterpret_cast<void*>(::GetProcAddress(sensapi.Get(), "IsNetworkAlive")))
                                        : nullptr;
    if (!isNetworkAlive)
        return true;
    DWORD flags = 0;
    // A failure with an error means the system couldn't tell; only a clean "no" counts.
    return isNetworkAlive(&flags) || ::GetLastError() != ERROR_SUCCESS;
}

void CDownloadAndRun::ShowFailure(const HVString& text) const
{
    HVLog::Write(HVLog::kError, "CDownloadAndRun", u"%s", text);
    HVMessageBox::Show(runner_.Context().owner, text, T(u"Download Error"), MB_OK | MB_ICONERROR);
}

bool CDownloadAndRun::Run(const HVString& displayName, const HVString& fileName, const HVString& arguments)
{
    const CInstallContext& context = runner_.Context();
    const HVString url = CDependencyRules::DownloadAddress(context.description.GetDownloadServer(), fileName);
    HVLog::Write(HVLog::kInfo, "CDownloadAndRun::Run", u"%s: %s %s", displayName, url, arguments);
    if (!NetworkAlive()) {
        ShowFailure(FailedFrom(url, u"No network connection was found."));
        return false;
    }
    CTemporaryDownloadFile file;
    if (!file.Create()) {
        ShowFailure(CannotCreate(url, file.Path()));
        return false;
    }
    HVHttpReader::Outcome outcome;
    if (!Fetch(displayName, url, file, outcome))
        return false;
    if (!Accept(fileName, file, outcome, context.description)) {
        ShowFailure(T(u"The downloaded file is damaged or not the expected one."));
        return false;
    }

    context.progress.SetProgressPosition(kDownloadShare);
    context.progress.SetStatusText(HVString::Format(T(u"Installing %s...").c_str(), T(displayName)));
    int exitCode = -1;
    const bool ran = RunProgram(file.Path(), arguments, SW_SHOWNORMAL, true, true, &exitCode);
    HVLog::Write(ran ? HVLog::kInfo : HVLog::kError, "CDownloadAndRun::Run", u"%s %s (exit code %d)", displayName,
                 ran ? u"ran" : u"did not run", exitCode);
    return ran;
}

bool CDownloadAndRun::Fetch(const HVString& displayName, const HVString& url, CTemporaryDownloadFile& file,
                            HVHttpReader::Outcome& outcome)
{
    IInstallProgress& progress = runner_.Context().progress;
    const HVString downloading = HVString::Format(T(u"Downloading %s from server...").c_str(), T(displayName));
    progress.SetProgressRange(0, 100);
    progress.SetProgressPosition(0);
    progress.SetStatusText(downloading);
    HVString shown = downloading;
    const auto onProgress = [&](uint64_t got, uint64_t total) {
        const int32_t position = total == 0 ? 0 : static_cast<int32_t>(std::min<uint64_t>(got, total) * kDownloadShare / total);
        const HVString text = downloading + u" " + CDependencyRules::DescribeBytes(got, total);
        if (text != shown) {
            shown = text;
            progress.SetStatusText(text);
        }
        progress.SetProgressPosition(position);
        return !runner_.CancelRequested();
    };
    runner_.SetDownloading(true);
    outcome = HVHttpReader::Download(url, file.Handle(), onProgress, HVHttpReader::TimeoutMs());
    runner_.SetDownloading(false);
    switch (outcome.result) {
    case HVHttpReader::Result::Ok:
        return true;
    case HVHttpReader::Result::Cancelled:
        runner_.Cancel();
        ShowFailure(T(u"Downloading of setup file was canceled."));
        return false;
    case HVHttpReader::Result::HttpStatus:
        ShowFailure(HVString::Format(u"%s \n%s\n%s: %s %s", T(kFailedFrom), url, T(u"Server returned"),
                                     HVString::Format(u"%d", outcome.statusCode), outcome.statusText));
        return false;
    case HVHttpReader::Result::WriteError:
        ShowFailure(CannotCreate(url, file.Path()));
        return false;
    case HVHttpReader::Result::NoReader:
        ShowFailure(FailedFrom(url, u"Internet reader not found."));
        return false;
    default:
        ShowFailure(FailedFrom(url, u"Internet error."));
        return false;
    }
}

bool CDownloadAndRun::Accept(const HVString& fileName, CTemporaryDownloadFile& file,
                             const HVHttpReader::Outcome& outcome, const HVInstallDescription& description)
{
    if (outcome.received == 0 || (outcome.announced != 0 && outcome.received < outcome.announced)) {
        HVLog::Write(HVLog::kError, "CDownloadAndRun::Accept", u"%s: %d of %d bytes arrived", fileName, outcome.received,
                     outcome.announced);
        return false;
    }
    // Checked through the handle that keeps writers out until the program has run.
    if (!file.ReopenForReading())
        return false;
    const HVString actual = HVSha256::OfFile(file.Handle());
    const HVString expected = description.GetDownloadSha256(fileName);
    if (expected.IsEmpty()) {
        // Without a pin only the way it came vouches for the file: https all the way, with a
        // certificate the system trusts (the reader refuses any other).
        HVLog::Write(outcome.secure ? HVLog::kInfo : HVLog::kError, "CDownloadAndRun::Accept",
                     u"%s: SHA-256 %s, none pinned, %s", fileName, actual,
                     outcome.secure ? u"came over https" : u"refused: not over https all the way");
        return outcome.secure && !actual.IsEmpty();
    }
    const bool matches = HVSha256::Matches(actual, expected);
    HVLog::Write(matches ? HVLog::kInfo : HVLog::kError, "CDownloadAndRun::Accept", u"%s: SHA-256 expected %s, got %s",
                 fileName, expected, actual);
    return matches;
}

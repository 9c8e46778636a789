#include "foundation/win/HVHttpReader.h"

#include "foundation/HVLog.h"
#include "foundation/HVUrl.h"
#include "foundation/win/HVApp.h"
#include "foundation/win/HVUniqueResource.h"

#include <wininet.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdlib>
#include <cwchar>
#include <thread>
#include <vector>

namespace
{
struct InternetHandleTraits
{
    using Type = HINTERNET;
    static Type Invalid() { return nullptr; }
    static void Close(Type h) { ::InternetCloseHandle(h); }
};
using InternetHandle = HVUniqueResource<InternetHandleTraits>;

constexpr DWORD kBufferSize = 64 * 1024;
constexpr DWORD kWaitSliceMs = 50;

// What the transfer thread and the waiting thread share. The outcome is written by the
// transfer thread only and read after it has ended.
struct Transfer
{
    HVString url;
    HANDLE file = nullptr;
    DWORD timeoutMs = 0;
    std::atomic<bool> stop{false};
    std::atomic<uint64_t> received{0};
    std::atomic<uint64_t> announced{0};
    HVHandle done{::CreateEventW(nullptr, TRUE, FALSE, nullptr)};
    HVHttpReader::Outcome outcome;
};

HVString QueryText(HINTERNET request, DWORD what)
{
    DWORD bytes = 0;
    ::HttpQueryInfoW(request, what, nullptr, &bytes, nullptr);
    if (bytes == 0)
        return HVString();
    std::vector<wchar_t> buffer(bytes / sizeof(wchar_t) + 1);
    if (!::HttpQueryInfoW(request, what, buffer.data(), &bytes, nullptr))
        return HVString();
    return HVString(buffer.data(), static_cast<int32_t>(bytes / sizeof(wchar_t)));
}

bool Fail(Transfer& t, HVHttpReader::Result result)
{
    t.outcome.result = result;
    t.outcome.error = ::GetLastError();
    return false;
}

// A request or a read that failed: the reader's time-out, or any other transport error.
bool FailTransfer(Transfer& t)
{
    return Fail(t, ::GetLastError() == ERROR_INTERNET_TIMEOUT ? HVHttpReader::Result::TimedOut
                                                               : HVHttpReader::Result::TransportError);
}

// One request: its connection and the request on it, both given the time-out (the system's
// reader applies a receive time-out only where it is set on these, not on the session).
struct Request
{
    InternetHandle connection;
    InternetHandle request;
    bool ftp = false;
};

bool Open(Transfer& t, HINTERNET session, const HVString& url, Request& r)
{
    wchar_t host[INTERNET_MAX_HOST_NAME_LENGTH + 1] = {};
    wchar_t path[INTERNET_MAX_URL_LENGTH + 1] = {};
    URL_COMPONENTSW parts = {};
    parts.dwStructSize = sizeof(parts);
    parts.lpszHostName = host;
    parts.dwHostNameLength = INTERNET_MAX_HOST_NAME_LENGTH;
    parts.lpszUrlPath = path;
    parts.dwUrlPathLength = INTERNET_MAX_URL_LENGTH;
    if (!::InternetCrackUrlW(url.w(), 0, 0, &parts) ||
        (parts.nScheme != INTERNET_SCHEME_HTTP && parts.nScheme != INTERNET_SCHEME_HTTPS &&
         parts.nScheme != INTERNET_SCHEME_FTP))
        return Fail(t, HVHttpReader::Result::TransportError);
    if (parts.nScheme == INTERNET_SCHEME_FTP) {
        // FTP has no status or redirects to look at: the opened file is the answer.
        r.ftp = true;
        r.request.Reset(::InternetOpenUrlW(session, url.w(), nullptr, 0,
                                           INTERNET_FLAG_RELOAD | INTERNET_FLAG_PASSIVE | INTERNET_FLAG_NO_UI, 0));
        if (!r.request)
            return FailTransfer(t);
        return true;
    }
    constexpr DWORD kFlags = INTERNET_FLAG_NO_AUTO_REDIRECT | INTERNET_FLAG_RELOAD | INTERNET_FLAG_NO_CACHE_WRITE |
                             INTERNET_FLAG_PRAGMA_NOCACHE | INTERNET_FLAG_NO_UI | INTERNET_FLAG_NO_COOKIES;
    const DWORD secure = parts.nScheme == INTERNET_SCHEME_HTTPS ? INTERNET_FLAG_SECURE : 0;
    r.connection.Reset(::InternetConnectW(session, host, parts.nPort, nullptr, nullptr, INTERNET_SERVICE_HTTP, 0, 0));
    if (r.connection)
        r.request.Reset(::HttpOpenRequestW(r.connection.Get(), L"GET", path[0] ? path : L"/", nullptr, nullptr, nullptr,
                                           kFlags | secure, 0));
    if (!r.request)
        return Fail(t, HVHttpReader::Result::TransportError);
    for (HINTERNET handle : {r.connection.Get(), r.request.Get()}) {
        for (DWORD option : {INTERNET_OPTION_CONNECT_TIMEOUT, INTERNET_OPTION_SEND_TIMEOUT, INTERNET_OPTION_RECEIVE_TIMEOUT})
            ::InternetSetOptionW(handle, option, &t.timeoutMs, sizeof(t.timeoutMs));
    }
    if (!::HttpSendRequestW(r.request.Get(), nullptr, 0, nullptr, 0))
        return FailTransfer(t);
    return true;
}

// Opens the address and follows redirects; on success `r` holds the 200 answer.
bool OpenFinal(Transfer& t, HINTERNET session, Request& r)
{
    HVString url = t.url;
    t.outcome.secure = HVUrl::IsSecure(url);
    for (int hop = 0; hop <= HVHttpReader::kMaxRedirects; ++hop) {
        if (t.stop)
            return Fail(t, HVHttpReader::Result::Cancelled);
        if (!Open(t, session, url, r))
            return false;
        if (r.ftp)
            return true;
        DWORD status = 0;
        DWORD size = sizeof(status);
        if (!::HttpQueryInfoW(r.request.Get(), HTTP_QUERY_STATUS_CODE | HTTP_QUERY_FLAG_NUMBER, &status, &size, nullptr))
            return Fail(t, HVHttpReader::Result::TransportError);
        t.outcome.statusCode = status;
        t.outcome.statusText = QueryText(r.request.Get(), HTTP_QUERY_STATUS_TEXT);
        if (status == HTTP_STATUS_OK)
            return true;
        const HVString location = QueryText(r.request.Get(), HTTP_QUERY_LOCATION);
        if (status < 300 || status > 399 || location.IsEmpty()) {
            t.outcome.result = HVHttpReader::Result::HttpStatus;
            return false;
        }
        wchar_t combined[INTERNET_MAX_URL_LENGTH];
        DWORD length = INTERNET_MAX_URL_LENGTH;
        if (!::InternetCombineUrlW(url.w(), location.w(), combined, &length, 0))
            return Fail(t, HVHttpReader::Result::TransportError);
        const HVString next(combined, static_cast<int32_t>(length));
        if (!HVUrl::MayRedirect(url, next)) {
            HVLog::Write(HVLog::kError, "HVHttpReader::Download", u"%s redirects to %s: not followed", url, next);
            t.outcome.result = HVHttpReader::Result::TransportError;
            t.outcome.error = ERROR_INTERNET_HTTPS_TO_HTTP_ON_REDIR;
            return false;
        }
        url = next;
        t.outcome.secure = t.outcome.secure && HVUrl::IsSecure(url);
    }
    // Redirected in a circle, or further than any sane server sends anyone.
    t.outcome.result = HVHttpReader::Result::TransportError;
    t.outcome.error = ERROR_HTTP_REDIRECT_FAILED;
    return false;
}

void Run(Transfer& t)
{
    InternetHandle session(::InternetOpenW(L"Install Wizard", INTERNET_OPEN_TYPE_PRECONFIG, nullptr, nullptr, 0));
    if (!session) {
        Fail(t, HVHttpReader::Result::NoReader);
        return;
    }
    Request request;
    if (!OpenFinal(t, session.Get(), request))
        return;
    const HVString length = request.ftp ? HVString() : QueryText(request.request.Get(), HTTP_QUERY_CONTENT_LENGTH);
    if (!length.IsEmpty())
        t.announced = std::wcstoull(length.w(), nullptr, 10);
    if (t.announced > HVHttpReader::kMaxBytes) {
        HVLog::Write(HVLog::kError, "HVHttpReader::Download", u"%s announces %d bytes, more than %d", t.url, t.announced.load(),
                     HVHttpReader::kMaxBytes);
        t.outcome.result = HVHttpReader::Result::TooLarge;
        return;
    }

    std::vector<char> buffer(kBufferSize);
    for (;;) {
        if (t.stop) {
            Fail(t, HVHttpReader::Result::Cancelled);
            return;
        }
        // Only what has arrived is read: a read of a whole buffer would wait for all of it, and
        // a server that trickles would keep this thread from hearing that it must stop.
        DWORD available = 0;
        if (!::InternetQueryDataAvailable(request.request.Get(), &available, 0, 0)) {
            FailTransfer(t);
            return;
        }
        DWORD read = 0;
        if (!::InternetReadFile(request.request.Get(), buffer.data(), std::min<DWORD>(std::max<DWORD>(available, 1), kBufferSize), &read)) {
            FailTransfer(t);
            return;
        }
        if (read == 0)
            break;
        DWORD written = 0;
        if (!::WriteFile(t.file, buffer.data(), read, &written, nullptr) || written != read) {
            Fail(t, HVHttpReader::Result::WriteError);
            return;
        }
        t.received += read;
        if (t.received > HVHttpReader::kMaxBytes) {
            t.outcome.result = HVHttpReader::Result::TooLarge;
            return;
        }
    }
    t.outcome.result = HVHttpReader::Result::Ok;
}
}

namespace
{
int TestOnlyMs(const wchar_t* variable, long lowest, int highest)
{
    if (const wchar_t* text = ::_wgetenv(variable)) {
        const long value = std::wcstol(text, nullptr, 10);
        if (value >= lowest && value <= highest)
            return static_cast<int>(value);
    }
    return highest;
}
}   // namespace

int HVHttpReader::TimeoutMs()
{
    return TestOnlyMs(L"IW_TEST_ONLY_DOWNLOAD_TIMEOUT_MS", 100, kDefaultTimeoutMs);
}

int HVHttpReader::DeadlineMs()
{
    return TestOnlyMs(L"IW_TEST_ONLY_DOWNLOAD_DEADLINE_MS", 1000, kDefaultDeadlineMs);
}

HVHttpReader::Outcome HVHttpReader::Download(const HVString& url, HANDLE file, const Progress& progress, int timeoutMs)
{
    Transfer t;
    t.url = url;
    t.file = file;
    t.timeoutMs = static_cast<DWORD>(timeoutMs > 0 ? timeoutMs : kDefaultTimeoutMs);
    if (!t.done) {
        t.outcome.error = ::GetLastError();
        return t.outcome;
    }

    std::thread worker([&t] {
        Run(t);
        ::SetEvent(t.done.Get());
    });
    using Clock = std::chrono::steady_clock;
    const int deadlineMs = DeadlineMs();
    const Clock::time_point deadline = Clock::now() + std::chrono::milliseconds(deadlineMs);
    Clock::time_point lastChange = Clock::now();
    uint64_t lastSeen = 0;
    bool cancelled = false;
    bool silent = false;
    const HANDLE done = t.done.Get();
    for (;;) {
        const DWORD wait = ::MsgWaitForMultipleObjects(1, &done, FALSE, kWaitSliceMs, QS_ALLINPUT);
        HVApp::PumpWaitingMessages();
        if (wait == WAIT_OBJECT_0)
            break;
        if (t.stop)
            continue;
        const uint64_t received = t.received;
        if (received != lastSeen) {
            lastSeen = received;
            lastChange = Clock::now();
        }
        if (progress && !progress(received, t.announced)) {
            cancelled = true;
            t.stop = true;
        } else if (Clock::now() - lastChange > std::chrono::milliseconds(t.timeoutMs)) {
            // Our own watch as well as the reader's: a read the system doesn't time out
            // still ends here once the transfer thread looks up.
            silent = true;
            t.stop = true;
        } else if (Clock::now() > deadline) {
            // A server that sends a byte now and then would keep an unattended install
            // waiting for ever.
            HVLog::Write(HVLog::kError, "HVHttpReader::Download", u"%s: the download's deadline of %d ms has passed", url,
                         deadlineMs);
            silent = true;
            t.stop = true;
        }
    }
    worker.join();

    Outcome outcome = t.outcome;
    outcome.received = t.received;
    outcome.announced = t.announced;
    if (cancelled)
        outcome.result = Result::Cancelled;
    else if (silent && outcome.result != Result::Ok)
        outcome.result = Result::TimedOut;
    if (progress && outcome.result == Result::Ok)
        progress(outcome.received, outcome.announced);
    HVLog::Write(outcome.result == Result::Ok ? HVLog::kInfo : HVLog::kError, "HVHttpReader::Download",
                 u"%s: result %d, status %d %s, %d of %d bytes, error %d", url, static_cast<int>(outcome.result),
                 outcome.statusCode, outcome.statusText, outcome.received, outcome.announced, outcome.error);
    return outcome;
}

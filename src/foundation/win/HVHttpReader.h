#pragma once

#include "foundation/HVString.h"

#include <windows.h>

#include <cstdint>
#include <functional>

// The library's internet reader (http, https, ftp): fetches one address into a file the caller has opened. The
// transfer runs on a thread of its own while the calling thread waits with its window
// messages flowing, so a page that downloads stays painted and its buttons answer. The
// caller hears of the progress on its own thread and can stop the transfer from there.
//
// Redirects are followed here (at most kMaxRedirects), not by the system, so that a server
// that redirects in a circle ends in an error instead of a loop, and one that sends an https
// request on to http or ftp is not followed at all.
class HVHttpReader
{
public:
    enum class Result
    {
        Ok,
        NoReader,        // the system's internet reader could not be opened
        TransportError,  // no connection, a broken one, too many redirects, a read that failed
        TimedOut,        // nothing arrived for the time-out
        HttpStatus,      // the server answered with a status other than 200
        WriteError,      // the file could not be written
        Cancelled,       // the progress callback asked to stop
        TooLarge,        // more than kMaxBytes, announced or arrived
    };
    struct Outcome
    {
        Result result = Result::TransportError;
        uint32_t statusCode = 0;
        HVString statusText;
        uint64_t received = 0;
        uint64_t announced = 0;  // the server's Content-Length; 0 when it gave none
        DWORD error = 0;         // the system's error code of a failure
        bool secure = false;     // every address asked, redirects included, was https
    };
    // Called on the calling thread about every 50 ms and once at the end: bytes so far and
    // the announced total (0 when unknown). Returning false stops the transfer.
    using Progress = std::function<bool(uint64_t received, uint64_t announced)>;

    static constexpr int kMaxRedirects = 10;
    static constexpr uint64_t kMaxBytes = uint64_t(1) << 30;
    static constexpr int kDefaultTimeoutMs = 30000;
    static constexpr int kDefaultDeadlineMs = 10 * 60 * 1000;

    // The time-out for silence from the server: kDefaultTimeoutMs, or for tests only the
    // milliseconds in the environment variable IW_TEST_ONLY_DOWNLOAD_TIMEOUT_MS (100 to 30000).
    static int TimeoutMs();
    // The longest a whole download may take, however steadily bytes arrive: kDefaultDeadlineMs,
    // or for tests only IW_TEST_ONLY_DOWNLOAD_DEADLINE_MS (1000 to the default).
    static int DeadlineMs();

    // Writes the body of `url` to `file` (opened for writing, positioned at its start).
    static Outcome Download(const HVString& url, HANDLE file, const Progress& progress, int timeoutMs);
};

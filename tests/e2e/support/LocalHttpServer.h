#pragma once

#include <winsock2.h>

#include <atomic>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <thread>
#include <utility>
#include <vector>

namespace e2e
{
// How the test server answers one request: a status line, headers, a body, and the ways a
// bad server misbehaves (announcing another length, breaking off, stalling, trickling).
struct HttpReply
{
    int status = 200;
    std::string statusText = "OK";
    std::string body{};
    std::vector<std::pair<std::string, std::string>> headers{};
    // The Content-Length announced; the body's size when not given.
    std::optional<uint64_t> announced{};
    // Only this much of the body is sent, then the connection is reset.
    std::optional<size_t> resetAfter{};
    // Nothing at all is sent, the connection held open until the client gives up.
    bool silent = false;
    // The body in pieces of this size, each after a pause (a slow server).
    size_t pieceBytes = 0;
    int pauseMs = 0;
};

// An HTTP server of the test's own on 127.0.0.1 at a free port, answering on a thread of its
// own until it is destroyed. Every request is answered by the handler, given the path.
class LocalHttpServer
{
public:
    using Handler = std::function<HttpReply(const std::string& path)>;

    explicit LocalHttpServer(Handler handler);
    ~LocalHttpServer();
    LocalHttpServer(const LocalHttpServer&) = delete;
    LocalHttpServer& operator=(const LocalHttpServer&) = delete;

    bool Started() const { return port_ != 0; }
    // "http://127.0.0.1:<port>/"
    std::string BaseUrl() const;
    int Requests() const { return requests_; }

private:
    void Serve();
    void Answer(SOCKET client);
    // Sleeps in short slices; false once the server is stopping.
    bool Pause(int ms) const;

    Handler handler_;
    SOCKET listener_ = INVALID_SOCKET;
    uint16_t port_ = 0;
    std::atomic<bool> stop_{false};
    std::atomic<int> requests_{0};
    std::thread thread_;
};
}

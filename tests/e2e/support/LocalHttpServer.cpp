#include "LocalHttpServer.h"

#include <ws2tcpip.h>

#include <windows.h>

#include <algorithm>
#include <sstream>

namespace e2e
{
namespace
{
bool SendAll(SOCKET socket, const char* data, size_t size)
{
    while (size > 0) {
        const int sent = ::send(socket, data, static_cast<int>(std::min<size_t>(size, 64 * 1024)), 0);
        if (sent <= 0)
            return false;
        data += sent;
        size -= static_cast<size_t>(sent);
    }
    return true;
}

// The path of "GET <path> HTTP/1.1"; empty when the request never arrived whole.
std::string ReadRequestPath(SOCKET client)
{
    std::string request;
    char buffer[4096];
    while (request.find("\r\n\r\n") == std::string::npos && request.size() < 64 * 1024) {
        const int got = ::recv(client, buffer, sizeof buffer, 0);
        if (got <= 0)
            return {};
        request.append(buffer, static_cast<size_t>(got));
    }
    std::istringstream line(request.substr(0, request.find("\r\n")));
    std::string method, path;
    line >> method >> path;
    return path;
}
}

LocalHttpServer::LocalHttpServer(Handler handler) : handler_(std::move(handler))
{
    WSADATA data;
    if (::WSAStartup(MAKEWORD(2, 2), &data) != 0)
        return;
    listener_ = ::socket(AF_INET, SOCK_STREAM, IPPROTO_TCP);
    sockaddr_in address = {};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    int length = sizeof address;
    if (listener_ == INVALID_SOCKET || ::bind(listener_, reinterpret_cast<sockaddr*>(&address), sizeof address) != 0 ||
        ::listen(listener_, 8) != 0 || ::getsockname(listener_, reinterpret_cast<sockaddr*>(&address), &length) != 0)
        return;
    port_ = ntohs(address.sin_port);
    thread_ = std::thread([this] { Serve(); });
}

LocalHttpServer::~LocalHttpServer()
{
    stop_ = true;
    if (thread_.joinable())
        thread_.join();
    if (listener_ != INVALID_SOCKET)
        ::closesocket(listener_);
    ::WSACleanup();
}

std::string LocalHttpServer::BaseUrl() const
{
    return "http://127.0.0.1:" + std::to_string(port_) + "/";
}

bool LocalHttpServer::Pause(int ms) const
{
    for (int waited = 0; waited < ms && !stop_; waited += 20)
        ::Sleep(20);
    return !stop_;
}

void LocalHttpServer::Serve()
{
    while (!stop_) {
        fd_set ready;
        FD_ZERO(&ready);
        FD_SET(listener_, &ready);
        timeval wait = {0, 50 * 1000};
        if (::select(0, &ready, nullptr, nullptr, &wait) <= 0)
            continue;
        const SOCKET client = ::accept(listener_, nullptr, nullptr);
        if (client == INVALID_SOCKET)
            continue;
        Answer(client);
        ::closesocket(client);
    }
}

void LocalHttpServer::Answer(SOCKET client)
{
    const std::string path = ReadRequestPath(client);
    if (path.empty())
        return;
    ++requests_;
    const HttpReply reply = handler_(path);
    if (reply.silent) {
        // Held open without a word until the client hangs up or the test ends.
        char byte;
        u_long nonBlocking = 1;
        ::ioctlsocket(client, FIONBIO, &nonBlocking);
        while (Pause(50) && (::recv(client, &byte, 1, 0) < 0 && ::WSAGetLastError() == WSAEWOULDBLOCK)) {
        }
        return;
    }
    std::string head = "HTTP/1.1 " + std::to_string(reply.status) + " " + reply.statusText + "\r\n";
    head += "Content-Length: " + std::to_string(reply.announced.value_or(reply.body.size())) + "\r\n";
    head += "Content-Type: application/octet-stream\r\nConnection: close\r\n";
    for (const auto& [name, value] : reply.headers)
        head += name + ": " + value + "\r\n";
    head += "\r\n";
    if (!SendAll(client, head.data(), head.size()))
        return;
    const size_t toSend = std::min(reply.body.size(), reply.resetAfter.value_or(reply.body.size()));
    const size_t piece = reply.pieceBytes ? reply.pieceBytes : toSend;
    for (size_t at = 0; at < toSend; at += piece) {
        if (!SendAll(client, reply.body.data() + at, std::min(piece, toSend - at)) || !Pause(reply.pauseMs))
            return;
    }
    if (reply.resetAfter) {
        // A reset, not an orderly close: the connection breaks off as a failing network's does.
        linger hard = {1, 0};
        ::setsockopt(client, SOL_SOCKET, SO_LINGER, reinterpret_cast<const char*>(&hard), sizeof hard);
        return;
    }
    ::shutdown(client, SD_SEND);
}

}

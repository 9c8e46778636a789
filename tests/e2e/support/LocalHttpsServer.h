#pragma once

#include <string>

namespace e2e
{
// An https server on 127.0.0.1, named "localhost", for the downloads that need one. Wine's
// Winsock can't serve TLS, so it is Python's on the Linux side (https_server.py beside this
// file, started through Wine like any program), with a throwaway certificate for "localhost"
// made by openssl in the scratch folder. `trusted` adds that certificate to the current
// user's root store of the Wine prefix (inside the build tree) for as long as the object lives.
// The server ends when the object goes, and by itself after two minutes at the latest.
class LocalHttpsServer
{
public:
    enum class Mode
    {
        Serve,     // every request gets `file`
        Redirect,  // every request is sent on to `redirect` + its path
    };

    LocalHttpsServer(const std::wstring& file, Mode mode, const std::string& redirect, bool trusted);
    ~LocalHttpsServer();
    LocalHttpsServer(const LocalHttpsServer&) = delete;
    LocalHttpsServer& operator=(const LocalHttpsServer&) = delete;

    bool Started() const { return port_ != 0; }
    // "https://localhost:<port>/"
    std::string BaseUrl() const;

private:
    std::wstring folder_;
    int port_ = 0;
    bool trusted_ = false;
    std::string certificate_;  // DER
};
}

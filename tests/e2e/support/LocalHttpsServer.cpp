#include "LocalHttpsServer.h"

#include "FolderTree.h"
#include "TestPaths.h"
#include "foundation/win/HVUniqueResource.h"

#include <windows.h>
#include <wincrypt.h>

#include <vector>

namespace e2e
{
namespace
{
struct CertificateStoreTraits
{
    using Type = HCERTSTORE;
    static Type Invalid() { return nullptr; }
    static void Close(Type store) { ::CertCloseStore(store, 0); }
};
using CertificateStore = HVUniqueResource<CertificateStoreTraits>;

// The DER bytes of the first certificate in a PEM file.
std::string DerOfPem(const std::string& pem)
{
    DWORD size = 0;
    if (!::CryptStringToBinaryA(pem.c_str(), static_cast<DWORD>(pem.size()), CRYPT_STRING_BASE64HEADER, nullptr, &size,
                                nullptr, nullptr))
        return {};
    std::string der(size, '\0');
    ::CryptStringToBinaryA(pem.c_str(), static_cast<DWORD>(pem.size()), CRYPT_STRING_BASE64HEADER,
                           reinterpret_cast<BYTE*>(der.data()), &size, nullptr, nullptr);
    return der;
}

// The root store's copy of the certificate taken out again.
void Untrust(const std::string& der)
{
    const CertificateStore root(::CertOpenStore(CERT_STORE_PROV_SYSTEM_W, 0, 0, CERT_SYSTEM_STORE_CURRENT_USER, L"Root"));
    PCCERT_CONTEXT ours = ::CertCreateCertificateContext(X509_ASN_ENCODING, reinterpret_cast<const BYTE*>(der.data()),
                                                         static_cast<DWORD>(der.size()));
    if (root && ours) {
        // Deleting frees the context it is given; the one we made stays ours to free.
        if (PCCERT_CONTEXT found = ::CertFindCertificateInStore(root.Get(), X509_ASN_ENCODING, 0, CERT_FIND_EXISTING, ours,
                                                                nullptr))
            ::CertDeleteCertificateFromStore(found);
    }
    if (ours)
        ::CertFreeCertificateContext(ours);
}

std::wstring Quoted(const std::wstring& path) { return L" \"" + UnixPath(path) + L"\""; }
}   // namespace

LocalHttpsServer::LocalHttpsServer(const std::wstring& file, Mode mode, const std::string& redirect, bool trusted)
{
    folder_ = ScratchFolder(L"HttpsServer");
    const std::wstring cert = folder_ + L"cert.pem", key = folder_ + L"key.pem", port = folder_ + L"port.txt";
    if (folder_.empty() ||
        !RunLinuxProgram(L"/usr/bin/openssl req -x509 -newkey rsa:2048 -nodes -days 1 -subj /CN=localhost "
                         L"-addext subjectAltName=DNS:localhost -keyout" + Quoted(key) + L" -out" + Quoted(cert),
                         [&] { return ReadFileText(cert).find("-----END CERTIFICATE-----") != std::string::npos; }))
        return;
    certificate_ = DerOfPem(ReadFileText(cert));
    if (trusted) {
        trusted_ = ::CertAddEncodedCertificateToSystemStoreW(L"Root", reinterpret_cast<const BYTE*>(certificate_.data()),
                                                              static_cast<DWORD>(certificate_.size())) != FALSE;
        if (!trusted_)
            return;
    }
    const std::wstring script = std::wstring(L"" IW_SOURCE_DIR) + L"\\tests\\e2e\\support\\https_server.py";
    const std::wstring command = L"/usr/bin/python3" + Quoted(script) + Quoted(cert) + Quoted(key) + Quoted(file) +
                                 (mode == Mode::Redirect ? L" redirect \"" : L" serve \"") + Wide(redirect) + L"\"" +
                                 Quoted(port) + Quoted(folder_ + L"stop") + L" 120";
    if (RunLinuxProgram(command, [&] { return !ReadFileText(port).empty(); }))
        port_ = std::stoi(ReadFileText(port));
}

LocalHttpsServer::~LocalHttpsServer()
{
    if (!folder_.empty())
        WriteFileBytes(folder_ + L"stop", "");
    if (trusted_)
        Untrust(certificate_);
}

std::string LocalHttpsServer::BaseUrl() const
{
    return "https://localhost:" + std::to_string(port_) + "/";
}
}

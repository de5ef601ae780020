#pragma once

#include "tests/http_server.h"

#include <openssl/ssl.h>

/// A new key with a certificate that it has signed itself, for a host given by its name or its IPv4 address.
/// It is its own root: a client that trusts the certificate trusts the server.
class TlsIdentity {
public:
    /// `hoursLeft` below zero makes one that is out of date.
    explicit TlsIdentity(const std::string& host, int hoursLeft = 1);

    /// The certificate as a PEM file's text.
    const std::string& Certificate() const { return certificate; }

    /// Makes a server speak TLS as this one. The identity outlives the server.
    HttpServer::MakeStream Streams() const;

private:
    std::unique_ptr<SSL_CTX, decltype(&SSL_CTX_free)> context;
    std::string certificate;
};

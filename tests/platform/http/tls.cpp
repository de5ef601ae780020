#include "tests/platform/http/tls.h"

#include <openssl/evp.h>
#include <openssl/pem.h>
#include <openssl/x509v3.h>

#include <cstdlib>

namespace {

using X509Certificate = std::unique_ptr<X509, decltype(&X509_free)>;

void Require(bool succeeded) {
    if (!succeeded) std::abort();
}

void AddExtension(X509* certificate, int kind, const std::string& value) {
    X509V3_CTX context;
    X509V3_set_ctx_nodb(&context);
    X509V3_set_ctx(&context, certificate, certificate, nullptr, nullptr, 0);
    X509_EXTENSION* extension = X509V3_EXT_conf_nid(nullptr, &context, kind, value.c_str());
    Require(extension != nullptr && X509_add_ext(certificate, extension, -1) == 1);
    X509_EXTENSION_free(extension);
}

X509Certificate MakeCertificate(EVP_PKEY* key, const std::string& host, int hoursLeft) {
    X509Certificate certificate(X509_new(), &X509_free);
    X509_set_version(certificate.get(), X509_VERSION_3);
    ASN1_INTEGER_set(X509_get_serialNumber(certificate.get()), 1);
    X509_gmtime_adj(X509_getm_notBefore(certificate.get()), -7200);
    X509_gmtime_adj(X509_getm_notAfter(certificate.get()), hoursLeft * 3600);
    X509_NAME* name = X509_get_subject_name(certificate.get());
    const unsigned char test[] = "test";
    X509_NAME_add_entry_by_txt(name, "CN", MBSTRING_ASC, test, -1, -1, 0);
    X509_set_issuer_name(certificate.get(), name);
    X509_set_pubkey(certificate.get(), key);
    AddExtension(certificate.get(), NID_basic_constraints, "critical,CA:TRUE");
    const bool isAddress = host.find_first_not_of("0123456789.") == std::string::npos;
    AddExtension(certificate.get(), NID_subject_alt_name, (isAddress ? "IP:" : "DNS:") + host);
    Require(X509_sign(certificate.get(), key, EVP_sha256()) > 0);
    return certificate;
}

std::string ToPem(X509* certificate) {
    BIO* memory = BIO_new(BIO_s_mem());
    Require(PEM_write_bio_X509(memory, certificate) == 1);
    char* bytes = nullptr;
    const long length = BIO_get_mem_data(memory, &bytes);
    std::string text(bytes, static_cast<std::size_t>(length));
    BIO_free(memory);
    return text;
}

class TlsStream : public ByteStream {
public:
    explicit TlsStream(SSL* ssl) : ssl(ssl) {}
    ~TlsStream() override {
        SSL_shutdown(ssl);
        SSL_free(ssl);
    }

    bool Write(std::string_view bytes) override {
        return SSL_write(ssl, bytes.data(), static_cast<int>(bytes.size())) > 0;
    }

    std::string ReadSome() override {
        char buffer[4096];
        const int count = SSL_read(ssl, buffer, sizeof buffer);
        return count > 0 ? std::string(buffer, static_cast<std::size_t>(count)) : std::string();
    }

private:
    SSL* ssl;
};

}  // namespace

TlsIdentity::TlsIdentity(const std::string& host, int hoursLeft)
    : context(SSL_CTX_new(TLS_server_method()), &SSL_CTX_free) {
    const std::unique_ptr<EVP_PKEY, decltype(&EVP_PKEY_free)> key(EVP_EC_gen("P-256"), &EVP_PKEY_free);
    const X509Certificate own = MakeCertificate(key.get(), host, hoursLeft);
    certificate = ToPem(own.get());
    Require(SSL_CTX_use_certificate(context.get(), own.get()) == 1);
    Require(SSL_CTX_use_PrivateKey(context.get(), key.get()) == 1);
}

HttpServer::MakeStream TlsIdentity::Streams() const {
    return [this](int socket) -> std::unique_ptr<ByteStream> {
        SSL* ssl = SSL_new(context.get());
        SSL_set_fd(ssl, socket);
        if (SSL_accept(ssl) == 1) return std::make_unique<TlsStream>(ssl);
        SSL_free(ssl);
        return nullptr;
    };
}

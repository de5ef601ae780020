#include "platform/http/http_session.h"

#include "tests/platform/http/tls.h"
#include "tests/temporary_directory.h"

#include <gtest/gtest.h>

#include <csignal>

namespace {

struct Https : testing::Test {
    // OpenSSL writes to sockets that the client has closed.
    Https() { std::signal(SIGPIPE, SIG_IGN); }

    /// What a client gets that trusts this certificate.
    HttpEnd Get(const std::string& url, const TlsIdentity& trusted) {
        HttpOptions options;
        options.certificates = directory.Write("roots.pem", trusted.Certificate());
        HttpSession session("AutoUpdateAgent", options);
        body.clear();
        return session.Get(url, 1000, [this](std::string_view bytes) {
            body += bytes;
            return true;
        });
    }

    static std::string UrlOf(const HttpServer& server) {
        return "https://127.0.0.1:" + std::to_string(server.Port()) + "/";
    }

    TemporaryDirectory directory;
    std::string body;
};

TEST_F(Https, TrustsAServerWithTheRightCertificateOnly) {
    const TlsIdentity right("127.0.0.1"), another("127.0.0.1"), otherAddress("127.0.0.2"),
        otherHost("update.tolvane.invalid"), old("127.0.0.1", -1);
    const std::tuple<const char*, const TlsIdentity&, const TlsIdentity&, bool> cases[] = {
        {"trusted", right, right, true},
        {"unknown issuer", right, another, false},
        {"for another address", otherAddress, otherAddress, false},
        {"for another host", otherHost, otherHost, false},
        {"out of date", old, old, false},
    };
    for (const auto& [what, own, trusted, isGood] : cases) {
        SCOPED_TRACE(what);
        HttpServer server(own.Streams());
        server.AnswerText("/file", "contents");
        EXPECT_EQ(isGood ? HttpEnd::Complete : HttpEnd::NotOpened, Get(UrlOf(server) + "file", trusted));
        EXPECT_EQ(isGood ? "contents" : "", body);
        EXPECT_EQ(isGood ? 1u : 0u, server.Requests().size()) << "nothing is asked of a stranger";
        HttpSession session("AutoUpdateAgent");  // which trusts the system's roots
        EXPECT_EQ(HttpEnd::NotOpened, session.Get(UrlOf(server), 1, [](std::string_view) { return true; }));
    }
}

TEST_F(Https, FollowsToHttpsAndNowhereElse) {
    const TlsIdentity identity("127.0.0.1");
    HttpServer server(identity.Streams());
    HttpServer plain;
    server.AnswerText("/file", "contents");
    plain.AnswerText("/file", "plain");
    const std::pair<std::string, HttpEnd> cases[] = {
        {"/file", HttpEnd::Complete},
        {UrlOf(server) + "file", HttpEnd::Complete},
        {plain.Url() + "file", HttpEnd::NotOpened},
        {"file:///etc/passwd", HttpEnd::NotOpened},
        {"/moved", HttpEnd::NotOpened},  // to itself, for ever
    };
    for (const auto& [to, end] : cases) {
        SCOPED_TRACE(to);
        server.Answer("/moved", {.status = 302, .headers = "Location: " + to + "\r\n", .body = "moved"});
        EXPECT_EQ(end, Get(UrlOf(server) + "moved", identity));
        EXPECT_EQ(end == HttpEnd::Complete ? "contents" : "", body);
    }
    EXPECT_TRUE(plain.Requests().empty());

    const std::string head = "HTTP/1.1 302 Found\r\nLocation: /file\r\nContent-Length: 999999999\r\n\r\n";
    server.Answer("/moved", {.hangsAfterBody = true, .raw = head + std::string(200000, '0')});
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(HttpEnd::NotOpened, Get(UrlOf(server) + "moved", identity)) << "a redirect with a huge body";
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(10));
}

}  // namespace

#include "platform/http/http_session.h"

#include "tests/http_server.h"

#include <gtest/gtest.h>

#include <future>
#include <limits>

namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

constexpr std::uint64_t kNoLimit = std::numeric_limits<std::uint64_t>::max();

HttpOptions Impatient() {
    HttpOptions options;
    options.connectLimit = 300ms;
    options.stallLimit = 1s;
    return options;
}

class Session : public testing::Test {
protected:
    HttpEnd Get(const std::string& path, std::uint64_t maxBytes = kNoLimit) {
        body.clear();
        return session.Get(server.Url() + path, maxBytes, [this](std::string_view bytes) {
            body += bytes;
            return true;
        });
    }

    HttpServer server;
    HttpSession session{"AutoUpdateAgent", Impatient()};
    std::string body;
};

TEST_F(Session, EndsAsTheServerDoes) {
    std::string large;
    for (unsigned i = 0; i < 100000; ++i) large += static_cast<char>(i * i >> 3);

    const struct {
        const char* what;
        HttpAnswer answer;
        HttpEnd end;
        std::string body;
    } cases[] = {
        {"a text", {.body = "3.0.0.1"}, HttpEnd::Complete, "3.0.0.1"},
        {"every byte", {.body = large}, HttpEnd::Complete, large},
        {"nothing", {}, HttpEnd::Complete, ""},
        {"chunks", {.body = "0123456789", .isChunked = true}, HttpEnd::Complete, "0123456789"},
        {"a body that ends early", {.body = "012", .toldLength = 10}, HttpEnd::ReadFailed, "012"},
        {"chunks that end early",
         {.raw = "HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n5\r\nab"},
         HttpEnd::ReadFailed,
         "ab"},
        {"no such file", {.status = 404, .body = "not here"}, HttpEnd::NotOpened, ""},
        {"a broken server", {.status = 500, .body = "sorry"}, HttpEnd::NotOpened, ""},
        {"another success", {.status = 206, .body = "part"}, HttpEnd::NotOpened, ""},
        {"a redirect to nowhere", {.status = 302, .body = "moved"}, HttpEnd::NotOpened, ""},
        {"no HTTP at all", {.raw = "SSH-2.0-OpenSSH\r\n"}, HttpEnd::NotOpened, ""},
        {"headers without an end",
         {.raw = "HTTP/1.1 200 OK\r\n" + std::string(70000, 'x') + ": y\r\n\r\nbody"},
         HttpEnd::ReadFailed,
         ""},
        {"packed contents stay packed",
         {.headers = "Content-Encoding: gzip\r\n", .body = "\x1f\x8b"},
         HttpEnd::Complete,
         "\x1f\x8b"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        server.Answer("/file", c.answer);
        EXPECT_EQ(c.end, Get("file"));
        EXPECT_EQ(c.body, body);
    }
}

TEST_F(Session, HandsOutNoMoreThanAskedFor) {
    server.AnswerText("/short", "012");
    server.AnswerText("/exact", "0123");
    server.AnswerText("/long", "01234");
    server.Answer("/chunks", {.body = "0123456", .isChunked = true});
    server.Answer("/endless", {.body = std::string(1000, '0'), .isEndless = true});
    EXPECT_EQ(HttpEnd::Complete, Get("short", 4));
    EXPECT_EQ(HttpEnd::Complete, Get("exact", 4));
    for (const char* path : {"long", "chunks", "endless"}) {
        EXPECT_EQ(HttpEnd::TooLong, Get(path, 4)) << path;
        EXPECT_EQ(4u, body.size()) << path;
    }
    EXPECT_EQ(HttpEnd::TooLong, Get("exact", 0));
    EXPECT_EQ("", body);
}

TEST_F(Session, StopsWhenTheReceiverHasHadEnough) {
    server.Answer("/endless", {.body = "0123", .isEndless = true});
    EXPECT_EQ(HttpEnd::Refused,
              session.Get(server.Url() + "endless", kNoLimit, [](std::string_view) { return false; }));
}

TEST_F(Session, AsksForTheServersOwnCopyUnderItsName) {
    Get("a/b%20c");
    ASSERT_EQ(1u, server.Requests().size());
    const std::string head = server.Requests().front();
    EXPECT_TRUE(head.starts_with("GET /a/b%20c HTTP/1.1\r\n")) << head;
    EXPECT_NE(std::string::npos, head.find("\r\nUser-Agent: AutoUpdateAgent\r\n")) << head;
    EXPECT_NE(std::string::npos, head.find("\r\nCache-Control: no-cache\r\n")) << head;
}

TEST_F(Session, DoesNotFollowToPlainHttp) {
    server.AnswerText("/file", "secret");
    for (const std::string& to : {server.Url() + "file", std::string("/file")}) {
        server.Answer("/moved", {.status = 302, .headers = "Location: " + to + "\r\n"});
        EXPECT_EQ(HttpEnd::NotOpened, Get("moved")) << to;
    }
    for (const std::string& head : server.Requests()) EXPECT_TRUE(head.starts_with("GET /moved ")) << head;
}

TEST_F(Session, RefusesAddressesBeforeItConnects) {
    const std::string host = "localhost:" + std::to_string(server.Port());
    for (const std::string& url :
         {"http://" + host + "/file", "ftp://" + host + "/file", std::string("file:///etc/passwd")})
        EXPECT_EQ(HttpEnd::NotOpened, session.Get(url, 1, [](std::string_view) { return true; })) << url;
    EXPECT_TRUE(server.Requests().empty());
}

TEST_F(Session, GivesUpOnServersThatStall) {
    const BlackHole hole;
    server.Answer("/trickle", {.body = std::string(100, '0'), .pause = 200ms});
    server.Answer("/silent", {.hangsAfterBody = true, .raw = ""});
    server.Answer("/half",
                  {.hangsAfterBody = true, .raw = "HTTP/1.1 200 OK\r\nContent-Length: 9\r\n\r\n0123"});
    server.Answer("/heads", {.hangsAfterBody = true, .raw = "HTTP/1.1 200 OK\r\nContent-Le"});
    const struct {
        std::string url;
        HttpEnd end;
    } cases[] = {
        {hole.Url(), HttpEnd::NotOpened},
        {server.Url() + "silent", HttpEnd::NotOpened},
        {server.Url() + "trickle", HttpEnd::ReadFailed},
        {server.Url() + "half", HttpEnd::ReadFailed},
        {server.Url() + "heads", HttpEnd::ReadFailed},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.url);
        const auto start = Clock::now();
        EXPECT_EQ(c.end, session.Get(c.url, kNoLimit, [](std::string_view) { return true; }));
        EXPECT_LT(Clock::now() - start, 10s);
    }
}

TEST(SessionCancel, IsQuickWhereverTheFetchIs) {
    const BlackHole hole;
    HttpServer server;
    server.Answer("/silent", {.hangsAfterBody = true, .raw = ""});
    server.Answer("/trickle", {.body = std::string(1000, '0'), .pause = 100ms});
    server.Answer("/endless", {.body = std::string(100, '0'), .isEndless = true});
    for (const std::string& url :
         {hole.Url(), server.Url() + "silent", server.Url() + "trickle", server.Url() + "endless",
          std::string("https://update.tolvane.invalid/")}) {
        SCOPED_TRACE(url);
        HttpSession session("AutoUpdateAgent");
        auto end = std::async(std::launch::async, [&] {
            return session.Get(url, kNoLimit, [](std::string_view) { return true; });
        });
        end.wait_for(200ms);
        const auto start = Clock::now();
        session.Cancel();
        EXPECT_NE(HttpEnd::Complete, end.get());
        EXPECT_LT(Clock::now() - start, 500ms);
        EXPECT_EQ(HttpEnd::NotOpened, session.Get(server.Url(), 1, [](std::string_view) { return true; }))
            << "and for good";
    }
}

TEST(SessionServer, NobodyThere) {
    std::string url;
    {
        const HttpServer gone;
        url = gone.Url();
    }
    HttpSession session("AutoUpdateAgent");
    EXPECT_TRUE(session.IsOpen());
    EXPECT_EQ(HttpEnd::NotOpened, session.Get(url, 1, [](std::string_view) { return true; }));
}

}  // namespace

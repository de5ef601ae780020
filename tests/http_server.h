#pragma once

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <functional>
#include <list>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

/// One end of a connection.
class ByteStream {
public:
    virtual ~ByteStream() = default;
    virtual bool Write(std::string_view bytes) = 0;
    virtual std::string ReadSome() = 0;  // empty at the end
};

/// An answer of the server, right or wrong.
struct HttpAnswer {
    int status = 200;
    std::string headers{};  // lines beyond the usual ones, each ended by "\r\n"
    std::string body{};
    std::optional<std::uint64_t> toldLength{};  // in place of the body's
    bool isChunked = false;                     // in chunks of three bytes, without a length
    bool isEndless = false;                     // the body, over and over, without a length
    bool hangsAfterBody = false;                // instead of closing the connection
    std::optional<std::string> raw{};           // in place of all this
    std::chrono::milliseconds pause{0};         // before each byte of the body
    std::function<void()> beforeBody{};         // the headers are with the client by then
};

/// An HTTP server on a free port of 127.0.0.1. Paths without an answer get 404.
class HttpServer {
public:
    using MakeStream = std::function<std::unique_ptr<ByteStream>(int socket)>;

    /// `makeStream` wraps an accepted socket, and may refuse it; plain by default.
    explicit HttpServer(MakeStream makeStream = {});
    ~HttpServer();

    int Port() const { return port; }
    std::string Url() const { return "http://127.0.0.1:" + std::to_string(port) + "/"; }

    void Answer(const std::string& path, HttpAnswer answer);
    void AnswerText(const std::string& path, std::string body);

    /// The heads of all requests so far, as they came.
    std::vector<std::string> Requests() const;

private:
    void Accept();
    void Serve(int socket);
    void Send(ByteStream& stream, const HttpAnswer& answer);
    bool SendBody(ByteStream& stream, const HttpAnswer& answer);
    /// False if the server ends meanwhile.
    bool Sleep(std::chrono::milliseconds time);

    MakeStream makeStream;
    int port = 0;  // told by the listener, so before it
    int listener = -1;
    mutable std::mutex mutex;
    std::condition_variable ending;
    bool isEnding = false;
    std::map<std::string, HttpAnswer> answers;
    std::vector<std::string> requests;
    std::vector<int> sockets;  // open ones
    std::list<std::thread> threads;
    std::thread acceptor;
};

/// A port of 127.0.0.1 where connections wait for ever to be taken: like an address that swallows everything.
class BlackHole {
public:
    BlackHole();
    ~BlackHole();
    std::string Url() const { return "http://127.0.0.1:" + std::to_string(port) + "/"; }

private:
    int port = 0;  // told by the listener, so before it
    int listener = -1;
    std::vector<int> clients;  // that fill its queue
};

#include "tests/http_server.h"

#include <arpa/inet.h>
#include <fcntl.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>

namespace {

class PlainStream : public ByteStream {
public:
    explicit PlainStream(int socket) : socket(socket) {}

    bool Write(std::string_view bytes) override {
        while (!bytes.empty()) {
            const ssize_t sent = send(socket, bytes.data(), bytes.size(), MSG_NOSIGNAL);
            if (sent <= 0) return false;
            bytes.remove_prefix(static_cast<std::size_t>(sent));
        }
        return true;
    }

    std::string ReadSome() override {
        char buffer[4096];
        const ssize_t count = recv(socket, buffer, sizeof buffer, 0);
        return count > 0 ? std::string(buffer, static_cast<std::size_t>(count)) : std::string();
    }

private:
    int socket;
};

sockaddr_in Loopback(int port) {
    sockaddr_in address = {};
    address.sin_family = AF_INET;
    address.sin_port = htons(static_cast<std::uint16_t>(port));
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    return address;
}

/// A socket that listens on a free port, which it tells.
int Listen(int queue, int& port) {
    const int listener = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_in address = Loopback(0);
    socklen_t length = sizeof address;
    auto* const generic = reinterpret_cast<sockaddr*>(&address);
    if (listener < 0 || bind(listener, generic, length) != 0 || listen(listener, queue) != 0 ||
        getsockname(listener, generic, &length) != 0)
        std::abort();
    port = ntohs(address.sin_port);
    return listener;
}

/// The head of a request; what follows isn't expected.
std::string ReadHead(ByteStream& stream) {
    std::string head;
    while (head.find("\r\n\r\n") == std::string::npos) {
        const std::string more = stream.ReadSome();
        if (more.empty()) break;
        head += more;
    }
    return head;
}

std::string PathOf(const std::string& head) {
    const std::size_t start = head.find(' ') + 1;
    return head.substr(start, head.find(' ', start) - start);
}

std::string HeadOf(const HttpAnswer& answer) {
    std::string head =
        "HTTP/1.1 " + std::to_string(answer.status) + " Told\r\nConnection: close\r\n" + answer.headers;
    if (answer.isChunked) {
        head += "Transfer-Encoding: chunked\r\n";
    } else if (!answer.isEndless) {
        head += "Content-Length: " + std::to_string(answer.toldLength.value_or(answer.body.size())) + "\r\n";
    }
    return head + "\r\n";
}

std::string InChunks(const std::string& body) {
    std::string chunks;
    for (std::size_t i = 0; i < body.size(); i += 3) {
        const std::string part = body.substr(i, 3);
        chunks += std::to_string(part.size()) + "\r\n" + part + "\r\n";
    }
    return chunks + "0\r\n\r\n";
}

}  // namespace

HttpServer::HttpServer(MakeStream makeStream)
    : makeStream(std::move(makeStream)), listener(Listen(16, port)) {
    if (!this->makeStream)
        this->makeStream = [](int socket) { return std::make_unique<PlainStream>(socket); };
    acceptor = std::thread([this] { Accept(); });
}

HttpServer::~HttpServer() {
    {
        const std::lock_guard lock(mutex);
        isEnding = true;
        for (const int socket : sockets) shutdown(socket, SHUT_RDWR);
    }
    ending.notify_all();
    shutdown(listener, SHUT_RDWR);
    acceptor.join();
    for (std::thread& thread : threads) thread.join();
    close(listener);
}

void HttpServer::Answer(const std::string& path, HttpAnswer answer) {
    const std::lock_guard lock(mutex);
    answers.insert_or_assign(path, std::move(answer));
}

void HttpServer::AnswerText(const std::string& path, std::string body) {
    HttpAnswer answer;
    answer.body = std::move(body);
    Answer(path, std::move(answer));
}

std::vector<std::string> HttpServer::Requests() const {
    const std::lock_guard lock(mutex);
    return requests;
}

void HttpServer::Accept() {
    while (true) {
        const int socket = accept4(listener, nullptr, nullptr, SOCK_CLOEXEC);
        if (socket < 0) return;
        const std::lock_guard lock(mutex);
        if (isEnding) {
            close(socket);
            return;
        }
        sockets.push_back(socket);
        threads.emplace_back([this, socket] { Serve(socket); });
    }
}

void HttpServer::Serve(int socket) {
    if (const auto stream = makeStream(socket)) {
        const std::string head = ReadHead(*stream);
        HttpAnswer answer;
        answer.status = 404;
        {
            const std::lock_guard lock(mutex);
            if (!head.empty()) requests.push_back(head);
            const auto found = answers.find(PathOf(head));
            if (found != answers.end()) answer = found->second;
        }
        if (!head.empty()) Send(*stream, answer);
    }
    const std::lock_guard lock(mutex);
    sockets.erase(std::find(sockets.begin(), sockets.end(), socket));
    close(socket);
}

void HttpServer::Send(ByteStream& stream, const HttpAnswer& answer) {
    if (answer.raw) {
        stream.Write(*answer.raw);
    } else if (stream.Write(HeadOf(answer))) {
        if (answer.beforeBody) answer.beforeBody();
        if (!SendBody(stream, answer)) return;
    }
    if (answer.hangsAfterBody) stream.ReadSome();
}

bool HttpServer::SendBody(ByteStream& stream, const HttpAnswer& answer) {
    const std::string bytes = answer.isChunked ? InChunks(answer.body) : answer.body;
    do {
        if (answer.pause.count() == 0) {
            if (!stream.Write(bytes)) return false;
            continue;
        }
        for (const char byte : bytes)
            if (!Sleep(answer.pause) || !stream.Write({&byte, 1})) return false;
    } while (answer.isEndless);
    return true;
}

bool HttpServer::Sleep(std::chrono::milliseconds time) {
    std::unique_lock lock(mutex);
    return !ending.wait_for(lock, time, [this] { return isEnding; });
}

BlackHole::BlackHole() : listener(Listen(0, port)) {
    // Linux takes one more than the queue's length; what comes later isn't answered.
    for (int i = 0; i < 3; ++i) {
        const int client = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
        const sockaddr_in address = Loopback(port);
        connect(client, reinterpret_cast<const sockaddr*>(&address), sizeof address);
        clients.push_back(client);
    }
}

BlackHole::~BlackHole() {
    for (const int client : clients) close(client);
    close(listener);
}

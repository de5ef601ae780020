#pragma once

#include <atomic>
#include <chrono>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

/// How a fetch ended.
enum class HttpEnd {
    Complete,    // all that the server had
    NotOpened,   // no server, no trust in it, or it has nothing there
    ReadFailed,  // broken off, or too slow
    TooLong,     // more than was asked for; what was asked for has been handed out
    Refused,     // by the receiver
};

struct HttpOptions {
    std::chrono::milliseconds connectLimit{15000};  // finding the server, connecting, agreeing on keys
    std::chrono::seconds stallLimit{
        30};                   // with next to nothing received, headers included: 64 bytes a second
    std::string certificates;  // a file of the roots to trust; empty for the system's
};

/// Fetches files by HTTP from addresses that `IsFetchable` allows, always from the server. Certificates are
/// checked. Redirects are followed to HTTPS only, a few times. A proxy of the environment is used, but not
/// for this machine.
///
/// `Get` is for one thread at a time; `Cancel` is for any.
class HttpSession {
public:
    /// `clientName` is what servers see as the user agent.
    explicit HttpSession(std::string clientName, HttpOptions options = {});
    ~HttpSession();
    HttpSession(const HttpSession&) = delete;
    HttpSession& operator=(const HttpSession&) = delete;

    /// False if the system gave no means; nothing can be fetched then.
    bool IsOpen() const { return multi != nullptr; }

    /// Takes the next bytes; false to break off.
    using Receiver = std::function<bool(std::string_view)>;

    /// Hands out at most `maxBytes` bytes of what lies at `url`. Returns at the latest when a limit of the
    /// options has passed, and at once after `Cancel`.
    HttpEnd Get(const std::string& url, std::uint64_t maxBytes, const Receiver& receiver);

    /// Ends a fetch that goes on, and every later one before it begins.
    void Cancel();
    bool IsCancelled() const { return isCancelled; }

private:
    struct Transfer;

    bool Prepare(Transfer& transfer, const std::string& url) const;
    int Perform(void* easy);

    const std::string clientName;
    const HttpOptions options;
    void* multi = nullptr;  // the library's handle, with the connections that are still open
    std::atomic<bool> isCancelled{false};
};

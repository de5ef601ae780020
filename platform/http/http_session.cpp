#include "platform/http/http_session.h"

#include "platform/http/http_address.h"

#include <curl/curl.h>

#include <algorithm>
#include <memory>

namespace {

constexpr long kMaxRedirects = 5;
constexpr long kSlowestBytesPerSecond = 64;
constexpr std::uint64_t kMaxHeaderBytes = 65536;  // of all answers of one fetch
constexpr long kStatusOk = 200;
constexpr int kPollMs = 1000;

bool StartLibrary() {
    static const bool started = curl_global_init(CURL_GLOBAL_DEFAULT) == CURLE_OK;
    return started;
}

struct EasyDeleter {
    void operator()(CURL* easy) const { curl_easy_cleanup(easy); }
};
struct ListDeleter {
    void operator()(curl_slist* list) const { curl_slist_free_all(list); }
};

}  // namespace

struct HttpSession::Transfer {
    Transfer(std::uint64_t maxBytes, const Receiver& receiver) : maxBytes(maxBytes), receiver(receiver) {}

    static std::size_t OnHeader(char* bytes, std::size_t size, std::size_t count, void* self);
    static std::size_t OnBody(char* bytes, std::size_t size, std::size_t count, void* self);
    static int OnProgress(void* self, curl_off_t total, curl_off_t now, curl_off_t, curl_off_t);

    /// That of the last answer so far; 0 before the first.
    long Status() const {
        long status = 0;
        curl_easy_getinfo(easy.get(), CURLINFO_RESPONSE_CODE, &status);
        return status;
    }
    HttpEnd End(int code) const;

    const std::uint64_t maxBytes;
    const Receiver& receiver;
    std::uint64_t received = 0;
    std::uint64_t headerBytes = 0;
    bool isTooLong = false;
    bool isRefused = false;
    std::unique_ptr<curl_slist, ListDeleter> headers;
    std::unique_ptr<CURL, EasyDeleter> easy;  // goes first: it uses the list
};

std::size_t HttpSession::Transfer::OnHeader(char*, std::size_t size, std::size_t count, void* self) {
    auto& transfer = *static_cast<Transfer*>(self);
    transfer.headerBytes += size * count;
    return transfer.headerBytes <= kMaxHeaderBytes ? size * count : 0;
}

std::size_t HttpSession::Transfer::OnBody(char* bytes, std::size_t size, std::size_t count, void* self) {
    auto& transfer = *static_cast<Transfer*>(self);
    if (transfer.Status() != kStatusOk) return 0;
    const std::size_t length = size * count;
    const auto wanted =
        static_cast<std::size_t>(std::min<std::uint64_t>(length, transfer.maxBytes - transfer.received));
    transfer.received += wanted;
    transfer.isRefused = wanted > 0 && !transfer.receiver({bytes, wanted});
    transfer.isTooLong = wanted < length;
    return transfer.isRefused || transfer.isTooLong ? 0 : length;
}

/// The body of a redirect passes unseen; it has its bound here.
int HttpSession::Transfer::OnProgress(void* self, curl_off_t, curl_off_t now, curl_off_t, curl_off_t) {
    const auto& transfer = *static_cast<const Transfer*>(self);
    return transfer.Status() != kStatusOk && now > static_cast<curl_off_t>(kMaxHeaderBytes) ? 1 : 0;
}

HttpEnd HttpSession::Transfer::End(int code) const {
    if (Status() != kStatusOk) return HttpEnd::NotOpened;
    if (code == CURLE_OK) return HttpEnd::Complete;
    if (isRefused) return HttpEnd::Refused;
    return isTooLong ? HttpEnd::TooLong : HttpEnd::ReadFailed;
}

HttpSession::HttpSession(std::string clientName, HttpOptions options)
    : clientName(std::move(clientName)),
      options(std::move(options)),
      multi(StartLibrary() ? curl_multi_init() : nullptr) {}

HttpSession::~HttpSession() {
    if (multi) curl_multi_cleanup(multi);
}

bool HttpSession::Prepare(Transfer& transfer, const std::string& url) const {
    transfer.easy.reset(curl_easy_init());
    transfer.headers.reset(curl_slist_append(nullptr, "Cache-Control: no-cache"));
    if (!transfer.easy || !transfer.headers) return false;
    CURLcode failed = CURLE_OK;
    const auto set = [&](CURLoption option, auto value) {
        if (failed == CURLE_OK) failed = curl_easy_setopt(transfer.easy.get(), option, value);
    };
    set(CURLOPT_URL, url.c_str());
    set(CURLOPT_PROTOCOLS_STR, "https,http");  // which of them `IsFetchable` has decided
    set(CURLOPT_REDIR_PROTOCOLS_STR, "https");
    set(CURLOPT_FOLLOWLOCATION, 1L);
    set(CURLOPT_MAXREDIRS, kMaxRedirects);
    set(CURLOPT_SSL_VERIFYPEER, 1L);
    set(CURLOPT_SSL_VERIFYHOST, 2L);
    set(CURLOPT_SSLVERSION, static_cast<long>(CURL_SSLVERSION_TLSv1_2));
    if (!options.certificates.empty()) {
        set(CURLOPT_CAINFO, options.certificates.c_str());
        set(CURLOPT_CAPATH, static_cast<const char*>(nullptr));
    }
    if (IsOnThisMachine(url)) set(CURLOPT_PROXY, "");
    set(CURLOPT_USERAGENT, clientName.c_str());
    set(CURLOPT_HTTPHEADER, transfer.headers.get());
    set(CURLOPT_FAILONERROR, 1L);
    set(CURLOPT_CONNECTTIMEOUT_MS, static_cast<long>(options.connectLimit.count()));
    set(CURLOPT_LOW_SPEED_LIMIT, kSlowestBytesPerSecond);
    set(CURLOPT_LOW_SPEED_TIME, static_cast<long>(options.stallLimit.count()));
    set(CURLOPT_NOSIGNAL, 1L);    // signals belong to the whole process
    set(CURLOPT_QUICK_EXIT, 1L);  // nobody waits for a name server that doesn't answer
    set(CURLOPT_HEADERFUNCTION, &Transfer::OnHeader);
    set(CURLOPT_HEADERDATA, &transfer);
    set(CURLOPT_WRITEFUNCTION, &Transfer::OnBody);
    set(CURLOPT_WRITEDATA, &transfer);
    set(CURLOPT_XFERINFOFUNCTION, &Transfer::OnProgress);
    set(CURLOPT_XFERINFODATA, &transfer);
    set(CURLOPT_NOPROGRESS, 0L);
    return failed == CURLE_OK;
}

HttpEnd HttpSession::Get(const std::string& url, std::uint64_t maxBytes, const Receiver& receiver) {
    if (!IsOpen() || isCancelled || !IsFetchable(url)) return HttpEnd::NotOpened;
    Transfer transfer(maxBytes, receiver);
    if (!Prepare(transfer, url) || curl_multi_add_handle(multi, transfer.easy.get()) != CURLM_OK)
        return HttpEnd::NotOpened;
    const int code = Perform(transfer.easy.get());
    const HttpEnd end = transfer.End(code);
    curl_multi_remove_handle(multi, transfer.easy.get());
    return end;
}

/// The library's code for the transfer. Waits without it, so that `Cancel` can wake it.
int HttpSession::Perform(void* easy) {
    int running = 1;
    while (!isCancelled) {
        if (curl_multi_perform(multi, &running) != CURLM_OK) return CURLE_RECV_ERROR;
        int left = 0;
        while (const CURLMsg* message = curl_multi_info_read(multi, &left))
            if (message->msg == CURLMSG_DONE && message->easy_handle == easy) return message->data.result;
        if (curl_multi_poll(multi, nullptr, 0, kPollMs, nullptr) != CURLM_OK) return CURLE_RECV_ERROR;
    }
    return CURLE_ABORTED_BY_CALLBACK;
}

void HttpSession::Cancel() {
    isCancelled = true;
    if (multi) curl_multi_wakeup(multi);
}

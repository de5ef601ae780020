#include "platform/http/http_address.h"

#include <curl/curl.h>

#include <memory>

namespace {

struct UrlDeleter {
    void operator()(CURLU* url) const { curl_url_cleanup(url); }
};
using Url = std::unique_ptr<CURLU, UrlDeleter>;

/// Read by the library that fetches, so that both see the same host. Null if it is no address.
Url Parse(const std::string& text) {
    Url url(curl_url());
    if (url && curl_url_set(url.get(), CURLUPART_URL, text.c_str(), 0) != CURLUE_OK) url.reset();
    return url;
}

/// Empty if there is no such part.
std::string Part(const Url& url, CURLUPart which) {
    char* text = nullptr;
    if (curl_url_get(url.get(), which, &text, 0) != CURLUE_OK) return {};
    std::string part = text;
    curl_free(text);
    return part;
}

bool IsLoopback(const Url& url) {
    return Part(url, CURLUPART_HOST) == "127.0.0.1";
}

bool IsUnreserved(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '-' ||
           c == '.' || c == '_' || c == '~';
}

}  // namespace

bool IsFetchable(const std::string& text) {
    const Url url = Parse(text);
    if (!url || !Part(url, CURLUPART_USER).empty() || !Part(url, CURLUPART_PASSWORD).empty()) return false;
    const std::string scheme = Part(url, CURLUPART_SCHEME);
    return scheme == "https" || (scheme == "http" && IsLoopback(url));
}

bool IsOnThisMachine(const std::string& text) {
    const Url url = Parse(text);
    return url && IsLoopback(url);
}

std::string EncodePath(std::string_view name) {
    constexpr char kDigits[] = "0123456789ABCDEF";
    std::string path;
    for (const char c : name) {
        if (IsUnreserved(c) || c == '/') {
            path += c;
            continue;
        }
        const auto byte = static_cast<unsigned char>(c);
        path += '%';
        path += kDigits[byte >> 4];
        path += kDigits[byte & 15];
    }
    return path;
}

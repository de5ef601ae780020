#include "platform/text.h"

#include <algorithm>
#include <cstdint>

namespace {

constexpr std::uint32_t kReplacement = 0xFFFD;
constexpr std::uint32_t kEscapedByte = 0xDC00;  // U+DC80 to U+DCFF stand for the bytes 0x80 to 0xFF

bool IsSurrogate(std::uint32_t c) {
    return c >= 0xD800 && c <= 0xDFFF;
}
bool IsCodePoint(std::uint32_t c) {
    return c <= 0x10FFFF && !IsSurrogate(c);
}
bool IsEscapedByte(std::uint32_t c) {
    return c >= kEscapedByte + 0x80 && c <= kEscapedByte + 0xFF;
}

/// Decodes the sequence at the start of `bytes`; its length, or 0 if it isn't well-formed UTF-8.
std::size_t DecodeUtf8(std::string_view bytes, std::uint32_t& c) {
    const auto first = static_cast<unsigned char>(bytes[0]);
    const std::size_t length = first < 0x80   ? 1
                               : first < 0xC2 ? 0
                               : first < 0xE0 ? 2
                               : first < 0xF0 ? 3
                               : first < 0xF5 ? 4
                                              : 0;
    if (length == 0 || length > bytes.size()) return 0;

    c = length == 1 ? first : first & (0x7Fu >> length);
    for (std::size_t i = 1; i < length; ++i) {
        const auto next = static_cast<unsigned char>(bytes[i]);
        if ((next & 0xC0) != 0x80) return 0;
        c = c << 6 | (next & 0x3Fu);
    }
    constexpr std::uint32_t kSmallest[] = {0, 0, 0x80, 0x800, 0x10000};
    return c >= kSmallest[length] && IsCodePoint(c) ? length : 0;
}

void AppendUtf8(std::uint32_t c, std::string& bytes) {
    const auto append = [&bytes](std::uint32_t byte) { bytes += static_cast<char>(byte); };
    const auto tail = [c, append](int shift) { append(0x80 | (c >> shift & 0x3F)); };
    if (c < 0x80) {
        append(c);
    } else if (c < 0x800) {
        append(0xC0 | c >> 6);
        tail(0);
    } else if (c < 0x10000) {
        append(0xE0 | c >> 12);
        tail(6);
        tail(0);
    } else {
        append(0xF0 | c >> 18);
        tail(12);
        tail(6);
        tail(0);
    }
}

}  // namespace

std::wstring FromUtf8(std::string_view bytes) {
    std::wstring text;
    text.reserve(bytes.size());
    while (!bytes.empty()) {
        std::uint32_t c = 0;
        std::size_t length = DecodeUtf8(bytes, c);
        if (length == 0) {
            c = kEscapedByte + static_cast<unsigned char>(bytes[0]);
            length = 1;
        }
        text += static_cast<wchar_t>(c);
        bytes.remove_prefix(length);
    }
    return text;
}

std::string ToUtf8(std::wstring_view text) {
    std::string bytes;
    bytes.reserve(text.size());
    for (const wchar_t character : text) {
        const auto c = static_cast<std::uint32_t>(character);
        if (IsEscapedByte(c)) {
            bytes += static_cast<char>(c - kEscapedByte);
        } else {
            AppendUtf8(IsCodePoint(c) ? c : kReplacement, bytes);
        }
    }
    return bytes;
}

std::string ToUtf16Le(std::wstring_view text) {
    std::string bytes;
    bytes.reserve(2 * text.size());
    const auto append = [&bytes](std::uint32_t unit) {
        bytes += static_cast<char>(unit & 0xFF);
        bytes += static_cast<char>(unit >> 8 & 0xFF);
    };
    for (const wchar_t character : text) {
        auto c = static_cast<std::uint32_t>(character);
        if (!IsCodePoint(c)) c = kReplacement;
        if (c >= 0x10000) {
            append(0xD800 + ((c - 0x10000) >> 10));
            append(0xDC00 + ((c - 0x10000) & 0x3FF));
        } else {
            append(c);
        }
    }
    return bytes;
}

wchar_t AsciiLower(wchar_t c) {
    return c >= L'A' && c <= L'Z' ? static_cast<wchar_t>(c - L'A' + L'a') : c;
}

bool EndsWithNoCase(std::wstring_view text, std::wstring_view ending) {
    if (text.size() < ending.size()) return false;
    text.remove_prefix(text.size() - ending.size());
    return std::equal(text.begin(), text.end(), ending.begin(),
                      [](wchar_t a, wchar_t b) { return AsciiLower(a) == AsciiLower(b); });
}

std::wstring_view FileNamePart(std::wstring_view path) {
    const auto separator = path.find_last_of(L"/\\");
    return separator == path.npos ? path : path.substr(separator + 1);
}

void CopyText(std::wstring_view text, wchar_t* buffer, int size) {
    if (buffer == nullptr || size < 1) return;
    const auto length = std::min(text.size(), static_cast<std::size_t>(size) - 1);
    std::copy_n(text.begin(), length, buffer);
    buffer[length] = 0;
}

#include "update/update_name.h"

#include "platform/text.h"
#include "update/staging_format.h"

#include <algorithm>
#include <vector>

namespace {

constexpr std::size_t kMaxPartBytes = 200;  // file systems take 255
constexpr std::size_t kMaxParts = 16;

std::wstring Widen(std::string_view bytes) {
    std::wstring text;
    for (const char c : bytes) text += static_cast<wchar_t>(static_cast<unsigned char>(c));
    return text;
}

std::vector<std::wstring> Split(const std::wstring& name) {
    std::vector<std::wstring> parts(1);
    for (const wchar_t c : name) {
        if (c == L'/') {
            parts.emplace_back();
        } else {
            parts.back() += c;
        }
    }
    return parts;
}

/// Covers the directory's own two names as well: they are nothing but dots.
bool IsPlainPart(const std::wstring& part) {
    if (part.empty() || part.back() == L'.' || part.back() == L' ') return false;
    if (ToUtf8(part).size() > kMaxPartBytes) return false;
    return std::none_of(part.begin(), part.end(),
                        [](wchar_t c) { return c < 0x20 || c == 0x7F || c == L':'; });
}

bool EqualNoCase(std::wstring_view a, std::wstring_view b) {
    return a.size() == b.size() && EndsWithNoCase(a, b);
}

/// In the staging directory the first part stands beside the list and the marks; in the program's directory
/// it could be the staging directory. Case doesn't count: file systems differ.
bool IsOwnName(const std::wstring& firstPart) {
    return std::any_of(kReservedNames.begin(), kReservedNames.end(),
                       [&](const char* name) { return EqualNoCase(firstPart, Widen(name)); });
}

}  // namespace

std::string_view SkipWhiteSpace(std::string_view text) {
    text.remove_prefix(std::min(text.find_first_not_of(" \t\r\n\v\f"), text.size()));
    return text;
}

std::wstring LocalName(std::string_view serverName) {
    std::wstring name = Widen(serverName);
    std::replace(name.begin(), name.end(), L'\\', L'/');
    const std::vector<std::wstring> parts = Split(name);
    const bool isPlain = parts.size() <= kMaxParts && std::all_of(parts.begin(), parts.end(), IsPlainPart);
    return isPlain && !IsOwnName(parts.front()) ? name : std::wstring();
}

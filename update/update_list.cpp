#include "update/update_list.h"

#include "platform/text.h"
#include "update/staging_format.h"
#include "update/update_name.h"

#include <algorithm>
#include <charconv>
#include <set>

namespace {

/// A decimal number at the start of the text, which is taken off it.
std::optional<std::uint64_t> TakeSize(std::string_view& text) {
    text = SkipWhiteSpace(text);
    std::uint64_t size = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), size);
    if (error != std::errc() || size > kMaxUpdateBytes) return {};
    text.remove_prefix(static_cast<std::size_t>(end - text.data()));
    return size;
}

/// Any character will do that can't belong to a number or to its line's end.
bool IsSeparator(char c) {
    const bool isLetter = AsciiLower(c) >= 'a' && AsciiLower(c) <= 'z';
    return c == '\t' || (static_cast<unsigned char>(c) >= ' ' && !isLetter && (c < '0' || c > '9'));
}

std::optional<UpdateEntry> TakeEntry(std::string_view& text) {
    const auto size = TakeSize(text);
    if (!size || text.empty() || !IsSeparator(text.front())) return {};
    const std::string_view name = text.substr(1, text.find('\r', 1) - 1);
    text.remove_prefix(1 + name.size());
    UpdateEntry entry{*size, std::string(name), LocalName(name)};
    if (entry.name.empty()) return {};
    std::replace(entry.serverName.begin(), entry.serverName.end(), '\\', '/');
    return entry;
}

/// The names that an update uses, in lower case.
class UsedNames {
public:
    /// Takes a file with the names beside it; false if one of them is in use.
    bool Take(const std::wstring& name) {
        std::wstring lower;
        for (const wchar_t c : name) lower += AsciiLower(c);
        for (const char* ending : {"", kPreviousEnding, kArrivingEnding})
            if (!files.insert(lower + FromUtf8(ending)).second) return false;
        for (std::size_t end = lower.find(L'/'); end != std::wstring::npos; end = lower.find(L'/', end + 1))
            directories.insert(lower.substr(0, end));
        return true;
    }

    bool HasFileAsDirectory() const {
        for (const std::wstring& directory : directories)
            if (files.contains(directory)) return true;
        return false;
    }

private:
    std::set<std::wstring> files;
    std::set<std::wstring> directories;
};

}  // namespace

std::optional<UpdateList> ParseUpdateList(std::string_view text) {
    if (text.size() > kMaxListBytes) return {};
    const auto total = TakeSize(text);
    if (!total) return {};

    UpdateList list{*total, {}};
    UsedNames used;
    std::uint64_t sum = 0;  // of at most 16384 sizes of 2 GiB
    for (text = SkipWhiteSpace(text); !text.empty(); text = SkipWhiteSpace(text)) {
        auto entry = TakeEntry(text);
        if (!entry || !used.Take(entry->name)) return {};
        sum += entry->size;
        list.entries.push_back(std::move(*entry));
    }
    if (list.entries.empty() || sum != list.totalSize || used.HasFileAsDirectory()) return {};
    return list;
}

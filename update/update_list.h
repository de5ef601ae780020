#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

struct UpdateEntry {
    std::uint64_t size = 0;
    std::string serverName;  // the bytes of the list, "/" between directories
    std::wstring name;       // see `LocalName`
};

struct UpdateList {
    std::uint64_t totalSize = 0;
    std::vector<UpdateEntry> entries;  // at least one
};

/// Reads the list of an update: the total size, then for each file its size, one character between, and its
/// name up to a carriage return or the end.
///
/// Nothing for a text that isn't wholly such a list: too long, a number missing or beyond what an update may
/// have, sizes that don't sum up to the total, no file at all, a name that `LocalName` refuses, and names
/// that get into each other's way: listed twice, the directory of another one, or the name under which
/// another one's previous version is kept. Case doesn't count in that.
std::optional<UpdateList> ParseUpdateList(std::string_view text);

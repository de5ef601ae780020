#pragma once

#include <array>
#include <optional>
#include <string_view>

/// Major, minor, release, build. Compared from the first field on.
using Version = std::array<int, 4>;

/// Four decimal numbers with dots between them, white space allowed before each, anything behind them.
/// Nothing if one of them is missing or doesn't fit: half a number is no reason to replace a program.
std::optional<Version> ParseVersion(std::string_view text);

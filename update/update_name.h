#pragma once

#include <string>
#include <string_view>

/// The text behind spaces, tabs and line ends.
std::string_view SkipWhiteSpace(std::string_view text);

/// The path, relative to the program's directory, of a file that the server names: one character for each
/// byte, "/" between the directories, for which the server may also write "\".
///
/// Empty for what isn't a plain name below that directory, in any spelling and for any system: absolute
/// names, drives and streams (":"), "." and "..", also when they are hidden by dots and spaces at the end,
/// empty parts ("a//b", "\\host"), control characters, parts that are too long to get ".bak" behind them,
/// more than 16 parts; and for the updater's own files.
std::wstring LocalName(std::string_view serverName);

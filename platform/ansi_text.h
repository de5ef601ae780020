#pragma once

#include <string>
#include <string_view>

/// Text in the single-byte Western code page 1252, whatever the machine's locale; a character that the page
/// lacks becomes "_".
std::string ToAnsi(std::wstring_view text);

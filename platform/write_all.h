#pragma once

#include <string_view>

/// Writes all bytes to an open file, a pipe or a terminal; false if only some of them, or none, could be
/// written.
bool WriteAll(int descriptor, std::string_view bytes);

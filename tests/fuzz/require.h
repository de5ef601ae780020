#pragma once

#include <cstdlib>

/// Ends the fuzzer's program, which shows the input, unless `condition` holds.
inline void Require(bool condition) {
    if (!condition) std::abort();
}

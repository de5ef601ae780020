#pragma once

#include <cstdint>

/// A row of three interleaved bytes a pixel to three rows, and back. The same bytes under every instruction
/// set; touches `width` pixels and nothing else. Rows need no alignment and must not overlap.
void rkSplitRow(const std::uint8_t* pixels, std::uint8_t* first, std::uint8_t* second, std::uint8_t* third,
                int width);
void rkJoinRow(const std::uint8_t* first, const std::uint8_t* second, const std::uint8_t* third,
               std::uint8_t* pixels, int width);

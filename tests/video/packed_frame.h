#pragma once

#include "video/raw_layout.h"

#include <cstdint>
#include <random>
#include <vector>

using Bytes = std::vector<std::uint8_t>;

/// A packed frame of noise, the same for the same arguments, in a block of exactly its size, so that the
/// address sanitizer sees a byte too much.
inline Bytes RandomFrame(int colorSpace, int width, int height) {
    std::mt19937 random(static_cast<unsigned>(colorSpace * 10000 + width * 100 + height));
    Bytes frame(static_cast<std::size_t>(PackedFrameBytes(colorSpace, width, height)));
    for (auto& byte : frame) byte = static_cast<std::uint8_t>(random());
    return frame;
}

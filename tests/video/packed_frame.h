#pragma once

#include "video/raw_layout.h"
#include "video/video_image.h"

#include <cstdint>
#include <random>
#include <vector>

using Bytes = std::vector<std::uint8_t>;

/// A packed frame of noise, always the same, in a block of exactly its size for the address sanitizer to watch.
inline Bytes RandomFrame(int colorSpace, int width, int height) {
    std::mt19937 random(static_cast<unsigned>(colorSpace * 10000 + width * 100 + height));
    Bytes frame(static_cast<std::size_t>(PackedFrameBytes(colorSpace, width, height)));
    for (auto& byte : frame) byte = static_cast<std::uint8_t>(random());
    return frame;
}

/// Makes the image one of that size and layout that holds the frame.
inline void Load(rkVideoImage& image, int width, int height, int colorSpace, const Bytes& frame,
                 int border = 0) {
    image.Create(width, height, colorSpace, border);
    image.LoadFrame(frame.data());
}

/// What the image holds, without its padding.
inline Bytes Packed(const rkVideoImage& image) {
    Bytes frame(image.PackedFrameBytes(), 0xAA);
    image.CopyVisibleTo(frame.data());
    return frame;
}

constexpr struct {
    int width, height;
} kSizes[] = {{1, 1}, {2, 2}, {1, 4}, {5, 3}, {5, 8}, {16, 16}, {17, 2}, {31, 5}, {48, 16}, {49, 7}};

#pragma once

#include "kernels/half_pixels.h"

#include <algorithm>
#include <cstdint>

namespace Kernels::Reference {

inline void HalfPixels(const std::uint8_t* source, int stride, int width, int height,
                       const HalfPixelPlanes& planes) {
    const auto filter = [](const auto& sample) {
        return sample(-2) - 5 * sample(-1) + 20 * sample(0) + 20 * sample(1) - 5 * sample(2) + sample(3);
    };
    const auto limited = [](int value) { return static_cast<std::uint8_t>(std::clamp(value, 0, 255)); };
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            const auto column = [&](int dx) {
                return filter([&](int dy) { return int{source[(y + dy) * stride + x + dx]}; });
            };
            const int row = filter([&](int dx) { return int{source[y * stride + x + dx]}; });
            planes.right[y * stride + x] = limited((row + 16) >> 5);
            planes.below[y * stride + x] = limited((column(0) + 16) >> 5);
            planes.diagonal[y * stride + x] = limited((filter(column) + 512) >> 10);
        }
    }
}

}  // namespace Kernels::Reference

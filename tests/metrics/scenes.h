#pragma once

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

#include "metric/metric_image.h"

namespace Metric {

/// A luma picture of a size and a kind that might bring out a fault: its samples are whole numbers or, as
/// those of deep formats, multiples of 1/4 or 1/256.
struct Scene {
    const char* what;
    int width, height;
    std::function<float(int x, int y)> sample;

    /// The samples, continued to multiples of `block` by repeating the last column and row.
    std::vector<float> Padded(int block) const {
        std::vector<float> samples;
        for (int y = 0; y < RoundUp(height, block); ++y) {
            for (int x = 0; x < RoundUp(width, block); ++x) {
                samples.push_back(sample(std::min(x, width - 1), std::min(y, height - 1)));
            }
        }
        return samples;
    }

    std::unique_ptr<CMetricImage> Image() const {
        auto image = std::make_unique<CMetricImage>(width, height);
        const std::vector<float> samples = Padded(1);
        std::copy(samples.begin(), samples.end(), image->GetY());
        return image;
    }

    static int RoundUp(int size, int block) { return (size + block - 1) / block * block; }
};

/// Noise of whole numbers from 0 to `levels` - 1.
inline float Noise(int x, int y, int levels) {
    std::uint32_t bits =
        static_cast<std::uint32_t>(x) * 0x9E3779B1u + static_cast<std::uint32_t>(y) * 0x85EBCA77u;
    bits = (bits ^ (bits >> 15)) * 0x2C1B3C6Du;
    return static_cast<float>((bits ^ (bits >> 13)) % static_cast<std::uint32_t>(levels));
}

/// Slow waves under the mosaic of a coarse codec, more grain the farther to the right.
inline float Coded(int x, int y) {
    const double waves = 110 + 50 * std::sin(x * 0.03 + y * 0.02) * std::cos(y * 0.05);
    const int mosaic = (x / 8 * 7 + y / 8 * 13) % 11 * 6;
    return std::floor(static_cast<float>(waves)) + static_cast<float>(mosaic) + Noise(x, y, 1 + x / 60);
}

inline std::vector<Scene> Scenes() {
    return {
        {"one block of noise", 8, 8, [](int x, int y) { return Noise(x, y, 256); }},
        {"neither side a multiple of 8", 100, 100, Coded},
        {"width not a multiple of 8", 722, 576, Coded},
        {"black and white noise", 72, 120, [](int x, int y) { return Noise(x, y, 2) * 255; }},
        {"flat", 48, 32, [](int, int) { return 77.0f; }},
        {"10 bits", 168, 40,
         [](int x, int y) { return std::min(Coded(x, y) + Noise(x, y, 8) / 4, 255.75f); }},
        // The sums of these pass 2^24 units, so that the order of additions shows.
        {"16 bits", 250, 131, [](int x, int y) { return Noise(x, y, 65536) / 256; }},
        {"chess board", 450, 300,
         [](int x, int y) {
             return 60 + static_cast<float>((x / 8 + y / 8) % 2 * 37) + (Noise(x, y, 5) == 0 ? 1.0f : 0.0f);
         }},
    };
}

}  // namespace Metric

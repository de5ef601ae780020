#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include "metric/metric_image.h"

/// What the benchmarks measure: their sizes, and the pictures of a made scene.

inline constexpr std::array<int, 2> kSizes[] = {{352, 288}, {1920, 1080}, {3840, 2160}};

/// Luma of frame `number` of a scene of which two thirds drift: coarseness 1 is the original, more is as a
/// codec leaves it, with its blocks.
inline std::uint8_t SceneLuma(int width, int x, int y, int number, int coarseness) {
    const int drift = x < width / 3 ? x : x + 2 * number;
    const int scene = (drift * y / 512 + drift / 3 + 2 * y + (drift * 31 ^ y * 17) % 13) % 220;
    return static_cast<std::uint8_t>(scene / coarseness * coarseness + (x / 8 + y / 8) % coarseness);
}

/// A frame of the scene, 4:4:4 with grey chroma, as a file brings it: bytes, or samples of 10 bits.
struct SceneFrame {
    SceneFrame(int width, int height, int number, int coarseness, bool isDeep = false)
        : image(width, height), samples(SampleCount(width, height) * (isDeep ? 2 : 1), 128) {
        std::uint8_t* sample = samples.data();
        for (int y = 0; y < height; ++y) {
            for (int x = 0; x < width; ++x) {
                const int luma = SceneLuma(width, x, y, number, coarseness);
                if (isDeep) *sample++ = static_cast<std::uint8_t>(luma << 2);
                *sample++ = static_cast<std::uint8_t>(isDeep ? luma >> 6 : luma);
            }
        }
        if (isDeep) {
            image.LoadYuvDeep444(samples.data(), 10);
        } else {
            image.LoadYuvBytes(samples.data(), width, samples.size() / 3);
        }
    }

    static std::size_t SampleCount(int width, int height) {
        return std::size_t{3} * static_cast<std::size_t>(width) * static_cast<std::size_t>(height);
    }

    Metric::CMetricImage image;
    std::vector<std::uint8_t> samples;
};

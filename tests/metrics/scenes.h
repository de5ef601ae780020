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
        for (int y = 0; y < RoundUp(height, block); ++y)
            for (int x = 0; x < RoundUp(width, block); ++x)
                samples.push_back(sample(std::min(x, width - 1), std::min(y, height - 1)));
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

inline float FullNoise(int x, int y) {
    return Noise(x, y, 256);
}

inline std::vector<Scene> Scenes() {
    return {
        {"one block of noise", 8, 8, FullNoise},
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

/// The scenes that slow references get through in a moment; the biggest is still worth a team of 8.
inline std::vector<Scene> SmallScenes() {
    std::vector<Scene> scenes = Scenes();
    std::erase_if(scenes, [](const Scene& scene) { return scene.width * scene.height > 150000; });
    return scenes;
}

/// A distorted version of a scene in 10 bits, which has a peak of 255.75.
inline Scene Distorted(const Scene& scene) {
    return {scene.what, scene.width, scene.height, [=](int x, int y) {
                const float noise = Noise(x + 3, y + 5, 64) - 32 + Noise(x / 4, y / 4, 32);
                return std::clamp(std::floor(scene.sample(x, y) * 4) + noise, 0.0f, 1023.0f) / 4;
            }};
}

/// A scene and a distorted one, whose peaks are 255 and 255.75: as images, and as planes that are continued
/// to multiples of 8.
struct PicturePair {
    explicit PicturePair(const Scene& scene)
        : width(Scene::RoundUp(scene.width, 8)),
          height(Scene::RoundUp(scene.height, 8)),
          firstPlane(scene.Padded(8)),
          secondPlane(Distorted(scene).Padded(8)),
          first(scene.Image()),
          second(std::make_unique<CMetricImage>(scene.width, scene.height)) {
        std::vector<std::uint8_t> bytes;
        for (const float sample : Distorted(scene).Padded(1)) {
            const int word = static_cast<int>(sample * 4);
            bytes.push_back(static_cast<std::uint8_t>(word & 0xFF));
            bytes.push_back(static_cast<std::uint8_t>(word >> 8));
        }
        bytes.resize(3 * bytes.size());  // U and V
        second->LoadYuvDeep444(bytes.data(), 10);
        second->ForgetFrame();
    }

    std::vector<CMetricImage*> Images() const { return {first.get(), second.get()}; }

    int width, height;
    std::vector<float> firstPlane, secondPlane;
    std::unique_ptr<CMetricImage> first, second;
};

}  // namespace Metric

#pragma once

#include <memory>

#include "metric/metric_image.h"

/// The pictures that the metrics' benchmarks measure.

inline constexpr int kWidth = 1920;
inline constexpr int kHeight = 1080;

/// Luma of a made scene: 1 is the original, more is as coarse as a codec leaves it, with its blocks.
inline std::unique_ptr<Metric::CMetricImage> SceneFrame(int coarseness) {
    auto image = std::make_unique<Metric::CMetricImage>(kWidth, kHeight);
    float* sample = image->GetY();
    for (int y = 0; y < kHeight; ++y) {
        for (int x = 0; x < kWidth; ++x) {
            const int scene = (x * y / 512 + x / 3 + 2 * y + (x * 31 ^ y * 17) % 13) % 220;
            *sample++ = static_cast<float>(scene / coarseness * coarseness + (x / 8 + y / 8) % coarseness);
        }
    }
    return image;
}

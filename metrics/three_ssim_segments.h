#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace Metric {

/// The kinds of area that 3SSIM tells apart.
enum Segment : std::uint8_t { Smooth, Texture, Edge };
inline constexpr std::size_t kSegmentCount = 3;

/// What separates the segments: an edge has a gradient above `edge` in either picture, a texture is what else
/// has one of at least `texture` in the first.
struct SegmentThresholds {
    float edge;
    float texture;
};

/// A row of pixels by segment.
struct SplitRow {
    std::uint8_t* segments;                    ///< the pixels' segments
    std::array<float*, kSegmentCount> values;  ///< for each segment its pixels' values, 0 at the others
};

/// Splits `width` pixels with these gradients and values; returns how many each segment has.
std::array<int, kSegmentCount> Split(const float* gradientFirst, const float* gradientSecond,
                                     const float* values, int width, const SegmentThresholds& thresholds,
                                     const SplitRow& row);

}  // namespace Metric

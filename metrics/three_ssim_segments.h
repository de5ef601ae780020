#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "kernels/bands.h"
#include "kernels/sobel_squares.h"

namespace Metric {

/// The kinds of area that 3SSIM tells apart.
enum Segment : std::uint8_t { Smooth, Texture, Edge };
inline constexpr std::size_t kSegmentCount = 3;

/// What separates the segments, as squares of gradients: an edge has one of at least `edge` in either
/// picture, a texture is what else has one of at least `texture` in the first.
struct SegmentThresholds {
    float edge;
    float texture;
};

/// The thresholds where `greatest` is the greatest square: a gradient, its root in float, makes an edge above
/// 0.12 of the greatest gradient and a texture from 0.06 of it on, both rounded to float. The root needn't be
/// taken of every pixel, since it never falls: what it tells is told by the least square that passes.
SegmentThresholds ThresholdsOf(float greatest);

/// Tells the segments of the pixels of a band of two pictures by their gradients; `segments` has rows of the
/// pictures' width. Returns how many pixels each segment has in the band.
std::array<int, kSegmentCount> FindSegments(const Kernels::SobelPlanes<2>& pictures,
                                            const Kernels::Band& band, const SegmentThresholds& thresholds,
                                            std::uint8_t* segments);

/// Paints a row of pixels as `PaintSimilarity` does, but with the grey in the byte that is the pixel's
/// segment and the other two black.
void PaintSegments(const float* similarities, const std::uint8_t* segments, int width, std::uint8_t* pixels);

}  // namespace Metric

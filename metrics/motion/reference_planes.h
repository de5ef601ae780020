#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "kernels/plane.h"

namespace Metric {

/// An 8-bit picture inside a plane: its own first pixel, and the bytes from row to row.
struct MotionPicture {
    const std::uint8_t* samples;
    int stride;
};

/// The samples that a vector points at: those of `first`, or where `second` isn't null the rounded means of
/// both. They belong to the picture's first pixel; a pixel further on stands as far behind them.
struct MovedSamples {
    const std::uint8_t* first;
    const std::uint8_t* second;
};

/// The reference picture at quarter-pixel positions. Half-pixel samples come from an interpolation filter of
/// six taps (1, -5, 20, 20, -5, 1) / 32, quarter-pixel ones are the mean of two neighbours.
///
/// A picture's pixels have `margin` further ones on each side; those of the reference are read too.
class ReferencePlanes {
public:
    ReferencePlanes() = default;
    ReferencePlanes(int pictureWidth, int pictureHeight, int marginPixels);

    /// Makes the half-pixel planes. `reference` is read until the next call and has rows of `Stride` bytes.
    void Build(const MotionPicture& reference);

    /// For a vector in quarter pixels that leads a block no further than the margin.
    MovedSamples At(int vectorX, int vectorY) const;

    int Stride() const { return width + 2 * margin; }

private:
    void RepeatBorder(std::uint8_t* picture) const;

    int width = 0;
    int height = 0;
    int margin = 0;
    std::array<Kernels::BytePlane, 3> halfPixels;  ///< half a pixel right, half a pixel down, both
    std::array<const std::uint8_t*, 4> planes{};   ///< the picture's first pixel: the reference, then those
};

}  // namespace Metric

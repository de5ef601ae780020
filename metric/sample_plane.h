#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace Metric {

/// Where the samples of one colour lie in a frame, and their way to the scale of 0 to 256. Pixel (x, y) has
/// the sample (x >> shiftX, y >> shiftY): one serves a block of 1 or 2 pixels a side.
struct SamplePlane {
    const std::uint8_t* rows;  ///< the unit of the picture's top left sample
    std::ptrdiff_t rowBytes;   ///< from row to row; negative where they lie bottom-up
    int unitBytes = 1;         ///< from sample to sample; 0: the same one for all pixels
    int offset = 0;            ///< of the sample in its unit
    int sampleBytes = 1;       ///< 1 or 2, the lower byte first
    int shiftX = 0;
    int shiftY = 0;
    float scale = 1;   ///< a pixel is its sample times this ...
    float centre = 0;  ///< ... less this
    /// Behind the last whole sample that there is; an address beyond it, which only odd sizes have, means
    /// that one. Null where none lies beyond.
    const std::uint8_t* end = nullptr;

    /// Whether nothing lies between the samples of a row.
    bool IsPacked() const { return unitBytes == sampleBytes; }
};

/// The planes of a frame: Y, U, V or R, G, B.
using SamplePlanes = std::array<SamplePlane, 3>;

/// Fills `pixels` with the `count` pixels from (`x`, `y`) on; `x` is even.
void LoadPixels(const SamplePlane& plane, int x, int y, float* pixels, int count);

}  // namespace Metric

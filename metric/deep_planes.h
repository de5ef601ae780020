#pragma once

#include <cstddef>
#include <cstdint>

namespace Metric {

/// A frame of deep samples as it lies in a file: 16-bit little-endian words, the planes packed one behind the
/// other.
struct DeepFrame {
    const std::uint8_t* bytes;
    std::size_t wordCount;  ///< whole words of the frame
    int bits;               ///< significant bits of a sample: 10, 14 or 16
};

/// A plane within such a frame. A sample serves a block of 1 or 2 pixels a side, given as a shift; the rows
/// of a subsampled plane are `width >> shiftX` words apart, the cut-off half of an odd width included.
struct DeepPlane {
    std::size_t firstWord = 0;
    int shiftX = 0;
    int shiftY = 0;
    float centre = 0;  ///< subtracted from every sample
};

/// Fills a plane of `width` by `height` floats on the scale of 0 to 256, samples replicated over their
/// blocks. An address past the frame's last word, which only odd sizes have, means that word.
void LoadDeepPlane(const DeepFrame& frame, const DeepPlane& plane, float* out, int width, int height);

/// The greatest sample of a depth on the scale of 0 to 256: 255.75, 255.984375, 255.99609375.
float DeepPeak(int bits);

}  // namespace Metric

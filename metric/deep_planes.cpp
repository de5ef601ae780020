#include "metric/deep_planes.h"

#include <algorithm>

namespace Metric {

namespace {

/// Words to floats. The scale is a power of two: the product is the quotient by the depth's divisor.
struct SampleReader {
    const std::uint8_t* bytes;
    float scale;
    float centre;

    float operator()(std::size_t word) const {
        const int sample = bytes[2 * word] | bytes[2 * word + 1] << 8;
        return static_cast<float>(sample) * scale - centre;
    }
};

/// Two pixels a sample; an odd last pixel has one to itself.
void LoadPairs(SampleReader sample, std::size_t firstWord, float* row, std::size_t width) {
    for (std::size_t pair = 0; pair < width / 2; ++pair) {
        const float value = sample(firstWord + pair);
        row[2 * pair] = value;
        row[2 * pair + 1] = value;
    }
    if (width % 2 != 0) row[width - 1] = sample(firstWord + width / 2);
}

void LoadSingles(SampleReader sample, std::size_t firstWord, float* row, std::size_t width) {
    for (std::size_t x = 0; x < width; ++x) row[x] = sample(firstWord + x);
}

/// A row that may run past the frame's last word.
void LoadBounded(SampleReader sample, std::size_t firstWord, std::size_t lastWord, int shiftX, float* row,
                 std::size_t width) {
    for (std::size_t x = 0; x < width; ++x) row[x] = sample(std::min(firstWord + (x >> shiftX), lastWord));
}

}  // namespace

void LoadDeepPlane(const DeepFrame& frame, const DeepPlane& plane, float* out, int width, int height) {
    const SampleReader sample = {frame.bytes, 1.0f / static_cast<float>(1 << (frame.bits - 8)), plane.centre};
    const auto pixels = static_cast<std::size_t>(width);
    for (int y = 0; y < height; ++y, out += width) {
        const std::size_t first =
            plane.firstWord + static_cast<std::size_t>(y >> plane.shiftY) * (pixels >> plane.shiftX);
        const bool isInside = first + ((pixels - 1) >> plane.shiftX) < frame.wordCount;
        if (!isInside)
            LoadBounded(sample, first, frame.wordCount - 1, plane.shiftX, out, pixels);
        else if (plane.shiftX == 0)
            LoadSingles(sample, first, out, pixels);
        else
            LoadPairs(sample, first, out, pixels);
    }
}

float DeepPeak(int bits) {
    return static_cast<float>((1 << bits) - 1) / static_cast<float>(1 << (bits - 8));
}

}  // namespace Metric

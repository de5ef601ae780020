#include "metric/sample_plane.h"

#include <algorithm>

#include "kernels/samples.h"

namespace Metric {

namespace {

float PixelOf(const SamplePlane& plane, const std::uint8_t* sample) {
    const int value = plane.sampleBytes == 2 ? sample[0] | sample[1] << 8 : sample[0];
    return static_cast<float>(value) * plane.scale - plane.centre;
}

/// A row that runs past the frame's last sample.
void LoadBounded(const SamplePlane& plane, const std::uint8_t* units, float* pixels, int count) {
    const std::uint8_t* const last = plane.end - plane.sampleBytes;
    for (int i = 0; i < count; ++i) {
        const std::ptrdiff_t at = std::ptrdiff_t{i >> plane.shiftX} * plane.unitBytes;
        pixels[i] = PixelOf(plane, at < last - units ? units + at : last);
    }
}

}  // namespace

void LoadPixels(const SamplePlane& plane, int x, int y, float* pixels, int count) {
    if (plane.unitBytes == 0) {
        std::fill_n(pixels, count, PixelOf(plane, plane.rows + plane.offset));
        return;
    }
    // As differences: an address beyond the frame isn't one that may be formed.
    const std::ptrdiff_t first =
        (y >> plane.shiftY) * plane.rowBytes + std::ptrdiff_t{x >> plane.shiftX} * plane.unitBytes;
    if (plane.end != nullptr) {
        const std::ptrdiff_t samples = (count + plane.shiftX) >> plane.shiftX;
        const std::ptrdiff_t room = plane.end - plane.rows;
        if (first + samples * plane.unitBytes > room) {
            const std::ptrdiff_t last = room - plane.sampleBytes;
            LoadBounded(plane, plane.rows + std::min(first, last), pixels, count);
            return;
        }
    }
    Kernels::LoadSamples({plane.rows + first, plane.unitBytes, plane.offset, plane.sampleBytes},
                         plane.shiftX == 1, plane.scale, plane.centre, pixels, count);
}

}  // namespace Metric

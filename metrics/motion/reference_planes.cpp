#include "metrics/motion/reference_planes.h"

#include <algorithm>
#include <utility>

#include "kernels/half_pixels.h"
#include "metrics/motion/motion_parameters.h"

namespace Metric {

ReferencePlanes::ReferencePlanes(int pictureWidth, int pictureHeight, int marginPixels)
    : width(pictureWidth), height(pictureHeight), margin(marginPixels) {
    int stride = 0;
    for (Kernels::BytePlane& plane : halfPixels)
        plane.reset(Kernels::AllocPlaneByte(Stride(), height + 2 * margin, stride));
}

void ReferencePlanes::Build(const MotionPicture& reference) {
    const std::ptrdiff_t firstPixel = std::ptrdiff_t{margin} * Stride() + margin;
    std::array<std::uint8_t*, 3> made;
    std::transform(halfPixels.begin(), halfPixels.end(), made.begin(),
                   [=](const Kernels::BytePlane& plane) { return plane.get() + firstPixel; });
    Kernels::HalfPixels(reference.samples, Stride(), width, height, {made[0], made[1], made[2]});
    for (std::uint8_t* picture : made) RepeatBorder(picture);
    planes = {reference.samples, made[0], made[1], made[2]};
}

MovedSamples ReferencePlanes::At(int vectorX, int vectorY) const {
    // Of a quarter position the half below it counts.
    const auto sampleAt = [this](int x, int y) {
        const std::ptrdiff_t offset =
            std::ptrdiff_t{y >> MotionParameters::shiftY} * Stride() + (x >> MotionParameters::shiftX);
        return planes[static_cast<std::size_t>((x & 2) / 2 + (y & 2))] + offset;
    };
    // Odd in both directions: the mean of a sample half a pixel right and one half a pixel down of whole
    // ones, the two that lie diagonally on both sides.
    const bool betweenFour = (vectorX & vectorY & 1) != 0;
    const int other = betweenFour && (vectorX & 2) == (vectorY & 2) ? 1 : 0;
    const std::uint8_t* first = sampleAt(vectorX, vectorY + other);
    if (((vectorX | vectorY) & 1) == 0) return {first, nullptr};
    return {first, sampleAt(vectorX + 1, vectorY - other + 1)};
}

void ReferencePlanes::RepeatBorder(std::uint8_t* picture) const {
    const std::ptrdiff_t stride = Stride();
    for (int y = 0; y < height; ++y) {
        std::uint8_t* row = picture + y * stride;
        std::fill(row - margin, row, row[0]);
        std::fill(row + width, row + width + margin, row[width - 1]);
    }
    const std::uint8_t* top = picture - margin;
    const std::uint8_t* bottom = top + (height - 1) * stride;
    for (int y = 1; y <= margin; ++y) {
        std::copy_n(top, stride, picture - margin - y * stride);
        std::copy_n(bottom, stride, picture - margin + (height - 1 + y) * stride);
    }
}

}  // namespace Metric

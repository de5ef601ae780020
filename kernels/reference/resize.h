#pragma once

#include "kernels/resize.h"
#include "kernels/rows.h"

#include <algorithm>
#include <cmath>

namespace Kernels::Reference {

/// The two pixels on either side of a place between pixels, and their weights.
struct LinearSample {
    int first;
    int second;
    float firstWeight;
    float secondWeight;
};

/// Where pixel `target` of the resampled row lies among `count` pixels.
inline LinearSample SampleAt(int target, double factor, int count) {
    const double place = std::clamp((target + 0.5) / factor - 0.5, 0.0, count - 1.0);
    const int first = static_cast<int>(place);
    const auto secondWeight = static_cast<float>(place - first);
    return {first, std::min(first + 1, count - 1), 1 - secondWeight, secondWeight};
}

inline void ResizeLinear(const float* source, int sourceStride, int sourceWidth, int sourceHeight,
                         const Rectangle& rectangle, float* target, int targetStride, int targetWidth,
                         int targetHeight, double xFactor, double yFactor) {
    const Rectangle part = CutToPlane(rectangle, sourceWidth, sourceHeight);
    if (part.width <= 0 || part.height <= 0) return;
    for (int y = 0; y < targetHeight; ++y) {
        const LinearSample v = SampleAt(y, yFactor, part.height);
        const float* top = Row(source, sourceStride, part.y + v.first) + part.x;
        const float* bottom = Row(source, sourceStride, part.y + v.second) + part.x;
        float* to = Row(target, targetStride, y);
        for (int x = 0; x < targetWidth; ++x) {
            const LinearSample h = SampleAt(x, xFactor, part.width);
            to[x] = top[h.first] * (h.firstWeight * v.firstWeight) +
                    top[h.second] * (h.secondWeight * v.firstWeight) +
                    bottom[h.first] * (h.firstWeight * v.secondWeight) +
                    bottom[h.second] * (h.secondWeight * v.secondWeight);
        }
    }
}

}  // namespace Kernels::Reference

#pragma once

#include "kernels/border.h"
#include "kernels/rows.h"

#include <algorithm>

namespace Kernels::Reference {

/// The pixel at (x, y), which may lie outside the region.
inline float PixelOrBorder(const float* plane, int stride, int width, int height, int x, int y,
                           BorderKind border, float borderValue) {
    const int nearestX = std::clamp(x, 0, width - 1);
    const int nearestY = std::clamp(y, 0, height - 1);
    const bool inside = nearestX == x && nearestY == y;
    return inside || border == BorderReplicate ? Row(plane, stride, nearestY)[nearestX] : borderValue;
}

template <class Pixel>
void CopyReplicateBorder(const Pixel* source, int sourceStride, int sourceWidth, int sourceHeight,
                         Pixel* target, int targetStride, int targetWidth, int targetHeight, int top,
                         int left) {
    if (sourceWidth <= 0 || sourceHeight <= 0) return;
    for (int y = 0; y < targetHeight; ++y) {
        const Pixel* from = Row(source, sourceStride, std::clamp(y - top, 0, sourceHeight - 1));
        Pixel* to = Row(target, targetStride, y);
        for (int x = 0; x < targetWidth; ++x) to[x] = from[std::clamp(x - left, 0, sourceWidth - 1)];
    }
}

}  // namespace Kernels::Reference

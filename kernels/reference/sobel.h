#pragma once

#include "kernels/reference/border.h"
#include "kernels/rows.h"
#include "kernels/sobel.h"

namespace Kernels::Reference {

/// target(x, y) = gradient(pixel), pixel(dx, dy) being the neighbour that far from (x, y).
template <class Gradient>
void FilterNeighbours(const float* source, int sourceStride, float* target, int targetStride, int width,
                      int height, BorderKind border, float borderValue, const Gradient& gradient) {
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            Row(target, targetStride, y)[x] = gradient([&](int dx, int dy) {
                return PixelOrBorder(source, sourceStride, width, height, x + dx, y + dy, border,
                                     borderValue);
            });
        }
    }
}

template <class Pixel>
float SobelHoriz(const Pixel& pixel) {
    const auto smooth = [&](int dy) { return pixel(-1, dy) + pixel(0, dy) + pixel(0, dy) + pixel(1, dy); };
    return smooth(-1) - smooth(1);
}

template <class Pixel>
float SobelVert(const Pixel& pixel) {
    const auto slope = [&](int dy) { return pixel(1, dy) - pixel(-1, dy); };
    return slope(-1) + slope(0) + slope(0) + slope(1);
}

// None of them uses the scratch memory.

inline void FilterSobelHorizBorder(const float* source, int sourceStride, float* target, int targetStride,
                                   int width, int height, BorderKind border, float borderValue, void*) {
    FilterNeighbours(source, sourceStride, target, targetStride, width, height, border, borderValue,
                     [](const auto& pixel) { return SobelHoriz(pixel); });
}

inline void FilterSobelVertBorder(const float* source, int sourceStride, float* target, int targetStride,
                                  int width, int height, BorderKind border, float borderValue, void*) {
    FilterNeighbours(source, sourceStride, target, targetStride, width, height, border, borderValue,
                     [](const auto& pixel) { return SobelVert(pixel); });
}

/// The squares of which `GreatestSobelSquare` gives the greatest.
inline void SobelSquares(const float* source, int sourceStride, float* target, int targetStride, int width,
                         int height) {
    FilterNeighbours(source, sourceStride, target, targetStride, width, height, BorderConstant, 0,
                     [](const auto& pixel) {
                         const float vert = SobelVert(pixel);
                         const float horiz = SobelHoriz(pixel);
                         return vert * vert + horiz * horiz;
                     });
}

}  // namespace Kernels::Reference

#pragma once

#include "kernels/gauss.h"
#include "kernels/gauss_taps.h"
#include "kernels/reference/border.h"
#include "kernels/rows.h"

#include <vector>

namespace Kernels::Reference {

/// 0 + taps[0] * value(0) + taps[1] * value(1) + ..., in this order.
template <class Value>
float WeightedSum(const std::vector<float>& taps, const Value& value) {
    float sum = 0;
    for (std::size_t i = 0; i < taps.size(); ++i) sum += taps[i] * value(static_cast<int>(i));
    return sum;
}

/// The scratch memory isn't used.
inline void FilterGaussBorder(const float* source, int sourceStride, float* target, int targetStride,
                              int width, int height, int kernelSize, float sigma, BorderKind border,
                              float borderValue, void*) {
    std::vector<float> taps(static_cast<std::size_t>(kernelSize));
    GaussTaps(kernelSize, sigma, taps.data());
    const int centre = kernelSize / 2;

    // Horizontal pass over the rows that the vertical one sees, so many of them above the picture as below.
    const int rowStride = width * static_cast<int>(sizeof(float));
    std::vector<float> rows(static_cast<std::size_t>(width) * static_cast<std::size_t>(height + 2 * centre));
    for (int y = -centre; y < height + centre; ++y) {
        for (int x = 0; x < width; ++x) {
            Row(rows.data(), rowStride, y + centre)[x] = WeightedSum(taps, [&](int i) {
                return PixelOrBorder(source, sourceStride, width, height, x + i - centre, y, border,
                                     borderValue);
            });
        }
    }
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            Row(target, targetStride, y)[x] =
                WeightedSum(taps, [&](int i) { return Row(rows.data(), rowStride, y + i)[x]; });
        }
    }
}

}  // namespace Kernels::Reference

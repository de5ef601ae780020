#pragma once

#include "kernels/ordered_class_sums.h"
#include "kernels/rows.h"

namespace Kernels::Reference {

inline void AddInOrder(ClassSums& sums, const float* plane, int stride, const std::uint8_t* classes,
                       int classStride, int width, int height) {
    for (int y = 0; y < height; ++y) {
        const float* row = Row(plane, stride, y);
        const std::uint8_t* classRow = Row(classes, classStride, y);
        for (int x = 0; x < width; ++x) sums[classRow[x]] += row[x];
    }
}

}  // namespace Kernels::Reference

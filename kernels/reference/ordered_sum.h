#pragma once

#include "kernels/rows.h"

namespace Kernels::Reference {

template <class Number>
Number OrderedSum(Number sum, const float* plane, int stride, int width, int height) {
    for (int y = 0; y < height; ++y) {
        const float* row = Row(plane, stride, y);
        for (int x = 0; x < width; ++x) sum += static_cast<Number>(row[x]);
    }
    return sum;
}

}  // namespace Kernels::Reference

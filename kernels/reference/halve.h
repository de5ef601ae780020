#pragma once

#include "kernels/rows.h"

namespace Kernels::Reference {

inline void Halve(const float* source, int sourceStride, float* target, int targetStride, int width,
                  int height) {
    for (int y = 0; y < height; ++y) {
        const float* top = Row(source, sourceStride, 2 * y);
        const float* bottom = Row(source, sourceStride, 2 * y + 1);
        float* row = Row(target, targetStride, y);
        for (int x = 0; x < width; ++x)
            row[x] = (top[2 * x] + top[2 * x + 1] + bottom[2 * x] + bottom[2 * x + 1]) * 0.25f;
    }
}

}  // namespace Kernels::Reference

#pragma once

#include "kernels/sort.h"

#include <algorithm>
#include <compare>

namespace Kernels::Reference {

inline void SortAscend(float* values, int count) {
    std::sort(values, values + std::max(count, 0),
              [](float a, float b) { return std::strong_order(a, b) < 0; });
}

}  // namespace Kernels::Reference

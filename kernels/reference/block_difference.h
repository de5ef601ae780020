#pragma once

#include <cstdint>
#include <cstdlib>

namespace Kernels::Reference {

inline int BlockDifference(const std::uint8_t* block, int blockStride, const std::uint8_t* first,
                           const std::uint8_t* second, int stride, int side) {
    int sum = 0;
    for (int y = 0; y < side; ++y) {
        for (int x = 0; x < side; ++x) {
            const int a = first[y * stride + x];
            const int other = second == nullptr ? a : (a + second[y * stride + x] + 1) / 2;
            sum += std::abs(block[y * blockStride + x] - other);
        }
    }
    return sum;
}

}  // namespace Kernels::Reference

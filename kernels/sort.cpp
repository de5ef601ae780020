#include "kernels/sort.h"

#include <hwy/contrib/sort/vqsort.h>

#include <cstdint>
#include <cstring>

namespace Kernels {

namespace {

// A float's bits with all but the sign inverted where it is negative, read as an integer, are in the order of
// the floats. Doing it twice gives the float back.
void SwapWithKeys(float* values, int count) {
    for (int i = 0; i < count; ++i) {
        std::int32_t bits;
        std::memcpy(&bits, values + i, sizeof bits);
        bits ^= (bits >> 31) & 0x7fffffff;
        std::memcpy(values + i, &bits, sizeof bits);
    }
}

}  // namespace

void SortAscend(float* values, int count) {
    if (count < 2) return;
    SwapWithKeys(values, count);
    // The sorter is compiled elsewhere, so it doesn't matter to the compiler that it sees the floats as
    // integers.
    hwy::Sorter()(reinterpret_cast<std::int32_t*>(values), static_cast<std::size_t>(count),
                  hwy::SortAscending());
    SwapWithKeys(values, count);
}

}  // namespace Kernels

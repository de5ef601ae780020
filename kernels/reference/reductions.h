#pragma once

#include "kernels/reductions.h"
#include "kernels/rows.h"

#include <cmath>
#include <cstdint>
#include <limits>

/// The values that the operations of the same names give, in plain loops.
namespace Kernels::Reference {

/// Sum of value(x) over a row.
template <class Value>
double SumRow(int width, const Value& value) {
    double sums[kSumLanes] = {};
    for (int x = 0; x < width; ++x) sums[x % kSumLanes] += value(x);
    double total = 0;
    for (double sum : sums) total += sum;
    return total;
}

inline double NormDiffL2(const float* first, int firstStride, const float* second, int secondStride,
                         int width, int height, AccuracyHint) {
    double total = 0;
    for (int y = 0; y < height; ++y) {
        const float* a = Row(first, firstStride, y);
        const float* b = Row(second, secondStride, y);
        total += SumRow(width, [=](int x) {
            const double difference = a[x] - b[x];
            return difference * difference;
        });
    }
    return std::sqrt(total);
}

inline double Mean(const float* plane, int stride, int width, int height, AccuracyHint) {
    if (width <= 0 || height <= 0) return 0;
    double total = 0;
    for (int y = 0; y < height; ++y) {
        const float* row = Row(plane, stride, y);
        total += SumRow(width, [=](int x) { return double{row[x]}; });
    }
    return total / static_cast<double>(std::int64_t{width} * height);
}

inline float Max(const float* plane, int stride, int width, int height) {
    float greatest = -std::numeric_limits<float>::infinity();
    for (int y = 0; y < height; ++y) {
        const float* row = Row(plane, stride, y);
        for (int x = 0; x < width; ++x) {
            if (row[x] > greatest) greatest = row[x];
        }
    }
    return greatest + 0.0f;  // -0 becomes +0, whichever of the two zeros came first
}

}  // namespace Kernels::Reference

#pragma once

#include "kernels/flat_ssim.h"
#include "kernels/rows.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <vector>

namespace Kernels::Reference {

/// The sums of x, y, x*x, y*y, x*y over some pixels.
using PairSums = std::array<float, kWindowSums>;

/// The running sums of two pictures' columns, a row at a time.
class ColumnSums {
public:
    explicit ColumnSums(int width) {
        for (auto& ring : rings) ring.fill(std::vector<float>(static_cast<std::size_t>(width)));
    }

    void AddRow(const float* first, const float* second) {
        const std::size_t above = rows % kRingRows;
        const std::size_t current = ++rows % kRingRows;
        for (std::size_t x = 0; x < rings[0][0].size(); ++x) {
            const PairSums pixel = {first[x], second[x], first[x] * first[x], second[x] * second[x],
                                    first[x] * second[x]};
            for (std::size_t k = 0; k < rings.size(); ++k)
                rings[k][current][x] = rings[k][above][x] + pixel[k];
        }
    }

    /// Sum `k` of column `x` over the last 8 rows.
    float Difference(std::size_t k, int x) const {
        const auto column = static_cast<std::size_t>(x);
        return rings[k][rows % kRingRows][column] - rings[k][(rows + 1) % kRingRows][column];
    }

private:
    static constexpr std::size_t kRingRows = kFlatWindow + 1;
    // The sums after n rows at n % kRingRows.
    std::array<std::array<std::vector<float>, kRingRows>, kWindowSums> rings;
    std::size_t rows = 0;
};

/// Makes the map; valueOf(sums) is a window's value.
template <class ValueOf>
void MapFlatWindows(const SSIMPlanes& planes, const ValueOf& valueOf) {
    ColumnSums columns(planes.width);
    for (int y = 0; y < planes.height; ++y) {
        columns.AddRow(Row(planes.first, planes.firstStride, y), Row(planes.second, planes.secondStride, y));
        if (y < kFlatWindow - 1) continue;

        float* row = Row(planes.map, planes.mapStride, y - (kFlatWindow - 1));
        PairSums sums;
        for (std::size_t k = 0; k < sums.size(); ++k) {
            sums[k] = columns.Difference(k, 1) + columns.Difference(k, 0);
            for (int x = 2; x < kFlatWindow; ++x) sums[k] += columns.Difference(k, x);
        }
        std::fill_n(row, kFlatWindow, valueOf(sums));
        for (int x = kFlatWindow; x < planes.width; ++x) {
            for (std::size_t k = 0; k < sums.size(); ++k)
                sums[k] = (sums[k] + columns.Difference(k, x)) - columns.Difference(k, x - kFlatWindow);
            row[x] = valueOf(sums);
        }
    }
}

/// The scratch memory isn't used.
inline void FlatSSIM(const SSIMPlanes& planes, float c1, float c2, void*) {
    MapFlatWindows(planes, [=](const PairSums& sums) {
        const auto [sx, sy, sxx, syy, sxy] = sums;
        const float p = sx * sy;
        const float q = sxy * 64 - p;
        return ((c1 + p + p) * (c2 + q + q)) /
               ((sx * sx + c1 + sy * sy) * ((sxx * 64 - sx * sx) + c2 + (syy * 64 - sy * sy)));
    });
}

inline void FlatContrastStructure(const SSIMPlanes& planes, float c2, void*) {
    MapFlatWindows(planes, [=](const PairSums& sums) {
        const auto [sx, sy, sxx, syy, sxy] = sums;
        const float q = sxy * 64 - sx * sy;
        return (c2 + q + q) / ((sxx * 64 - sx * sx) + c2 + (syy * 64 - sy * sy));
    });
}

}  // namespace Kernels::Reference
